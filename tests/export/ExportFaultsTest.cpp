// Exports whose outputs fail one after the other, and whose sources are changed or taken away meanwhile: all
// that can be written is written, and each loss is named.

#include "export/ExportTest.h"
#include "export/MemorySink.h"
#include "loading/FileLoading.h"
#include "support/CapturedStandardError.h"
#include "support/FaultyReads.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <map>
#include <utility>

namespace fs = std::filesystem;

namespace {

class ExportFaults : public ExportTest {
protected:
    // Loaded the way the programs do: what the file was like is known.
    std::string loadFile(const std::string &name, const std::string &text) {
        std::string path = folder_.write(name, "Instrument:\tQ\n" + text);
        DataSet source(path);
        const LoadReport report =
            ::loadFile(QString::fromStdString(path), source, std::atomic<bool>(false), [](int, qint64) {});
        EXPECT_EQ(report.problem, "");
        data_.merge(source);
        return path;
    }
    static std::string header() { return "DATAH\tSECONDS\tNANOSECONDS\tA\n"; }

    // Rows below the header.
    std::ptrdiff_t rowsIn(const std::string &name) const {
        const std::string text = read(name);
        return std::max<std::ptrdiff_t>(std::count(text.begin(), text.end(), '\n'), 1) - 1;
    }
};

// One call of a sink: a write or the close.
struct SinkCall {
    std::string file;
    std::size_t bytesBefore = 0; // that the file had taken
    bool isWrite = false;
};

// All files of an export, of whose calls, counted over all of them, one fails.
struct WatchedFiles {
    std::size_t failingCall = MemorySink::never;
    std::map<std::string, std::string> bytes;
    std::vector<SinkCall> calls;
};

class WatchedSink : public ExportSink {
public:
    WatchedSink(WatchedFiles &files, std::string name)
        : files_(files), name_(std::move(name)), bytes_(files.bytes[name_]) {}

    std::error_code write(std::string_view bytes) override {
        const std::error_code error = note(true);
        bytes_ += error ? "" : bytes;
        return error;
    }
    std::error_code close() override { return note(false); }

private:
    std::error_code note(bool isWrite) {
        files_.calls.push_back({name_, bytes_.size(), isWrite});
        return files_.calls.size() == files_.failingCall + 1
                   ? std::make_error_code(std::errc::no_space_on_device)
                   : std::error_code();
    }

    WatchedFiles &files_;
    std::string name_;
    std::string &bytes_;
};

// Records of five hours, so many in the first one that its piece is written in several blocks, and a
// diagnostic word that changes now and then.
std::string recordsOfFiveHours(std::uint32_t first) {
    std::string header = "DATADIAGH\tNOSIGNAL\tPUMPON\nDATAH\tSECONDS\tDIAG";
    std::string values;
    for (int column = 0; column < 60; ++column) {
        header += "\tX" + std::to_string(column);
        values += "\t12345.5";
    }
    std::string text = header + '\n';
    for (std::uint32_t i = 0; i < 1240; ++i) {
        const std::uint32_t seconds = i < 1200 ? 3 * i : 3600 + 360 * (i - 1200);
        text +=
            "DATA\t" + std::to_string(first + seconds) + '\t' + std::to_string(i / 100 % 4) + values + '\n';
    }
    return text;
}

// More records than are read at a time.
constexpr int manyRecords = 400'000;

} // namespace

TEST_F(ExportFaults, AFailureAtAnyWriteOfAnyPieceNamesThatPieceAndLeavesTheOthersWhole) {
    loadText(recordsOfFiveHours(tenOClock));
    const ExportSource all = source();
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1, ExportFormat::diagnostics}) {
        const auto exportFailingAt = [&](std::size_t failingCall) {
            WatchedFiles files{failingCall, {}, {}};
            progress_ = {};
            ExportJob(all, requestFor("f.txt", hour, format), progress_,
                      [&](const std::string &name, std::error_code &) {
                          return std::make_unique<WatchedSink>(files, name);
                      })
                .run();
            return files;
        };
        const WatchedFiles whole = exportFailingAt(MemorySink::never);
        ASSERT_TRUE(progress_.failures.empty());
        // Each file is written and closed, and one has further blocks.
        ASSERT_EQ(whole.bytes.size(), format == ExportFormat::diagnostics ? 1U : 5U);
        ASSERT_GT(whole.calls.size(), 2 * whole.bytes.size());
        for (std::size_t failing = 0; failing < whole.calls.size(); ++failing) {
            const SinkCall &failed = whole.calls[failing];
            const WatchedFiles cut = exportFailingAt(failing);
            EXPECT_TRUE(progress_.hasEnded);
            EXPECT_EQ(progress_.failures,
                      std::vector<std::string>{failed.file +
                                               ": The export cannot be written: No space left on device"});
            ASSERT_EQ(cut.bytes.size(), whole.bytes.size());
            for (const auto &[name, bytes] : whole.bytes) {
                const bool isCut = name == failed.file && failed.isWrite;
                EXPECT_TRUE(cut.bytes.at(name) == (isCut ? bytes.substr(0, failed.bytesBefore) : bytes))
                    << name << " with call " << failing << " failing";
            }
        }
    }
}

