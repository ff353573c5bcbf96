#include "tools/Qa34xxWriter.h"

#include <utility>

namespace {

constexpr std::size_t pluggedSensors = 10;

std::span<const Qa34xxColumn> columnsBehindTime(std::uint64_t block) {
    const std::span<const Qa34xxColumn> all = qa34xxColumnsBehindTime();
    return block % 2 == 0 ? all : all.first(all.size() - pluggedSensors);
}

void writeNames(LineWriter &out, std::span<const Qa34xxColumn> columns) {
    for (const Qa34xxColumn &column : columns) {
        out.text(column.name);
    }
}

void writeValues(LineWriter &out, std::span<const Qa34xxColumn> columns, const Qa34xxState &state) {
    for (const Qa34xxColumn &column : columns) {
        out.fixed(column.value(state), column.decimals);
    }
}

} // namespace

Qa34xxWriter::Qa34xxWriter(const RecordingOptions &options, Timezone zone)
    : DataFileWriter(options, std::move(zone)), instrument_(options.seed, options.rate) {}

void Qa34xxWriter::writeKeys(LineWriter &out, bool named) {
    out.line("Model:", "QA-3410 Closed Path CO2/H2O Analyser");
    if (named) {
        out.line("Instrument:", options().instrument);
    }
    out.line("Serial Number:", "C41-0412");
    out.line("Software Version:", "8.3.0");
    out.line("Timezone:", clock().zoneName());
}

void Qa34xxWriter::writeHeaders(LineWriter &out, std::uint64_t block) {
    out.begin("DATAH");
    out.text("SECONDS\tNANOSECONDS");
    writeNames(out, qa34xxColumnsBeforeDate());
    out.text("DATE\tTIME");
    writeNames(out, columnsBehindTime(block));
    out.text("CHK");
    out.end();
}

void Qa34xxWriter::beginSecond(LineWriter & /*out*/) {
    instrument_.advanceSecond(clock().utc(), air());
}

bool Qa34xxWriter::writeRecord(LineWriter &out, std::uint64_t block, bool damaged) {
    const Qa34xxState &state = instrument_.nextSample(air());
    if (!instrument_.isSampling()) {
        return false;
    }
    out.begin("DATA");
    writeUtc(out);
    writeValues(out, qa34xxColumnsBeforeDate(), state);
    writeLocal(out);
    writeValues(out, columnsBehindTime(block), state);
    out.endWithChecksum(damaged);
    return true;
}
