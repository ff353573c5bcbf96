#include "support/FaultyReads.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Watched {
    dev_t device = 0;
    ino_t node = 0;
    FaultyReads::Fault fault;
};

std::atomic<bool> isArmed = false;
Watched watched; // changed only while nothing is armed
std::atomic<std::size_t> readCount = 0;
std::atomic<std::size_t> failureCount = 0;

bool isWatched(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 && status.st_dev == watched.device && status.st_ino == watched.node;
}

ssize_t systemRead(int file, void *to, std::size_t wanted) {
    return ::syscall(SYS_read, file, to, wanted);
}

} // namespace

// A name of its own, so that it does not meet the declaration and the checks of the system's header.
extern "C" ssize_t readWithFaults(int file, void *to, std::size_t wanted) __asm__("read");

extern "C" __attribute__((visibility("default"))) ssize_t readWithFaults(int file, void *to,
                                                                         std::size_t wanted) {
    if (!isArmed || !isWatched(file)) {
        return systemRead(file, to, wanted);
    }
    const FaultyReads::Fault &fault = watched.fault;
    if (++readCount == fault.actsAtRead) {
        fault.action();
    }
    const auto at = static_cast<std::size_t>(::lseek(file, 0, SEEK_CUR));
    if (at >= fault.failsAt && at < fault.failsUntil) {
        ++failureCount;
        errno = EIO;
        return -1;
    }
    if (at >= fault.endsAt) {
        return 0;
    }
    const std::size_t good = at < fault.failsAt ? fault.failsAt - at : FaultyReads::never;
    return systemRead(file, to, std::min({wanted, fault.largestPiece, good, fault.endsAt - at}));
}

FaultyReads::FaultyReads(const std::string &path, const Fault &fault) {
    struct stat status {};
    if (isArmed || ::stat(path.c_str(), &status) != 0) {
        throw std::runtime_error("no faults can be made in " + path);
    }
    watched = {status.st_dev, status.st_ino, fault};
    readCount = 0;
    failureCount = 0;
    isArmed = true;
}

FaultyReads::~FaultyReads() {
    isArmed = false;
}

std::size_t FaultyReads::reads() const {
    return readCount;
}

std::size_t FaultyReads::failures() const {
    return failureCount;
}
