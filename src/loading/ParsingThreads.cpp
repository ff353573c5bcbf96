#include "loading/ParsingThreads.h"

#include <algorithm>
#include <new>
#include <system_error>

ParsingThreads::Load::Load(ParsingThreads *threads) : threads_(threads) {
    if (threads_ != nullptr) {
        const std::lock_guard guard(threads_->mutex_);
        ++threads_->loads_;
    }
}

ParsingThreads::Load::~Load() {
    if (threads_ != nullptr) {
        {
            const std::lock_guard guard(threads_->mutex_);
            --threads_->loads_;
        }
        threads_->handed_.notify_all();
    }
}

ParsingThreads::~ParsingThreads() {
    {
        const std::lock_guard guard(mutex_);
        isEnding_ = true;
    }
    handed_.notify_all();
    for (std::thread &thread : threads_) {
        thread.join();
    }
}

bool ParsingThreads::canHelpWith(std::int64_t size) {
    if (size <= tooSmall_) {
        return false;
    }
    const std::lock_guard guard(mutex_);
    return loads_ < most_;
}

void ParsingThreads::hand(Job &job) {
    {
        const std::lock_guard guard(mutex_);
        try {
            waiting_.push_back(&job);
        } catch (const std::bad_alloc &) {
            return; // left to finish()
        }
        job.state = Job::State::waiting;
        if (waiting_.size() > idle_) {
            startThread();
        }
    }
    handed_.notify_one();
}

// When the machine gives no more threads, fewer do the same, or those that load.
void ParsingThreads::startThread() {
    // What is left to a thread that loads keeps no more of them busy.
    constexpr unsigned mostForEachLoad = 3;
    if (loads_ + threads_.size() >= most_ || threads_.size() >= std::size_t{mostForEachLoad} * loads_) {
        return;
    }
    try {
        threads_.emplace_back(&ParsingThreads::work, this);
    } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch)
    } catch (const std::bad_alloc &) {    // NOLINT(bugprone-empty-catch)
    }
}

void ParsingThreads::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        ++idle_;
        handed_.wait(lock, [this] { return isEnding_ || hasWork(); });
        --idle_;
        if (isEnding_) {
            return;
        }
        ++busy_;
        readNext(lock);
        --busy_;
    }
}

void ParsingThreads::readNext(std::unique_lock<std::mutex> &lock) {
    Job &job = *waiting_.front();
    waiting_.pop_front();
    job.state = Job::State::beingRead;
    lock.unlock();
    job.batch.read();
    lock.lock();
    job.state = Job::State::read;
    read_.notify_all();
}

void ParsingThreads::withdraw(Job &job) {
    std::unique_lock lock(mutex_);
    if (job.state == Job::State::waiting) {
        waiting_.erase(std::find(waiting_.begin(), waiting_.end(), &job));
    }
    read_.wait(lock, [&job] { return job.state != Job::State::beingRead; });
    job.state = Job::State::open;
}

void ParsingThreads::finish(Job &job) {
    std::unique_lock lock(mutex_);
    if (job.state == Job::State::open) {
        lock.unlock();
        job.batch.read();
        return;
    }
    while (job.state != Job::State::read) {
        if (waiting_.empty()) {
            read_.wait(lock);
        } else {
            readNext(lock);
        }
    }
    job.state = Job::State::open;
}
