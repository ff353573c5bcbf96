#pragma once

#include "export/ExportSink.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

// Collects what a writer writes into large blocks of whole records for a sink.
//
// The first error of the sink is reported once; what comes after it is taken and dropped, so that a writer
// need not care. Nothing is allocated once the room for the longest record has been asked for.
class ExportOutput {
public:
    static constexpr std::size_t blockSize = std::size_t{256} * 1024;

    using ReportError = std::function<void(const std::error_code &)>;

    // Without a sink everything is dropped.
    ExportOutput(std::unique_ptr<ExportSink> sink, ReportError reportError);
    // Closes.
    ~ExportOutput();
    ExportOutput(const ExportOutput &) = delete;
    ExportOutput &operator=(const ExportOutput &) = delete;

    // Room for `count` bytes behind those taken; holds until the next call.
    char *room(std::size_t count) {
        if (count > capacity_ - size_) {
            grow(count);
        }
        return block_.get() + size_;
    }
    // Takes the bytes that were written into the room, up to `end`.
    void take(const char *end) { size_ = static_cast<std::size_t>(end - block_.get()); }
    void append(std::string_view bytes);

    // A record is complete; hands the block on when it is large enough.
    void endRecord() {
        if (size_ >= blockSize) {
            flush();
        }
    }
    // Hands on what is held.
    void flush();
    void close();

private:
    void grow(std::size_t count);
    void note(const std::error_code &error);

    std::unique_ptr<ExportSink> sink_; // null without one, after an error and when closed
    ReportError reportError_;
    std::unique_ptr<char[]> block_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};
