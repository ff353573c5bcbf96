#include "export/ExportFile.h"

#include <cerrno>
#include <cstdio>

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

class ExportFile : public ExportSink {
public:
    explicit ExportFile(std::FILE *file) : file_(file) {
        // Blocks come whole already; unbuffered, each goes to the system in one piece.
        std::setvbuf(file, nullptr, _IONBF, 0);
    }

    std::error_code write(std::string_view bytes) override {
        const bool isWhole = std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size();
        return isWhole ? std::error_code() : lastError();
    }

    std::error_code close() override {
        return std::fclose(file_.release()) == 0 ? std::error_code() : lastError();
    }

private:
    struct Close {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> file_;
};

} // namespace

std::unique_ptr<ExportSink> openExportFile(const std::string &path, std::error_code &error) {
    // Binary, so that no system changes line ends.
    std::FILE *const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        error = lastError();
        return nullptr;
    }
    return std::make_unique<ExportFile>(file);
}
