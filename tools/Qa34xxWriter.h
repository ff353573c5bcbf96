#pragma once

#include "tools/DataFileWriter.h"
#include "tools/Qa34xxColumns.h"
#include "tools/Qa34xxInstrument.h"

#include <span>

// Writes what an analyser of the QA-34xx family writes: DATA records of 45 values. Header blocks with an odd
// number leave out the last ten columns, those of the sensors that a user may plug in.
class Qa34xxWriter : public DataFileWriter {
public:
    Qa34xxWriter(const RecordingOptions &options, Timezone zone);

private:
    void writeKeys(LineWriter &out, bool named) override;
    void writeHeaders(LineWriter &out, std::uint64_t block) override;
    void beginSecond(LineWriter &out) override;
    bool writeRecord(LineWriter &out, std::uint64_t block, bool damaged) override;

    Qa34xxInstrument instrument_;
};
