#pragma once

#include <string>
#include <string_view>

// A regular file in memory that the product opens by its path. It leaves nothing behind, however the process
// ends.
class MemoryFile {
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    // Replaces what it holds.
    void hold(std::string_view bytes) const;

    static std::string folder() { return "/proc/self/fd"; }
    std::string name() const { return std::to_string(descriptor_); }
    std::string path() const { return folder() + '/' + name(); }

private:
    int descriptor_;
};
