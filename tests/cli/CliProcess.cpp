#include "cli/CliProcess.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

using Pipe = std::array<int, 2>;

Pipe makePipe() {
    Pipe ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe can be made");
    }
    return ends;
}

// In the child, before the program starts.
[[noreturn]] void become(const std::vector<std::string> &arguments, const CliProcess::Setup &setup, int out,
                         int err) {
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    ::dup2(setup.outputFile.empty() ? out : ::open(setup.outputFile.c_str(), O_WRONLY | O_CLOEXEC),
           STDOUT_FILENO);
    ::dup2(setup.errorDescriptor < 0 ? err : setup.errorDescriptor, STDERR_FILENO);
    for (const std::string &variable : setup.environment) {
        const auto equals = variable.find('=');
        ::setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
    }
    // Whoever runs the tests in the background may have them ignore interrupts.
    std::signal(SIGINT, SIG_DFL);
    if (setup.obeysFileModes) {
        // Refused to those who are not root, who obey them anyway.
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    }
    if (setup.largestFile > 0) {
        const rlimit limit{setup.largestFile, setup.largestFile};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    std::vector<std::string> words{FVQA_CLI_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> pointers(words.size() + 1);
    std::transform(words.begin(), words.end(), pointers.begin(),
                   [](std::string &word) { return word.data(); });
    ::execv(FVQA_CLI_PROGRAM, pointers.data());
    ::_exit(127);
}

} // namespace

CliProcess::CliProcess(const std::vector<std::string> &arguments, const Setup &setup) {
    const Pipe out = makePipe();
    const Pipe err = makePipe();
    process_ = ::fork();
    if (process_ < 0) {
        throw std::runtime_error("no process can be started");
    }
    if (process_ == 0) {
        become(arguments, setup, out[1], err[1]);
    }
    ::close(out[1]);
    ::close(err[1]);
    out_ = out[0];
    err_ = err[0];
}

CliProcess::~CliProcess() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    closeOutput();
    ::close(err_);
}

void CliProcess::waitForOutput() {
    pollfd stream{out_, POLLIN, 0};
    if (::poll(&stream, 1, patience) != 1 || !readSome(out_, result_.out)) {
        throw std::runtime_error("the program gives no output");
    }
}

void CliProcess::closeOutput() {
    if (out_ >= 0) {
        ::close(std::exchange(out_, -1));
    }
}

void CliProcess::interrupt() const {
    ::kill(process_, SIGINT);
}

CliResult CliProcess::finish() {
    bool outputOpen = out_ >= 0;
    bool errorOpen = true;
    while (outputOpen || errorOpen) {
        std::array<pollfd, 2> streams{
            {{outputOpen ? out_ : -1, POLLIN, 0}, {errorOpen ? err_ : -1, POLLIN, 0}}};
        if (::poll(streams.data(), streams.size(), patience) <= 0) {
            ::kill(process_, SIGKILL);
            throw std::runtime_error("the program does not end");
        }
        if (streams[0].revents != 0) {
            outputOpen = readSome(out_, result_.out);
        }
        if (streams[1].revents != 0) {
            errorOpen = readSome(err_, result_.err);
        }
    }
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    if (WIFEXITED(status)) {
        result_.status = WEXITSTATUS(status);
    } else {
        result_.signal = WTERMSIG(status);
    }
    return result_;
}

bool CliProcess::readSome(int descriptor, std::string &to) {
    std::array<char, 65536> block{};
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count <= 0) {
        return false;
    }
    to.append(block.data(), static_cast<std::size_t>(count));
    return true;
}

CliResult runCli(const std::vector<std::string> &arguments, const CliProcess::Setup &setup) {
    return CliProcess(arguments, setup).finish();
}
