#pragma once

#include <string>

// Says which case of a random test runs. When the process dies meanwhile, by a signal or by a sanitizer's
// report, standard error tells the text, where a test's own messages are lost. One at a time.
class RunningCase {
public:
    // `text` says how to run the case again; what is beyond 200 bytes is left out.
    explicit RunningCase(std::string text);
    ~RunningCase();
    RunningCase(const RunningCase &) = delete;
    RunningCase &operator=(const RunningCase &) = delete;

    const std::string &text() const { return text_; }

private:
    std::string text_;
};
