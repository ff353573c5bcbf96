#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <vector>

// What a run of fvqa300-cli came to.
struct CliResult {
    int status = -1; // exit status; -1 when a signal ended it
    int signal = 0;
    std::string out;
    std::string err;
};

// A running fvqa300-cli. It has no standard input and gets killed when it does not end.
class CliProcess {
public:
    // Far more than any run takes, also under a sanitizer.
    static constexpr int patience = 120'000; // ms

    struct Setup {
        std::vector<std::string> environment; // "NAME=value", over those of the test
        std::string outputFile;               // standard output, else a pipe
        int errorDescriptor = -1;             // standard error, else a pipe
        bool obeysFileModes = false;          // also when the test runs as root
        std::size_t largestFile = 0;          // bytes that a file may grow to; 0 for no limit
    };

    explicit CliProcess(const std::vector<std::string> &arguments) : CliProcess(arguments, Setup()) {}
    CliProcess(const std::vector<std::string> &arguments, const Setup &setup);
    ~CliProcess();
    CliProcess(const CliProcess &) = delete;
    CliProcess &operator=(const CliProcess &) = delete;

    // Waits for some standard output and keeps it for the result.
    void waitForOutput();
    // Nobody reads its standard output from now on.
    void closeOutput();
    void interrupt() const;
    // Reads both streams to their ends.
    CliResult finish();

private:
    static bool readSome(int descriptor, std::string &to);

    pid_t process_ = -1;
    int out_ = -1;
    int err_ = -1;
    CliResult result_;
};

CliResult runCli(const std::vector<std::string> &arguments,
                 const CliProcess::Setup &setup = CliProcess::Setup());
