#include "RandomDataFile.h"

#include <cstdio>
#include <string_view>

namespace {

using Columns = std::vector<std::string>;

const std::array<std::string, 3> tags{"DATA", "DATASTAT", "DATABIO"};
const std::array<Columns, 8> clockColumns{Columns{"SECONDS", "NANOSECONDS"},
                                          Columns{"SECONDS", "NANOSECONDS", "DATE", "TIME"},
                                          Columns{"DATE", "TIME"},
                                          Columns{"DATE", "TIME", "SECONDS"},
                                          Columns{"TIME", "SECONDS"},
                                          Columns{"SECONDS", "DATE"},
                                          Columns{"DATE", "TIME", "NANOSECONDS"},
                                          Columns{}};
const std::array<std::string, 9> otherColumns{"A",      "B (u)",    "C", "A",  "DIAG",
                                              "REMARK", "FILENAME", "",  "CHK"};
const std::array<std::string, 7> junk{"",         "DATA",   "\x01\x02\xff",  "DATAX\t1\t2",
                                      "# remark", "DATA\t", "DATASTAT\t\t\t"};

std::string padded(int number, int digits) {
    std::string text = std::to_string(number);
    text.insert(0, static_cast<std::size_t>(std::max(0, digits - static_cast<int>(text.size()))), '0');
    return text;
}

} // namespace

RandomDataFile::RandomDataFile(Options options)
    : options_(std::move(options)),
      random_(options_.seed),
      wall_(options_.wallZone),
      seconds_(options_.start),
      lineEnd_(random_.oneIn(2) ? "\n" : "\r\n") {}

std::string RandomDataFile::text() {
    addLine("Instrument:\tQA330");
    if (!options_.timezone.empty()) {
        addLine("Timezone:\t" + options_.timezone);
    }
    for (int line = 0; line < options_.lines; ++line) {
        const std::string &tag = tags[random_.oneIn(2) ? 0 : random_.below(tags.size())];
        if (line == 0 || random_.oneIn(150)) {
            addHeader(tag);
        } else if (random_.oneIn(40)) {
            addOther();
        } else {
            stepClock();
            addRecord(tag);
        }
    }
    if (random_.oneIn(2)) { // a last line without its line end
        text_.resize(text_.size() - lineEnd_.size());
    }
    return text_;
}

void RandomDataFile::addLine(const std::string &line) {
    text_ += line;
    text_ += lineEnd_;
}

void RandomDataFile::addHeader(const std::string &tag) {
    Columns &columns = columns_[tag == tags[0] ? 0 : tag == tags[1] ? 1 : 2];
    columns = drawColumns();
    std::string line = tag + 'H';
    for (const std::string &column : columns) {
        line += '\t' + column;
    }
    addLine(line);
}

std::vector<std::string> RandomDataFile::drawColumns() {
    Columns columns = options_.isPlain ? clockColumns[0] : random_.pick(clockColumns);
    for (auto count = random_.below(6); count > 0; --count) {
        const auto at = options_.isPlain ? columns.size() : random_.below(columns.size() + 1);
        columns.insert(columns.begin() + static_cast<std::ptrdiff_t>(at), random_.pick(otherColumns));
    }
    if (options_.longestRemark > 12) {
        columns.emplace_back("REMARK");
    }
    if (random_.oneIn(2) || columns.empty()) {
        columns.emplace_back("CHK");
    }
    return columns;
}

void RandomDataFile::addOther() {
    switch (random_.below(5)) {
    case 0:
        addLine(random_.oneIn(2) ? "DATADIAGH\tPUMPON\tDETOK" : "DATADIAGH\tA\t\tB\tC");
        break;
    case 1:
        addLine("Instrument:\tQA33" + std::to_string(random_.below(3)));
        break;
    case 2:
        // Header lines fail until the next good zone.
        addLine("Timezone:\tNo/Such");
        addHeader(random_.pick(tags));
        addLine("Timezone:\t" + (options_.timezone.empty() ? "Unknown" : options_.timezone));
        break;
    default:
        addLine(random_.pick(junk));
        break;
    }
}

void RandomDataFile::stepClock() {
    seconds_ += random_.between(0, 20);
    nanoseconds_ = random_.oneIn(4) ? 0 : random_.between(0, 999999999);
    if (options_.isPlain) {
        return;
    }
    if (random_.oneIn(200)) {
        seconds_ += random_.between(-7200, 14400);
    }
    if (random_.oneIn(1000)) {
        seconds_ = random_.oneIn(2) ? 0 : 4294967200; // a clock that is not set, or broken
    } else if (seconds_ < 1000000 || seconds_ > 4000000000) {
        seconds_ = options_.start + random_.between(0, 7200);
    }
}

void RandomDataFile::addRecord(const std::string &tag) {
    const Columns &columns = columns_[tag == tags[0] ? 0 : tag == tags[1] ? 1 : 2];
    std::string line = tag + '\t';
    for (const std::string &column : columns) {
        line += field(column, line) + '\t';
    }
    line.pop_back();
    if (!options_.isPlain && random_.oneIn(60)) { // a damaged byte
        line[random_.below(line.size())] = static_cast<char>(1 + random_.below(255));
    }
    for (char &c : line) {
        c = c == '\n' ? ' ' : c;
    }
    addLine(line);
}

std::string RandomDataFile::field(const std::string &column, const std::string &lineSoFar) {
    if (column == "CHK") {
        return checksum(lineSoFar);
    }
    if (column == "REMARK" || column == "FILENAME" || column.empty()) {
        return std::string(1 + random_.below(options_.longestRemark), 'x') + " DATA";
    }
    if (column == "DIAG") {
        return std::to_string(random_.below(20));
    }
    return column == "SECONDS" || column == "NANOSECONDS" || column == "DATE" || column == "TIME"
               ? clockField(column)
               : number();
}

std::string RandomDataFile::clockField(const std::string &column) {
    if (column == "SECONDS") {
        return !options_.isPlain && random_.oneIn(4) ? "0" : std::to_string(seconds_);
    }
    if (column == "NANOSECONDS") {
        return std::to_string(nanoseconds_);
    }
    std::tm local{};
    wall_.localTime(seconds_, &local);
    if (column == "DATE") {
        return padded(local.tm_year + 1900, 4) + '-' + padded(local.tm_mon + 1, 2) + '-' +
               padded(local.tm_mday, 2);
    }
    const std::string time =
        padded(local.tm_hour, 2) + ':' + padded(local.tm_min, 2) + ':' + padded(local.tm_sec, 2);
    const int milliseconds = static_cast<int>(nanoseconds_ / 1000000);
    return time + (random_.oneIn(2) ? ":" + std::to_string(milliseconds) : "." + padded(milliseconds, 3));
}

std::string RandomDataFile::number() {
    static constexpr std::array<std::string_view, 6> specials{"nan", "-nan", "inf", "1e99", "-0", "0x1.8p3"};
    if (random_.oneIn(100)) {
        return std::string(random_.pick(specials));
    }
    return std::to_string(random_.between(-99999, 99999)) + '.' +
           padded(static_cast<int>(random_.below(1000)), 3);
}

std::string RandomDataFile::checksum(const std::string &lineSoFar) {
    unsigned sum = 0;
    for (const char c : lineSoFar) {
        sum += static_cast<unsigned char>(c);
    }
    if (random_.oneIn(5)) {
        sum -= '\t'; // without the tab before it
    }
    if (random_.oneIn(30)) {
        sum += 1 + static_cast<unsigned>(random_.below(200));
    }
    return std::to_string(sum % 256);
}
