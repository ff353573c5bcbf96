#include "loading/RecordPipeline.h"

#include "data/DataFragment.h"

#include <utility>

RecordPipeline::RecordPipeline(ParsingThreads &threads, Taker take)
    : threads_(threads), take_(std::move(take)) {
    // Of a period, the widest it gets: a stamp, an average and two extremes in double precision.
    constexpr std::uint64_t bytesOfValue = 3 * sizeof(double);
    constexpr std::uint64_t bytesOfLine = sizeof(RecordStamp) + sizeof(HalfHourIndex::Entry);
    static_assert(stageCount * DataFragment::periods.size() *
                      (RecordBatch::mostValues * bytesOfValue + RecordBatch::mostLines * bytesOfLine) <=
                  mostMemoryOfRecords);
    stages_.reserve(stageCount);
    while (stages_.size() < stageCount) {
        stages_.push_back(std::make_unique<Stage>());
    }
}

void RecordPipeline::add(DataFragment &block, std::string_view line, std::uint64_t offset,
                         std::uint64_t shortfall) {
    if (!open().job.batch.hasRoomFor(block)) {
        hand();
    }
    Stage &stage = open();
    stage.shortfall = shortfall;
    stage.refill = refill_;
    stage.job.batch.add(block, line, offset);
}

void RecordPipeline::hand() {
    if (open().job.batch.isEmpty()) {
        return;
    }
    threads_.hand(open().job);
    if (++handedCount_ == stageCount) {
        takeOldest();
    }
}

void RecordPipeline::beginRefill() {
    hand();
    while (handedCount_ > 0 && stages_[oldest_]->refill < refill_) {
        takeOldest();
    }
    ++refill_;
}

void RecordPipeline::takeAll() {
    // Not worth another thread: it is needed at once.
    while (handedCount_ > 0) {
        takeOldest();
    }
    Stage &last = open();
    if (!last.job.batch.isEmpty()) {
        last.job.batch.read();
        take_(last.job.batch, last.shortfall);
        last.job.batch.clear();
    }
}

void RecordPipeline::takeOldest() {
    Stage &stage = *stages_[oldest_];
    threads_.finish(stage.job);
    take_(stage.job.batch, stage.shortfall);
    stage.job.batch.clear();
    oldest_ = (oldest_ + 1) % stageCount;
    --handedCount_;
}

void RecordPipeline::dropAll() {
    open().job.batch.clear();
    for (; handedCount_ > 0; --handedCount_) {
        threads_.withdraw(stages_[oldest_]->job);
        stages_[oldest_]->job.batch.clear();
        oldest_ = (oldest_ + 1) % stageCount;
    }
}
