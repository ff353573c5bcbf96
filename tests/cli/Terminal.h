#pragma once

#include "cli/CliProcess.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

// A terminal in the place of standard error; what is written to it is read at the end.
class Terminal {
public:
    Terminal() : main_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        ::grantpt(main_);
        ::unlockpt(main_);
        const char *const name = ::ptsname(main_);
        program_ = name == nullptr ? -1 : ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (program_ < 0) {
            ::close(main_);
            throw std::runtime_error("no terminal can be made");
        }
    }
    ~Terminal() {
        ::close(program_);
        ::close(main_);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    int descriptor() const { return program_; }

    void waitForText() const {
        pollfd stream{main_, POLLIN, 0};
        if (::poll(&stream, 1, CliProcess::patience) != 1) {
            throw std::runtime_error("nothing is written to the terminal");
        }
    }

    // What was written since the last call.
    std::string text() {
        ::fcntl(main_, F_SETFL, O_NONBLOCK);
        std::array<char, 65536> block{};
        std::string all;
        for (ssize_t count = 0; (count = ::read(main_, block.data(), block.size())) > 0;) {
            all.append(block.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    int main_;
    int program_ = -1;
};
