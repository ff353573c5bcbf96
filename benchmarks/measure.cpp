// fvqa300-measure [--stdout FILE] [--times N] -- COMMAND...: runs a command and prints what it cost, one line
// a run: processor seconds (user and system), seconds on the wall, peak memory in KiB.
//
// A program of its own, and a small one, because the peak of a child counts from the size of its parent. The
// command's standard output goes to FILE or is dropped. The exit status is the command's, 2 for wrong usage.

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int wrongUsage = 2;
constexpr int cannotRun = 127;

struct Request {
    const char *standardOutput = "/dev/null";
    int times = 1;
    char **command = nullptr;
};

bool readArguments(char **arguments, Request &request) {
    for (; *arguments != nullptr && std::string_view(*arguments) != "--"; arguments += 2) {
        const std::string_view option = *arguments;
        const char *const value = arguments[1];
        if (value == nullptr) {
            return false;
        }
        if (option == "--stdout") {
            request.standardOutput = value;
        } else if (option == "--times") {
            std::from_chars(value, value + std::strlen(value), request.times);
        } else {
            return false;
        }
    }
    request.command = *arguments != nullptr ? arguments + 1 : arguments;
    return *request.command != nullptr && request.times > 0;
}

[[noreturn]] void runCommand(const Request &request) {
    constexpr mode_t everyone = 0666;
    const int output = open(request.standardOutput, O_WRONLY | O_CREAT | O_TRUNC, everyone);
    if (output < 0 || dup2(output, STDOUT_FILENO) < 0) {
        std::perror(request.standardOutput);
        _exit(cannotRun);
    }
    close(output);
    execvp(request.command[0], request.command);
    std::perror(request.command[0]);
    _exit(cannotRun);
}

double seconds(const timeval &time) {
    constexpr double microsecond = 1e-6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * microsecond;
}

int statusOf(int waited) {
    constexpr int killed = 128;
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : killed + WTERMSIG(waited);
}

// Runs the command once. Returns its exit status.
int measure(const Request &request) {
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) {
        std::perror("fork");
        return cannotRun;
    }
    if (child == 0) {
        runCommand(request);
    }
    int waited = 0;
    rusage usage{};
    while (wait4(child, &waited, 0, &usage) < 0 && errno == EINTR) {
    }
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
    std::printf("cpu %.6f wall %.6f peak %ld\n", seconds(usage.ru_utime) + seconds(usage.ru_stime),
                wall.count(), usage.ru_maxrss);
    std::fflush(stdout);
    return statusOf(waited);
}

} // namespace

int main(int, char **argv) {
    Request request;
    if (!readArguments(argv + 1, request)) {
        std::fputs("Usage: fvqa300-measure [--stdout FILE] [--times N] -- COMMAND...\n", stderr);
        return wrongUsage;
    }
    for (int run = 0; run < request.times; ++run) {
        if (const int status = measure(request); status != 0) {
            return status;
        }
    }
    return 0;
}
