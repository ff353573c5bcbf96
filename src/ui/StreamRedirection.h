#pragma once

#include <ostream>

// Sends what is written to a stream to another buffer while it lives.
class StreamRedirection {
public:
    StreamRedirection(std::ostream &stream, std::streambuf *buffer)
        : stream_(stream), original_(stream.rdbuf(buffer)) {}
    ~StreamRedirection() { stream_.rdbuf(original_); }
    StreamRedirection(const StreamRedirection &) = delete;
    StreamRedirection &operator=(const StreamRedirection &) = delete;

private:
    std::ostream &stream_;
    std::streambuf *original_;
};
