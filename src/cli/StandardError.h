#pragma once

#include <map>
#include <mutex>
#include <streambuf>
#include <string>
#include <string_view>
#include <thread>

// The program's standard error while this lives: takes the place of std::cerr's buffer, writes whole lines
// only, each behind the program's name, and keeps a status line (the progress bar) below them.
//
// Every line written through std::cerr, from wherever, says that something failed. Any thread may write;
// lines of several threads do not mix.
class StandardError : public std::streambuf {
public:
    // Writes to the open file `descriptor`. One at a time.
    explicit StandardError(int descriptor);
    // Writes out a line that has no end yet.
    ~StandardError() override;
    StandardError(const StandardError &) = delete;
    StandardError &operator=(const StandardError &) = delete;

    // True when any line came through std::cerr.
    bool hasFailures() const;
    // Writes a line that is no failure.
    void remark(std::string_view line);

    // Shows a status line in the place of the present one. Does nothing until status lines are allowed.
    void allowStatus(bool allowed);
    void showStatus(std::string_view status);
    void eraseStatus();

    // Erases the status line and keeps it, and every other line, away while it lives, so that standard output
    // can be written to the same terminal.
    class Pause {
    public:
        explicit Pause(StandardError &standardError);

    private:
        std::unique_lock<std::mutex> lock_;
    };

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char *text, std::streamsize count) override;

private:
    void take(std::string_view text);
    void writeLine(std::string_view line);
    void writeRaw(std::string_view text) const;
    void erase();

    int descriptor_;
    std::streambuf *previous_;
    mutable std::mutex mutex_; // guards all below
    std::map<std::thread::id, std::string> unfinished_;
    bool hasFailures_ = false;
    bool statusAllowed_ = false;
    std::string status_;
};
