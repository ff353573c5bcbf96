#pragma once

#include "data/RecordBatch.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

// Threads that read the fields of record lines for those that load files, as far as the processor's cores are
// not taken by loads themselves.
//
// Started when the first batch waits for one, and kept. For any thread; must outlive the loads.
class ParsingThreads {
public:
    // A batch that may be handed over. Its state is theirs.
    struct Job {
        enum class State { open, waiting, beingRead, read };

        RecordBatch batch;
        State state = State::open;
    };

    // Counts a load among those at work while it lives.
    class Load {
    public:
        explicit Load(ParsingThreads *threads);
        ~Load();
        Load(const Load &) = delete;
        Load &operator=(const Load &) = delete;

    private:
        ParsingThreads *threads_; // may be null
    };

    // One thread reads so many bytes before anybody waits, and help has a price of its own.
    static constexpr std::int64_t smallSource = std::int64_t{64} * 1024 * 1024;

    // At most `most` are at work at once, those that load among them. Sources of at most `tooSmall` bytes are
    // not helped with.
    explicit ParsingThreads(unsigned most, std::int64_t tooSmall = smallSource)
        : most_(most), tooSmall_(tooSmall) {}
    // Waits for batches that are being read.
    ~ParsingThreads();
    ParsingThreads(const ParsingThreads &) = delete;
    ParsingThreads &operator=(const ParsingThreads &) = delete;

    // True when there is a core beside those of the loads, for a source of so many bytes, uncompressed.
    bool canHelpWith(std::int64_t size);
    // Has the job's batch read by the next thread that is free, which may be none before finish().
    void hand(Job &job);
    // Returns when the batch that was handed over is read. Reads it or others that wait meanwhile.
    void finish(Job &job);
    // Returns when the batch that was handed over is not being read any more, or will not be.
    void withdraw(Job &job);

private:
    void startThread();
    void work();
    bool hasWork() const { return !waiting_.empty() && loads_ + busy_ < most_; }
    void readNext(std::unique_lock<std::mutex> &lock);

    const unsigned most_;
    const std::int64_t tooSmall_;
    std::mutex mutex_; // guards what follows, and the jobs' states
    std::condition_variable handed_;
    std::condition_variable read_;
    std::deque<Job *> waiting_; // the oldest first
    unsigned loads_ = 0;
    unsigned busy_ = 0; // threads of ours that read
    unsigned idle_ = 0; // that wait for a batch
    bool isEnding_ = false;
    std::vector<std::thread> threads_;
};
