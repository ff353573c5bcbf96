#include "independent/ComparedExports.h"

#include "export/ExportJob.h"
#include "export/ExportProgress.h"
#include "independent/IndependentBytes.h"
#include "loading/FileLoading.h"

#include <algorithm>
#include <atomic>
#include <filesystem>

namespace {

class SilentProgress : public ExportProgress {
public:
    void showFile(const std::string & /*name*/) override {}
    void showTime(double /*utcSeconds*/) override {}
    bool isCancelled() override { return false; }
    // A record of another length in TOB1 is one; what is written is compared in any case.
    void reportFailure(const std::string & /*line*/) override {}
    void remark(const std::string & /*line*/) override {}
};

// Bytes around the first difference, in hexadecimal where they are no text.
std::string around(const std::string &bytes, std::size_t at) {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    const std::size_t begin = std::min(at, bytes.size()) - std::min<std::size_t>(at, 60);
    for (const char c : bytes.substr(begin, 120)) {
        const auto byte = static_cast<unsigned char>(c);
        text += byte < ' ' || byte > '~' ? std::string{'<', digits[byte / 16U], digits[byte % 16U], '>'}
                                         : std::string(1, c);
    }
    return text;
}

testing::AssertionResult compare(const ExportedFiles &wanted, const ExportedFiles &got) {
    for (const auto &[name, bytes] : wanted) {
        const auto file = got.find(name);
        if (file == got.end()) {
            return testing::AssertionFailure() << name << " is missing";
        }
        if (file->second != bytes) {
            const auto [at, _] =
                std::mismatch(bytes.begin(), bytes.end(), file->second.begin(), file->second.end());
            const auto offset = static_cast<std::size_t>(at - bytes.begin());
            return testing::AssertionFailure()
                   << name << " differs at " << offset << "\n  independent: " << around(bytes, offset)
                   << "\n  written:     " << around(file->second, offset);
        }
    }
    for (const auto &[name, bytes] : got) {
        if (!wanted.contains(name)) {
            return testing::AssertionFailure() << name << " is there, too";
        }
    }
    return testing::AssertionSuccess();
}

} // namespace

ComparedExports::ComparedExports(const std::vector<std::string> &paths)
    : blocks_(readIndependently(paths, FVQA_ZONEINFO_DIR)) {
    const std::atomic<bool> cancelled = false;
    for (const std::string &path : paths) {
        DataSet source(path);
        loadFile(QString::fromStdString(path), source, cancelled, [](int, qint64) {});
        data_.merge(source);
    }
}

std::set<std::pair<std::string, std::string>> ComparedExports::kinds() const {
    std::set<std::pair<std::string, std::string>> kinds;
    for (const auto &block : blocks_) {
        kinds.emplace(block->instrument, block->tag);
    }
    return kinds;
}

std::size_t ComparedExports::recordCount() const {
    std::size_t count = 0;
    for (const auto &block : blocks_) {
        count += block->records.size();
    }
    return count;
}

testing::AssertionResult ComparedExports::areEqual(ExportFormat format, IndependentRequest request) const {
    std::filesystem::create_directory(folder_.pathOf("out"));
    request.target = folder_.pathOf("out/" + request.target);
    const auto independent = format == ExportFormat::text   ? independentText
                             : format == ExportFormat::tob1 ? independentTob1
                                                            : independentDiagnostics;
    testing::AssertionResult result = compare(independent(blocks_, request), exported(format, request));
    std::filesystem::remove_all(folder_.pathOf("out"));
    return result << "\n  " << request.instrument << ':' << request.tag << ", format "
                  << static_cast<int>(format) << ", columns " << request.timeColumns << ", split "
                  << request.split;
}

ExportedFiles ComparedExports::exported(ExportFormat format, const IndependentRequest &request) const {
    SilentProgress progress;
    runExport(exportSourceOf(data_, request.instrument, request.tag),
              {format, request.target, request.timeColumns, static_cast<std::int32_t>(request.split)},
              progress);
    ExportedFiles files;
    for (const auto &entry : std::filesystem::directory_iterator(folder_.pathOf("out"))) {
        files[entry.path().string()] = bytesOfFile(entry.path().string());
    }
    return files;
}
