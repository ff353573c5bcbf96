#include "tools/DataFileWriter.h"

#include <algorithm>
#include <utility>

DataFileWriter::DataFileWriter(const RecordingOptions &options, Timezone zone)
    : options_(options), clock_(std::move(zone)), signals_(options.seed, options.rate), utc_(options.start) {
    clock_.moveTo(utc_);
}

std::string DataFileWriter::fileStamp() {
    clock_.moveTo(utc_);
    return clock_.fileStamp();
}

void DataFileWriter::write(ByteSink &sink, const RunLength &length, bool named) {
    LineWriter out(sink);
    clock_.moveTo(utc_);
    writeKeys(out, named);
    std::uint64_t block = 0;
    writeHeaders(out, block);

    std::uint64_t damaged = 0;
    for (std::uint64_t slot = 0; !length.isReached(slot, out.bytes()); ++slot) {
        beginSlot(out);
        if (block + 1 < options_.blocks && length.partAt(slot, out.bytes(), options_.blocks) > block) {
            writeHeaders(out, ++block);
        }
        // In the middle of each of as many parts as there are records to damage.
        const std::uint64_t due = options_.badChecksums == 0
                                      ? 0
                                      : (length.partAt(slot, out.bytes(), 2 * options_.badChecksums) + 1) / 2;
        if (writeRecord(out, block, damaged < due) && damaged < due) {
            ++damaged;
        }
        if (++slotInSecond_ == options_.rate) {
            slotInSecond_ = 0;
            ++utc_;
        }
    }
    out.flush();
}

void DataFileWriter::beginSlot(LineWriter &out) {
    if (slotInSecond_ == 0) {
        clock_.moveTo(utc_);
        signals_.advanceSecond(clock_.dayFraction());
        air_ = &signals_.nextSample();
        beginSecond(out);
    } else {
        air_ = &signals_.nextSample();
    }
}

void DataFileWriter::writeUtc(LineWriter &out) const {
    out.text(clock_.seconds());
    out.integer(nanoseconds());
}

void DataFileWriter::writeLocal(LineWriter &out) const {
    out.text(clock_.date());
    out.textWithMilliseconds(clock_.time(), nanoseconds() / 1000000U);
}
