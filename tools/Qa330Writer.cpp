#include "tools/Qa330Writer.h"

#include <array>
#include <utility>

namespace {

constexpr std::string_view columns =
    "SECONDS\tNANOSECONDS\tDATE\tTIME\tCH4D\tCH4\tTEMP\tPRESSURE\tRSSI\tDROPRATE\tDIAG\tCHK";
constexpr std::string_view otherColumns =
    "SECONDS\tNANOSECONDS\tDATE\tTIME\tTEMP\tPRESSURE\tCH4\tRSSI\tREFRSSI\tDIAG\tCHK";
constexpr std::string_view statusColumns =
    "MSEC\tSECONDS\tNANOSECONDS\tDATE\tTIME\tREFRSSI\tLCTSETPT\tLCTACTUAL\tBCTSETPT\tBCTACTUAL\tCHASSISTEMP\t"
    "CHASSISTCCOLDTEMP\tOPTICSTEMP\tOPTICSRH\tSUPPLYVOLTAGE\tCALIBRATING\tBOX\tSAMPLESIG\tHEATER\tMOTORRPM\t"
    "MOTORDESIRED\tMOTORACTUAL\tDIAG\tCHK";
constexpr std::int64_t statusPeriod = 5; // seconds

struct EventBit {
    Qa330Bit bit;
    std::string_view name;
};

constexpr std::array<EventBit, 3> eventBits{
    {{CalibratingBit, "CALIBRATION"}, {PumpOnBit, "PUMP"}, {MotorSpinningBit, "MOTOR"}}};

void writeDiagnosticNames(LineWriter &out) {
    out.begin("DATADIAGH");
    for (const std::string_view name : qa330DiagnosticNames) {
        out.text(name);
    }
    out.end();
}

} // namespace

Qa330Writer::Qa330Writer(const RecordingOptions &options, Timezone zone)
    : DataFileWriter(options, std::move(zone)), instrument_(options.seed, options.rate) {}

void Qa330Writer::writeKeys(LineWriter &out, bool named) {
    out.line("Model:", "QA-330 Open Path CH4 Analyser");
    if (named) {
        out.line("Instrument:", options().instrument);
    }
    out.line("Serial Number:", "M33-0127");
    out.line("Software Version:", "2.4.1");
    out.line("Timezone:", clock().zoneName());
    if (named) {
        out.line("DATAEVENT\tNAME", options().instrument);
    }
    out.line("DATAEVENT\tSN", "M33-0127");
    out.line("DATAEVENT\tLOGGING\tON", clock().seconds());
}

void Qa330Writer::writeHeaders(LineWriter &out, std::uint64_t block) {
    // The names of the bits count for a block whether they stand before its header or behind it.
    const bool namesFirst = block % 2 == 0;
    if (namesFirst) {
        writeDiagnosticNames(out);
    }
    out.line("DATAH", namesFirst ? columns : otherColumns);
    out.line("DATASTATH", statusColumns);
    if (!namesFirst) {
        writeDiagnosticNames(out);
    }
}

void Qa330Writer::beginSecond(LineWriter &out) {
    instrument_.advanceSecond(clock().utc(), air());
    writeEvents(out);
    if (clock().utc() % statusPeriod == 0) {
        writeStatus(out);
    }
}

void Qa330Writer::writeEvents(LineWriter &out) {
    const std::uint32_t bits = instrument_.diagnostics();
    for (const EventBit &event : eventBits) {
        if (((bits ^ eventBits_) & event.bit) != 0) {
            out.begin("DATAEVENT");
            out.text(event.name);
            out.text((bits & event.bit) != 0 ? "ON" : "OFF");
            out.text(clock().seconds());
            out.end();
        }
    }
    eventBits_ = bits;
}

void Qa330Writer::writeStatus(LineWriter &out) const {
    const Qa330Status &s = instrument_.status();
    const std::uint32_t bits = instrument_.diagnostics();
    const auto flag = [bits](std::uint32_t mask) { return (bits & mask) != 0 ? 1 : 0; };
    out.begin("DATASTAT");
    out.integer(instrument_.uptime());
    writeUtc(out);
    writeLocal(out);
    out.fixed(s.referenceRssi, 2);
    out.fixed(s.laserSetpoint, 2);
    out.fixed(s.laserActual, 3);
    out.fixed(s.blockSetpoint, 1);
    out.fixed(s.blockActual, 3);
    out.fixed(s.chassis, 2);
    out.fixed(s.coldJunction, 2);
    out.fixed(s.optics, 2);
    out.fixed(s.opticsHumidity, 2);
    out.fixed(s.supply, 2);
    out.integer(flag(CalibratingBit));
    out.integer(flag(BoxConnectedBit));
    out.fixed(s.sampleSignal, 2);
    out.integer(flag(TopHeaterOnBit | BottomHeaterOnBit));
    out.fixed(s.motorSpeed, 0);
    out.fixed(s.motorDesired, 0);
    out.fixed(s.motorActual, 0);
    out.integer(bits);
    out.endWithChecksum(false);
}

bool Qa330Writer::writeRecord(LineWriter &out, std::uint64_t block, bool damaged) {
    const Qa330Reading &r = instrument_.nextSample(air());
    if (!instrument_.isSampling()) {
        return false;
    }
    out.begin("DATA");
    writeUtc(out);
    writeLocal(out);
    if (block % 2 == 0) {
        out.fixed(r.ch4Density, 6);
        out.fixed(r.ch4, 5);
        out.fixed(r.temperature, 3);
        out.fixed(r.pressure, 4);
        out.fixed(r.rssi, 2);
        out.fixed(r.dropRate, 1);
    } else {
        out.fixed(r.temperature, 3);
        out.fixed(r.pressure, 4);
        out.fixed(r.ch4, 5);
        out.fixed(r.rssi, 2);
        out.fixed(instrument_.status().referenceRssi, 2);
    }
    out.integer(r.diagnostics);
    out.endWithChecksum(damaged);
    return true;
}
