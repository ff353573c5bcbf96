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

// Fails the call of the given number, counted over all files of an export.
class CountingSink : public ExportSink {
public:
    CountingSink(SinkLog &log, std::size_t &calls, std::size_t failingCall)
        : log_(log), calls_(calls), failingCall_(failingCall) {}

    std::error_code write(std::string_view bytes) override {
        const std::error_code error = result();
        if (!error) {
            log_.bytes += bytes;
        }
        return error;
    }
    std::error_code close() override {
        log_.isClosed = true;
        return result();
    }

private:
    std::error_code result() {
        return calls_++ == failingCall_ ? std::make_error_code(std::errc::no_space_on_device)
                                        : std::error_code();
    }

    SinkLog &log_;
    std::size_t &calls_;
    std::size_t failingCall_;
};

// More records than are read at a time.
constexpr int manyRecords = 400'000;

} // namespace

TEST_F(ExportFaults, AFailureAtAnyWriteOfAnyPieceNamesThatPieceAndLeavesTheOthersWhole) {
    load(records(tenOClock, 50, hour / 10));
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1}) {
        const auto exportFailingAt = [&](std::size_t failingCall, std::size_t &calls) {
            std::map<std::string, SinkLog> logs;
            progress_ = {};
            const ExportSource all = source();
            ExportJob(all, requestFor("f.txt", hour, format), progress_,
                      [&](const std::string &name, std::error_code &) {
                          return std::make_unique<CountingSink>(logs[name], calls, failingCall);
                      })
                .run();
            return logs;
        };
        std::size_t allCalls = 0;
        const auto whole = exportFailingAt(MemorySink::never, allCalls);
        ASSERT_EQ(whole.size(), 5U);
        ASSERT_EQ(allCalls, 10U); // a write and a close for each
        for (std::size_t failing = 0; failing < allCalls; ++failing) {
            std::size_t calls = 0;
            const auto cut = exportFailingAt(failing, calls);
            EXPECT_TRUE(progress_.hasEnded);
            const std::string &failed = progress_.files.at(failing / 2);
            EXPECT_EQ(
                progress_.failures,
                std::vector<std::string>{failed + ": The export cannot be written: No space left on device"});
            ASSERT_EQ(cut.size(), whole.size());
            for (const auto &[name, log] : whole) {
                const bool isLost = name == failed && failing % 2 == 0;
                EXPECT_EQ(cut.at(name).bytes, isLost ? "" : log.bytes) << name;
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
