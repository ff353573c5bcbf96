#include "MemoryFile.h"

#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

MemoryFile::MemoryFile() : descriptor_(::memfd_create("fuzz", MFD_CLOEXEC)) {
    if (descriptor_ < 0) {
        throw std::runtime_error("a file in memory cannot be made");
    }
}

MemoryFile::~MemoryFile() {
    ::close(descriptor_);
}

void MemoryFile::hold(std::string_view bytes) const {
    if (::ftruncate(descriptor_, 0) != 0 ||
        ::pwrite(descriptor_, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("a file in memory cannot be written");
    }
}
