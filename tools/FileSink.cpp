#include "tools/FileSink.h"

#include <cerrno>
#include <system_error>
#include <utility>

FileSink::FileSink(std::string path) : path_(std::move(path)), file_(std::fopen(path_.c_str(), "wb")) {
    if (!file_) {
        fail();
    }
    std::setvbuf(file_.get(), nullptr, _IONBF, 0); // writers hand over large blocks
}

void FileSink::write(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
        fail();
    }
}

void FileSink::close() {
    if (std::fclose(file_.release()) != 0) {
        fail();
    }
}

void FileSink::fail() const {
    throw WriteError("cannot write " + path_ + ": " + std::generic_category().message(errno));
}
