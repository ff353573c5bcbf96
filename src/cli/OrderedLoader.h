#pragma once

#include "data/DataSet.h"
#include "loading/FileLoading.h"
#include "loading/ParsingThreads.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class ProgressBar;

// A file that was read, or could not be.
struct LoadedFile {
    explicit LoadedFile(const std::string &fileName) : name(fileName), data(fileName) {}

    std::string name;
    DataSet data;
    LoadReport report;
};

// Loads files on several threads and hands them over in the order in which they were named, so that what
// comes out does not depend on timing. Workers run ahead of the taker by a few files only, which bounds the
// memory however many files there are.
class OrderedLoader {
public:
    // `progress` takes the bytes of the files on disk and must outlive the loader.
    OrderedLoader(std::vector<std::string> files, unsigned workers, ProgressBar &progress);
    // Stops the workers.
    ~OrderedLoader();
    OrderedLoader(const OrderedLoader &) = delete;
    OrderedLoader &operator=(const OrderedLoader &) = delete;

    // The next file, as soon as it is loaded; null behind the last one. For one thread.
    std::unique_ptr<LoadedFile> next();

private:
    void work();
    // Index of the file to load next, or the number of files when there is no more to do.
    std::size_t claim();
    std::unique_ptr<LoadedFile> load(const std::string &file);

    const std::vector<std::string> files_;
    const std::size_t lead_; // files that may be claimed ahead of the next one to be taken
    ProgressBar &progress_;
    ParsingThreads parsingThreads_;
    std::atomic<bool> cancelled_ = false;

    std::mutex mutex_; // guards what follows, down to the threads
    std::condition_variable loaded_;
    std::condition_variable taken_;
    std::map<std::size_t, std::unique_ptr<LoadedFile>> waiting_;
    std::size_t claimedCount_ = 0;
    std::size_t takenCount_ = 0;

    std::vector<std::thread> threads_;
};
