#pragma once

#include "loading/ParsingThreads.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

// The record lines of one load on their way: while the thread that loads finds the next ones, other threads
// read the fields of those before. They come out in the order in which they went in.
//
// Belongs to the thread that loads. Lines must hold until the refill after next: see ChunkLineReader.
class RecordPipeline {
public:
    // What a full pipeline's records may add to the memory that their blocks take, in bytes: at each period
    // length the statistics of one period, and the index.
    static constexpr std::uint64_t mostMemoryOfRecords = std::uint64_t{80} * 1024 * 1024;

    // Called for each batch of lines whose fields have been read, with what their offsets fall short.
    using Taker = std::function<void(RecordBatch &batch, std::uint64_t shortfall)>;

    // `threads` must outlive the pipeline.
    RecordPipeline(ParsingThreads &threads, Taker take);
    ~RecordPipeline() { dropAll(); }
    RecordPipeline(const RecordPipeline &) = delete;
    RecordPipeline &operator=(const RecordPipeline &) = delete;

    void add(DataFragment &block, std::string_view line, std::uint64_t offset, std::uint64_t shortfall);
    // Hands on what there is, and takes the lines that came with earlier refills: the next one overwrites
    // them.
    void beginRefill();
    void takeAll();
    // Forgets all lines.
    void dropAll();
    bool isEmpty() const { return handedCount_ == 0 && open().job.batch.isEmpty(); }

private:
    struct Stage {
        ParsingThreads::Job job;
        std::uint64_t shortfall = 0;
        std::uint64_t refill = 0; // number of the refill that the lines came with
    };

    // So many that the threads have enough to do while the next bytes are read.
    static constexpr std::size_t stageCount = 24;

    Stage &open() const { return *stages_[(oldest_ + handedCount_) % stageCount]; }
    void hand();
    void takeOldest();

    ParsingThreads &threads_;
    Taker take_;
    std::vector<std::unique_ptr<Stage>> stages_; // a ring: those handed over, then the one being filled
    std::size_t oldest_ = 0;
    std::size_t handedCount_ = 0; // less than all
    std::uint64_t refill_ = 0;
};
