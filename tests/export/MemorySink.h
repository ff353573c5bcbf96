#pragma once

#include "export/ExportOutput.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// What came of a sink, kept when the sink is gone.
struct SinkLog {
    std::string bytes;               // of the calls that succeeded
    std::vector<std::size_t> blocks; // their sizes
    std::size_t calls = 0;           // writes and the close
    bool isClosed = false;
};

// Takes bytes into a log; fails at the call numbered `failingCall`, counted from 0, as a full disk does.
class MemorySink : public ExportSink {
public:
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

    explicit MemorySink(SinkLog &log, std::size_t failingCall = never)
        : log_(log), failingCall_(failingCall) {}

    std::error_code write(std::string_view bytes) override {
        if (log_.calls++ == failingCall_) {
            return std::make_error_code(std::errc::no_space_on_device);
        }
        log_.bytes += bytes;
        log_.blocks.push_back(bytes.size());
        return {};
    }

    std::error_code close() override {
        log_.isClosed = true;
        return log_.calls++ == failingCall_ ? std::make_error_code(std::errc::no_space_on_device)
                                            : std::error_code();
    }

private:
    SinkLog &log_;
    std::size_t failingCall_;
};

// An output into memory.
class MemoryOutput {
public:
    explicit MemoryOutput(std::size_t failingCall = MemorySink::never)
        : output_(std::make_unique<MemorySink>(log_, failingCall),
                  [this](const std::error_code &error) { errors_.push_back(error); }) {}

    ExportOutput &operator*() { return output_; }
    ExportOutput *operator->() { return &output_; }
    const SinkLog &log() const { return log_; }
    const std::vector<std::error_code> &errors() const { return errors_; }

    // All that was written; closes.
    std::string bytes() {
        output_.close();
        return log_.bytes;
    }

private:
    SinkLog log_;
    std::vector<std::error_code> errors_;
    ExportOutput output_;
};
