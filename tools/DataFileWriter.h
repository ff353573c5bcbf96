#pragma once

#include "tools/AirSignals.h"
#include "tools/ByteSink.h"
#include "tools/LineWriter.h"
#include "tools/LocalClock.h"
#include "tools/RunLength.h"

#include <cstdint>
#include <string>

// What decides a recording besides its length.
struct RecordingOptions {
    std::uint64_t seed = 1;
    std::int64_t start = 0; // UTC seconds
    unsigned rate = 10;     // records a second; divides 1000
    std::string instrument;
    unsigned blocks = 1;            // header blocks a file
    std::uint64_t badChecksums = 0; // damaged records a file, spread evenly
};

// An analyser that records one second after the other. Every write() goes on where the last one ended, so
// files written in turn are one recording cut into pieces. Bytes depend on the options and the zone's rules
// only.
class DataFileWriter {
public:
    DataFileWriter(const RecordingOptions &options, Timezone zone);
    virtual ~DataFileWriter() = default;
    DataFileWriter(const DataFileWriter &) = delete;
    DataFileWriter &operator=(const DataFileWriter &) = delete;

    // Writes one whole file. `named`: whether its head tells the instrument's name.
    void write(ByteSink &sink, const RunLength &length, bool named);

    // The local time at which the next write() begins, as file names hold it.
    std::string fileStamp();

protected:
    const RecordingOptions &options() const { return options_; }
    const LocalClock &clock() const { return clock_; }
    const Air &air() const { return *air_; }
    std::uint32_t nanoseconds() const { return slotInSecond_ * (1000000000U / options_.rate); }

    // SECONDS and NANOSECONDS.
    void writeUtc(LineWriter &out) const;
    // DATE and TIME.
    void writeLocal(LineWriter &out) const;

private:
    virtual void writeKeys(LineWriter &out, bool named) = 0;
    // `block`: 0 for the file's first header block.
    virtual void writeHeaders(LineWriter &out, std::uint64_t block) = 0;
    virtual void beginSecond(LineWriter &out) = 0;
    // The record of the present slot; false when the analyser writes none.
    virtual bool writeRecord(LineWriter &out, std::uint64_t block, bool damaged) = 0;

    void beginSlot(LineWriter &out);

    RecordingOptions options_;
    LocalClock clock_;
    AirSignals signals_;
    const Air *air_ = nullptr;
    std::int64_t utc_;
    unsigned slotInSecond_ = 0;
};
