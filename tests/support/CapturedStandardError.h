#pragma once

#include <iostream>
#include <sstream>
#include <string>

// Takes what is written to std::cerr while it lives.
class CapturedStandardError {
public:
    CapturedStandardError() : before_(std::cerr.rdbuf(text_.rdbuf())) {}
    ~CapturedStandardError() { std::cerr.rdbuf(before_); }
    CapturedStandardError(const CapturedStandardError &) = delete;
    CapturedStandardError &operator=(const CapturedStandardError &) = delete;

    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf *before_;
};
