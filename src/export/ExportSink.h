#pragma once

#include <string_view>
#include <system_error>

// Takes the bytes of one export file, in order.
class ExportSink {
public:
    virtual ~ExportSink() = default;

    // The error says why not all of `bytes` was taken.
    virtual std::error_code write(std::string_view bytes) = 0;
    // Call once, after the last write: some disks tell only now that they are full.
    virtual std::error_code close() = 0;
};
