#include "loading/support/EverythingLoaded.h"

#include "support/RecordComparison.h"

#include <algorithm>
#include <sstream>

namespace {

void write(std::ostream &out, const Record &record) {
    out << static_cast<const RecordStamp &>(record);
    for (const double value : record.values) {
        out << ' ' << bitsOf(value);
    }
    out << '\n';
}

// Of all stamps and values, as they may be very many (FNV-1a, eight bytes at a time).
std::uint64_t hashOf(const AveragedSeries &series, std::size_t columns) {
    std::uint64_t hash = 0xCBF29CE484222325;
    const auto add = [&hash](std::uint64_t bits) { hash = (hash ^ bits) * 0x100000001B3; };
    for (std::size_t i = 0; i < series.size(); ++i) {
        std::ostringstream stamp;
        stamp << series.stamps()[i];
        for (const char c : stamp.str()) {
            add(static_cast<unsigned char>(c));
        }
        for (const Statistic statistic : {Statistic::average, Statistic::maximum, Statistic::minimum}) {
            for (std::size_t column = 0; column < columns; ++column) {
                add(bitsOf(series.value(statistic, i, column)));
            }
        }
    }
    return hash;
}

void writeBegin(std::ostream &out, const DataFragment &block) {
    const SourceHeader &header = block.header();
    out << "block " << block.tag() << ' ' << header.subFileName << ' ' << header.instrument << ' '
        << header.serialNumber << ' ' << header.softwareVersion << ' ' << header.timezone << ' '
        << header.memberNumber << '\n';
    for (const auto *const names :
         {&block.columnNames(), &block.diagnosticNames(), &block.valueNames(), &block.valueUnits()}) {
        for (const std::string &name : *names) {
            out << name << '\t';
        }
        out << '\n';
    }
}

void write(std::ostream &out, const DataFragment &block) {
    writeBegin(out, block);
    out << block.recordCount() << ' ' << block.checksumFailures() << ' ' << block.firstOffset() << ' '
        << block.endOffset() << ' ' << block.blockBegin() << ' ' << block.blockEnd() << ' '
        << block.timesDependOnOrder() << '\n';
    out << bitsOf(block.firstTime()) << ' ' << bitsOf(block.lastTime()) << ' ' << bitsOf(block.latestTime())
        << '\n';
    for (const SourceMember &member : block.members()) {
        out << member.name << ' ' << member.number << '\n';
    }
    for (const auto &[seconds, offset] : block.halfHourIndex().entries()) {
        out << seconds << ' ' << offset << '\n';
    }
    write(out, block.minimumRecord());
    write(out, block.maximumRecord());
    for (std::size_t level = 0; level < DataFragment::periods.size(); ++level) {
        const AveragedSeries &series = block.series(level);
        out << series.size() << " periods: " << hashOf(series, block.valueCount()) << '\n';
    }
}

} // namespace

EverythingLoaded::EverythingLoaded(const QString &path, ParsingThreads *threads, const Watcher &watch)
    : data(path.toStdString()) {
    std::atomic<bool> cancelled = false;
    const auto note = [&](int percent, qint64 size) {
        progress += std::to_string(percent) + " % of " + std::to_string(size) + '\n';
        if (watch) {
            watch(percent, cancelled);
        }
    };
    report = loadFile(path, data, cancelled, note, threads);
}

std::string textOf(const EverythingLoaded &loaded) {
    return loaded.progress + loaded.report.problem.toStdString() + '\n' + loaded.report.remark.toStdString() +
           '\n' + textOf(loaded.data);
}

std::string textOf(const DataSet &data) {
    std::ostringstream out;
    out << data.messageText() << '\n'
        << data.problem() << '\n'
        << data.memoryTaken() << ' ' << data.memoryLeft() << ' ' << data.hasGivenUp() << ' '
        << data.foundHeader() << ' ' << data.checksumFailures() << '\n';
    for (const auto &block : data.fragments()) {
        write(out, *block);
    }
    return out.str();
}

std::string firstDifference(const std::string &text, const std::string &expected) {
    const auto [at, there] = std::mismatch(text.begin(), text.end(), expected.begin(), expected.end());
    if (at == text.end() && there == expected.end()) {
        return {};
    }
    const auto lineAt = [](const std::string &whole, std::ptrdiff_t place) {
        const std::size_t begin = whole.rfind('\n', static_cast<std::size_t>(place)) + 1;
        return whole.substr(begin, 200);
    };
    return "got      " + lineAt(text, at - text.begin()) + "\nexpected " +
           lineAt(expected, there - expected.begin());
}
