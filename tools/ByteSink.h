#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

// An output that could not be written whole.
class WriteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Where finished bytes go. write() takes all of them or throws WriteError.
class ByteSink {
public:
    ByteSink() = default;
    virtual ~ByteSink() = default;
    ByteSink(const ByteSink &) = delete;
    ByteSink &operator=(const ByteSink &) = delete;

    virtual void write(std::string_view bytes) = 0;
};

class StringSink : public ByteSink {
public:
    void write(std::string_view bytes) override { text_ += bytes; }
    const std::string &text() const { return text_; }

private:
    std::string text_;
};
