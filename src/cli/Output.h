#pragma once

#include <string>
#include <string_view>
#include <system_error>

class StandardError;

// Standard output could not be written whole.
class OutputError : public std::system_error {
public:
    using std::system_error::system_error;

    // True when nobody reads any more, which is no news to anybody.
    bool isClosedPipe() const { return code() == std::errc::broken_pipe; }
};

// Standard output, written in large blocks of whole lines. An interrupt ends the process at a line's end.
// For the main thread only.
class Output {
public:
    // Writes to the open file `descriptor`, with the status line of `standardError` out of the way.
    Output(int descriptor, StandardError &standardError);

    // Takes whole lines. Throws OutputError.
    void write(std::string_view lines);
    // Writes out what is held and closes the file. Throws OutputError.
    void finish();

private:
    void flush();

    int descriptor_;
    StandardError &standardError_;
    std::string held_;
};
