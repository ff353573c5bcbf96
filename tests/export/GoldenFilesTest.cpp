// Exports compared byte for byte with files that were not made by the program: see golden/README.md.

#include "export/ExportTest.h"

#include <charconv>

namespace {

std::string readWhole(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string golden(const std::string &name) {
    return readWhole(FVQA_GOLDEN_DIR "/" + name);
}

// The bytes that an annotated file stands for.
std::string bytesOfAnnotated(const std::string &text) {
    std::string bytes;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = text.find('\n', begin);
        const std::string_view line = std::string_view(text).substr(begin, end - begin);
        begin = end + 1;
        if (line.starts_with('|')) {
            bytes.append(line.substr(1)).append("\r\n");
            continue;
        }
        const std::string_view hexadecimal = line.substr(0, line.find('#'));
        for (std::size_t at = hexadecimal.find_first_not_of(' '); at < hexadecimal.size();
             at = hexadecimal.find_first_not_of(' ', at + 2)) {
            unsigned byte = 0;
            const char *const digits = hexadecimal.data() + at;
            EXPECT_EQ(std::from_chars(digits, digits + 2, byte, 16).ptr, digits + 2) << line;
            bytes += static_cast<char>(byte);
        }
    }
    return bytes;
}

class GoldenFiles : public ExportTest {
protected:
    GoldenFiles() { data_.merge(loadSource(FVQA_GOLDEN_DIR "/flux.data")); }

    void exportAs(ExportFormat format, std::uint32_t timeColumns = TimeColumns::standard,
                  std::int32_t splitPeriod = 0) {
        ExportRequest request = requestFor("flux.out", splitPeriod, format);
        request.timeColumns = timeColumns;
        runExport(exportSourceOf(data_, "QA330", "DATA"), request, progress_);
        EXPECT_EQ(progress_.failures, std::vector<std::string>());
        EXPECT_EQ(progress_.remarks, std::vector<std::string>());
    }
};

TEST_F(GoldenFiles, TextIsWrittenByteForByte) {
    exportAs(ExportFormat::text);
    EXPECT_EQ(read("flux.out"), golden("flux.txt"));
}

TEST_F(GoldenFiles, TextWithAllTimeColumnsIsWrittenByteForByte) {
    exportAs(ExportFormat::text, TimeColumns::all);
    EXPECT_EQ(read("flux.out"), golden("flux-all-times.txt"));
}

TEST_F(GoldenFiles, TextWithoutTimeColumnsIsWrittenByteForByte) {
    exportAs(ExportFormat::text, 0);
    EXPECT_EQ(read("flux.out"), golden("flux-no-times.txt"));
}

TEST_F(GoldenFiles, TextInHalfHoursIsWrittenByteForByte) {
    exportAs(ExportFormat::text, TimeColumns::timestamp | TimeColumns::offset, 1800);
    EXPECT_EQ(shownFiles(),
              (std::vector<std::string>{"flux-2019-11-03T0159.out", "flux-2019-11-03T0100.out"}));
    EXPECT_EQ(read("flux-2019-11-03T0159.out"), golden("flux-2019-11-03T0159.txt"));
    EXPECT_EQ(read("flux-2019-11-03T0100.out"), golden("flux-2019-11-03T0100.txt"));
}

TEST_F(GoldenFiles, Tob1IsWrittenByteForByte) {
    exportAs(ExportFormat::tob1);
    EXPECT_EQ(read("flux.out"), bytesOfAnnotated(golden("flux.tob1.annotated")));
}

TEST_F(GoldenFiles, DiagnosticsAreWrittenByteForByte) {
    exportAs(ExportFormat::diagnostics);
    EXPECT_EQ(read("flux.out"), golden("flux-diagnostics.txt"));
}

} // namespace
