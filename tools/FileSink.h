#pragma once

#include "tools/ByteSink.h"

#include <cstdio>
#include <memory>
#include <string>

// A file on disk, replaced when it exists.
class FileSink : public ByteSink {
public:
    explicit FileSink(std::string path);

    void write(std::string_view bytes) override;
    // Must be called at the end: what the system could not store shows only here.
    void close();

private:
    struct Close {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    [[noreturn]] void fail() const;

    std::string path_;
    std::unique_ptr<std::FILE, Close> file_;
};
