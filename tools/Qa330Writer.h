#pragma once

#include "tools/DataFileWriter.h"
#include "tools/Qa330Instrument.h"

// Writes what a QA-330 writes: DATA records, a DATASTAT record every five seconds, and events. Header blocks
// with an odd number have other DATA columns than those with an even one.
class Qa330Writer : public DataFileWriter {
public:
    Qa330Writer(const RecordingOptions &options, Timezone zone);

private:
    void writeKeys(LineWriter &out, bool named) override;
    void writeHeaders(LineWriter &out, std::uint64_t block) override;
    void beginSecond(LineWriter &out) override;
    bool writeRecord(LineWriter &out, std::uint64_t block, bool damaged) override;

    void writeEvents(LineWriter &out);
    void writeStatus(LineWriter &out) const;

    Qa330Instrument instrument_;
    std::uint32_t eventBits_ = 0; // as the last events told them
};
