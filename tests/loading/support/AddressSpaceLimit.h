#pragma once

#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

// While it lives, the program gets that much more address space at most.
class AddressSpaceLimit {
public:
    explicit AddressSpaceLimit(rlim_t more) {
        getrlimit(RLIMIT_AS, &before_);
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        rlimit limit = before_;
        limit.rlim_cur = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + more;
        setrlimit(RLIMIT_AS, &limit);
    }
    ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &before_); }
    AddressSpaceLimit(const AddressSpaceLimit &) = delete;
    AddressSpaceLimit &operator=(const AddressSpaceLimit &) = delete;

private:
    rlimit before_{};
};