// Where nobody may make files, not even the superuser.
TEST_F(ExportFaults, AReadOnlyFolderIsNamedWithTheReasonForEveryPiece) {
    load(records(tenOClock, 3, hour));
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1, ExportFormat::diagnostics}) {
        progress_ = {};
        ExportRequest request = requestFor("", hour, format);
        request.targetName = "/sys/out.txt";
        run(request);
        ASSERT_EQ(progress_.failures.size(), format == ExportFormat::diagnostics ? 1U : 3U);
        for (std::size_t i = 0; i < progress_.failures.size(); ++i) {
            EXPECT_TRUE(progress_.failures[i] ==
                            progress_.files[i] + ": The export cannot be written: Permission denied" ||
                        progress_.files[i] + ": The export cannot be written: Read-only file system" ==
                            progress_.failures[i])
                << progress_.failures[i];
        }
        EXPECT_TRUE(progress_.hasEnded);
    }
}

TEST_F(ExportFaults, ASourceThatFailsAtAnyByteGivesTheRecordsBeforeAndOneLine) {
    const std::string path = loadFile("a.data", header() + records(1000, 20));
    loadFile("b.data", header() + records(5000, 5));
    const std::string text = read("a.data");
    // What lies before the records is not read again.
    for (std::size_t at = text.find("DATA\t") - 1; at < text.size(); at += 7) {
        const FaultyReads faults(path, {.failsAt = at});
        const CapturedStandardError errors;
        progress_ = {};
        run(requestFor("out.txt"));
        const auto expected =
            std::max<std::ptrdiff_t>(
                std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'), 2) -
            2;
        EXPECT_EQ(rowsIn("out.txt"), expected + 5) << at;
        EXPECT_EQ(errors.text(), path + ": Reading failed after byte " + std::to_string(at) + " of " +
                                     std::to_string(text.size()) + ": Input/output error\n");
        EXPECT_TRUE(progress_.hasEnded);
        EXPECT_TRUE(progress_.failures.empty());
    }
}

TEST_F(ExportFaults, AFileOfManyBlocksThatVanishedIsNamedOnce) {
    std::string text;
    for (std::uint32_t block = 0; block < 30; ++block) {
        text += header() + records(1000 + 10 * block, 2);
    }
    const std::string path = loadFile("a.data", text);
    fs::remove(path);
    const CapturedStandardError errors;
    run(requestFor("out.txt"));
    EXPECT_FALSE(exists("out.txt"));
    EXPECT_EQ(errors.text(), path + ": The file is gone or no regular file\n");
    EXPECT_EQ(progress_.failures.size(), 1U);
    EXPECT_TRUE(progress_.hasEnded);
}

TEST_F(ExportFaults, ASourceThatIsCutShortWhileItIsExportedGivesWhatIsLeftAndOneLine) {
    const std::string path = loadFile("a.data", header() + records(tenOClock, manyRecords));
    const auto cut = static_cast<std::uintmax_t>(ChunkLineReader::readSize + 5000);
    const auto size = fs::file_size(path);
    ASSERT_GT(size, cut);
    bool isCut = false;
    progress_.atTime = [&] {
        if (!isCut) {
            fs::resize_file(path, cut);
            isCut = true;
        }
    };
    const CapturedStandardError errors;
    run(requestFor("out.txt"));
    const std::string left = read("a.data");
    EXPECT_EQ(rowsIn("out.txt"), std::count(left.begin(), left.end(), '\n') - 2);
    EXPECT_EQ(errors.text(), path + ": The file ends early, after byte " + std::to_string(cut) + " of " +
                                 std::to_string(size) + "\n");
    EXPECT_TRUE(progress_.hasEnded);
}

// An open file stays readable under Unix; its later blocks are not.
TEST_F(ExportFaults, ASourceThatIsDeletedOrReplacedWhileItIsExportedIsNamedOnce) {
    const std::string text = header() + records(1000, 3000) + header() + records(9000, 10);
    for (const bool isReplaced : {false, true}) {
        data_ = {};
        const std::string path = loadFile("a.data", text);
        progress_ = {};
        progress_.atTime = [&] {
            fs::remove(path);
            if (isReplaced) {
                folder_.write("a.data", "Dear reader,\n");
            }
        };
        const CapturedStandardError errors;
        run(requestFor("out.txt"));
        EXPECT_EQ(rowsIn("out.txt"), 3000);
        const std::string said = errors.text();
        EXPECT_TRUE(said.starts_with(path + ": The file ")) << said;
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_TRUE(progress_.hasEnded);
    }
}
