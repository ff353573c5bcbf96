#include "cli/OrderedLoader.h"

#include "cli/Interrupts.h"
#include "cli/ProgressBar.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <system_error>
#include <utility>

OrderedLoader::OrderedLoader(std::vector<std::string> files, unsigned workers, ProgressBar &progress)
    : files_(std::move(files)),
      lead_(std::size_t{2} * workers),
      progress_(progress),
      parsingThreads_(workers) {
    const InterruptsBlocked blocked;
    const std::size_t count = std::min<std::size_t>(workers, files_.size());
    try {
        while (threads_.size() < count) {
            threads_.emplace_back(&OrderedLoader::work, this);
        }
    } catch (const std::system_error &) {
        // The machine gives no more threads; fewer do the same.
        if (threads_.empty()) {
            throw;
        }
    }
}

OrderedLoader::~OrderedLoader() {
    {
        const std::lock_guard guard(mutex_);
        cancelled_ = true;
    }
    taken_.notify_all();
    for (std::thread &thread : threads_) {
        thread.join();
    }
}

std::unique_ptr<LoadedFile> OrderedLoader::next() {
    std::unique_lock lock(mutex_);
    if (takenCount_ == files_.size()) {
        return nullptr;
    }
    loaded_.wait(lock, [this] { return waiting_.contains(takenCount_); });
    auto file = std::move(waiting_.extract(takenCount_).mapped());
    ++takenCount_;
    lock.unlock();
    taken_.notify_all();
    return file;
}

void OrderedLoader::work() {
    for (std::size_t index = claim(); index < files_.size(); index = claim()) {
        auto file = load(files_[index]);
        const std::lock_guard guard(mutex_);
        waiting_.emplace(index, std::move(file));
        loaded_.notify_one();
    }
}

std::size_t OrderedLoader::claim() {
    std::unique_lock lock(mutex_);
    taken_.wait(lock, [this] {
        return cancelled_ || claimedCount_ == files_.size() || claimedCount_ < takenCount_ + lead_;
    });
    return cancelled_ || claimedCount_ == files_.size() ? files_.size() : claimedCount_++;
}

std::unique_ptr<LoadedFile> OrderedLoader::load(const std::string &name) {
    auto file = std::make_unique<LoadedFile>(name);
    std::int64_t reported = 0;
    const auto report = [this, &reported](int percent, qint64 fileSize) {
        const std::int64_t done = fileSize * percent / 100;
        progress_.advance(done - reported);
        reported = done;
    };
    try {
        file->report =
            loadFile(QString::fromStdString(name), file->data, cancelled_, report, &parsingThreads_);
    } catch (const std::exception &error) {
        file->report.problem = QString::fromUtf8(error.what());
    }
    return file;
}
