#pragma once

#include <streambuf>
#include <string>

// A stream buffer that collects what is written to it into lines. A line without its line feed is never
// passed on. Not safe for use by several threads at once.
class debugbuf : public std::streambuf {
protected:
    int_type overflow(int_type c) override;

    // Takes one whole line, without its line feed; this one writes it to Qt's debug log.
    virtual void output(const char *line);

private:
    std::string line_;
};
