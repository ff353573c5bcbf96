// Exports into one file: what is read, and what is left when something is amiss.

#include "export/DiagnosticsWriter.h"
#include "export/ExportTest.h"
#include "export/MadeRecord.h"
#include "export/MemorySink.h"
#include "export/TextWriter.h"
#include "export/Tob1Writer.h"
#include "support/CapturedStandardError.h"
#include "support/SanitizerBuild.h"
#include "time/AllocationWatch.h"

#include <filesystem>
#include <limits>

namespace fs = std::filesystem;

using ExportToOneFile = ExportTest;

TEST_F(ExportToOneFile, HoldsAllRecordsOfTheTagFragmentAfterFragment) {
    load(records(2000, 2) + "DATASTATH\tSECONDS\tA\nDATASTAT\t1500\t99\n");
    load(records(1000, 3), "UTC", "b.data");
    run(requestFor("out.txt"));
    EXPECT_EQ(read("out.txt"), "SECONDS\tA\t\n1000\t0\n1001\t1\n1002\t2\n2000\t0\n2001\t1\n");
    EXPECT_TRUE(progress_.failures.empty());
    EXPECT_TRUE(progress_.remarks.empty());
    EXPECT_TRUE(progress_.hasEnded);
}

TEST_F(ExportToOneFile, AnExistingFileIsReplaced) {
    load(records(1000, 1));
    folder_.write("out.txt", std::string(100000, 'x'));
    run(requestFor("out.txt"));
    EXPECT_EQ(read("out.txt"), "SECONDS\tA\t\n1000\t0\n");
}

TEST_F(ExportToOneFile, WithoutRecordsTheFileIsEmpty) {
    load(records(1000, 1));
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1}) {
        runExport(source("DATABIO"), requestFor("out.txt", 0, format), progress_);
        EXPECT_EQ(read("out.txt"), "");
    }
}

TEST_F(ExportToOneFile, WithoutRecordsADiagnosticsFileHasItsHeader) {
    load(records(1000, 1));
    runExport(source("DATABIO"), requestFor("out.txt", 0, ExportFormat::diagnostics), progress_);
    EXPECT_EQ(read("out.txt"),
              "TIMESTAMP\tSECONDS\tDIAG\tNOSIGNAL\tMOTOR\tPUMP\tTOPHEATER\tBOTTOMHEATER\r\n");
}

TEST_F(ExportToOneFile, DiagnosticsAreNeverSplit) {
    loadText("DATADIAGH\tNOSIGNAL\nDATAH\tSECONDS\tDIAG\nDATA\t1000\t1\nDATA\t9000\t0\nDATA\t99000\t1\n");
    run(requestFor("out.txt", 1800, ExportFormat::diagnostics));
    EXPECT_EQ(progress_.files, std::vector<std::string>{folder_.pathOf("out.txt")});
    const std::string log = read("out.txt");
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 4);
}

TEST_F(ExportToOneFile, ATob1FileNamesTheAnalyserQa330AndTheFirstFragmentsVersion) {
    loadText("Software Version:\t7.0\nDATASTATH\tSECONDS\tA\nDATASTAT\t500\t1\n");
    loadText("Software Version:\t8.3-b\nDATAH\tSECONDS\tA\nDATA\t1000\t1\n", "b.data");
    run(requestFor("out.tob1", 0, ExportFormat::tob1));
    EXPECT_TRUE(
        read("out.tob1")
            .starts_with("\"TOB1\",\"QA330\",\"QA330\",\"\",\"7.0\",\"QA330\",\"QA330\",\"DATA\"\r\n"));
}

TEST_F(ExportToOneFile, AVersionThatNoFileNamesIsUnknown) {
    load(records(1000, 1));
    run(requestFor("out.tob1", 0, ExportFormat::tob1));
    EXPECT_NE(read("out.tob1").find("\"\",\"Unknown\",\"QA330\""), std::string::npos);
}

// A later block may hold other columns; its values are written as they come.
TEST_F(ExportToOneFile, NamesAreThoseOfTheFirstFragmentAndARemarkSaysThatOthersDiffer) {
    loadText("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t2\nDATAH\tSECONDS\tC\nDATA\t2000\t3\n");
    run(requestFor("out.txt"));
    EXPECT_EQ(read("out.txt"), "SECONDS\tA\tB\t\n1000\t1\t2\n2000\t3\n");
    ASSERT_EQ(progress_.remarks.size(), 1U);
    EXPECT_TRUE(progress_.remarks[0].starts_with(folder_.pathOf("out.txt") + ": The columns changed"));
    EXPECT_TRUE(progress_.failures.empty());
}

// The records are written whole, but each is as long as its own block's.
TEST_F(ExportToOneFile, ATob1FileOfRecordsOfChangingLengthIsAFailure) {
    loadText("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t2\nDATAH\tSECONDS\tC\nDATA\t2000\t3\n");
    run(requestFor("out.tob1", 0, ExportFormat::tob1));
    ASSERT_EQ(progress_.failures.size(), 1U);
    EXPECT_TRUE(
        progress_.failures[0].starts_with(folder_.pathOf("out.tob1") + ": The number of columns changed"));
    EXPECT_GT(read("out.tob1").size(), 100U);
}

TEST_F(ExportToOneFile, ASourceThatWasRemovedMeanwhileIsNotWrittenTo) {
    load(records(1000, 3));
    const std::string before = read("a.data");
    ExportSource source = exportSourceOf(data_, "Q", "DATA");
    data_.removeFile(folder_.pathOf("a.data"));
    runExport(source, requestFor("a.data"), progress_);
    EXPECT_EQ(read("a.data"), before);
    ASSERT_EQ(progress_.failures.size(), 1U);
    EXPECT_NE(progress_.failures[0].find("would replace"), std::string::npos);
}

TEST_F(ExportToOneFile, ReadsOnWhileItsFilesAreRemovedAndOthersAdded) {
    load(records(1000, 1500));
    load(records(5000, 600), "UTC", "b.data");
    progress_.atTime = [this] {
        data_.removeFile(folder_.pathOf("a.data"));
        data_.removeFile(folder_.pathOf("b.data"));
        data_.merge(
            loadSource(folder_.write("c.data", "Instrument:\tQ\nDATAH\tSECONDS\tA\nDATA\t9000\t7\n")));
    };
    run(requestFor("out.txt"));
    const std::string text = read("out.txt");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 2100);
    EXPECT_TRUE(text.ends_with("\n5599\t599\n"));
}

TEST_F(ExportToOneFile, ASourceThatIsGoneIsNamedAndTheOthersAreExported) {
    load(records(1000, 2));
    load(records(2000, 1), "UTC", "b.data");
    fs::remove(folder_.pathOf("a.data"));
    const CapturedStandardError captured;
    run(requestFor("out.txt"));
    EXPECT_EQ(read("out.txt"), "SECONDS\tA\t\n2000\t0\n");
    EXPECT_TRUE(captured.text().starts_with(folder_.pathOf("a.data") + ": ")) << captured.text();
}

TEST_F(ExportToOneFile, WhenAllSourcesAreGoneTheEarlierFileStays) {
    load(records(1000, 2));
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1, ExportFormat::diagnostics}) {
        folder_.write("out", "of yesterday");
        fs::rename(folder_.pathOf("a.data"), folder_.pathOf("moved"));
        progress_ = {};
        const CapturedStandardError captured;
        run(requestFor("out", 0, format));
        EXPECT_EQ(read("out"), "of yesterday");
        EXPECT_EQ(progress_.failures,
                  std::vector<std::string>{
                      folder_.pathOf("out") +
                      ": The export cannot be written: the files that hold the records are gone"});
        EXPECT_TRUE(captured.text().starts_with(folder_.pathOf("a.data") + ": ")) << captured.text();
        fs::rename(folder_.pathOf("moved"), folder_.pathOf("a.data"));
    }
}

TEST_F(ExportToOneFile, BlocksThatNeverHadARecordStillEmptyTheFile) {
    load("");
    folder_.write("out.txt", "of yesterday");
    run(requestFor("out.txt"));
    EXPECT_EQ(read("out.txt"), "");
    EXPECT_TRUE(progress_.failures.empty());
}

TEST_F(ExportToOneFile, ALogOfBitsWithoutNamesGivesARemark) {
    load(records(1000, 2));
    run(requestFor("out.txt", 0, ExportFormat::diagnostics));
    ASSERT_EQ(progress_.remarks.size(), 1U);
    EXPECT_TRUE(
        progress_.remarks[0].starts_with(folder_.pathOf("out.txt") + ": The data do not name the bits"));
    EXPECT_TRUE(progress_.failures.empty());
    progress_ = {};
    run(requestFor("out.txt"));
    EXPECT_TRUE(progress_.remarks.empty());
}

TEST_F(ExportToOneFile, ATargetThatCannotBeOpenedIsReportedAndTheExportGoesOn) {
    load(records(1000, 1500));
    fs::create_directory(folder_.pathOf("folder"));
    const std::vector<std::pair<std::string, std::string>> rows{{"none/out.txt", "No such file or directory"},
                                                                {"folder", "Is a directory"}};
    for (const auto &[name, reason] : rows) {
        progress_ = {};
        run(requestFor(name));
        EXPECT_EQ(progress_.failures, std::vector<std::string>{folder_.pathOf(name) +
                                                               ": The export cannot be written: " + reason});
        EXPECT_EQ(progress_.times.size(), 1U);
        EXPECT_TRUE(progress_.hasEnded);
    }
}

TEST_F(ExportToOneFile, AFullDiskIsReportedOnceAndTheExportGoesOn) {
    load(records(1000, 50000));
    ExportRequest request = requestFor("");
    request.targetName = "/dev/full";
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1, ExportFormat::diagnostics}) {
        progress_ = {};
        request.format = format;
        run(request);
        EXPECT_EQ(
            progress_.failures,
            std::vector<std::string>{"/dev/full: The export cannot be written: No space left on device"});
        EXPECT_TRUE(progress_.hasEnded);
    }
}

// Every write and the close fail once, each in an export of its own.
TEST_F(ExportToOneFile, AFailureAtAnyWriteIsReportedOnceAndLeavesTheBytesBefore) {
    std::string text = "DATADIAGH\tNOSIGNAL\nDATAH\tSECONDS\tDIAG\tA\n";
    const int count = isSanitizerBuild ? 30000 : 60000;
    for (int i = 0; i < count; ++i) {
        text += "DATA\t" + std::to_string(1559415600 + i) + (i % 10000 == 5 ? "\t1" : "\t0") + "\t1.5\n";
    }
    loadText(text);
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1, ExportFormat::diagnostics}) {
        const auto exportInto = [&](SinkLog &log, std::size_t failingCall) {
            progress_ = {};
            const ExportSource all = source();
            ExportJob(all, requestFor("out", 0, format), progress_,
                      [&](const std::string &, std::error_code &) {
                          return std::make_unique<MemorySink>(log, failingCall);
                      })
                .run();
        };
        SinkLog whole;
        exportInto(whole, MemorySink::never);
        EXPECT_TRUE(progress_.failures.empty());
        ASSERT_GT(whole.calls, 3U);
        for (std::size_t failing = 0; failing < whole.calls; ++failing) {
            SinkLog cut;
            exportInto(cut, failing);
            EXPECT_EQ(progress_.failures.size(), 1U);
            EXPECT_TRUE(progress_.hasEnded);
            EXPECT_EQ(cut.calls, failing + 1);
            EXPECT_EQ(cut.blocks.size(), std::min(failing, whole.blocks.size()));
            EXPECT_TRUE(whole.bytes.starts_with(cut.bytes));
        }
    }
}

TEST_F(ExportToOneFile, ALoadedFileIsNeverWrittenTo) {
    load(records(1000, 3));
    const std::string before = read("a.data");
    fs::create_symlink(folder_.pathOf("a.data"), folder_.pathOf("link"));
    fs::create_hard_link(folder_.pathOf("a.data"), folder_.pathOf("hard"));
    for (const ExportFormat format : {ExportFormat::text, ExportFormat::tob1, ExportFormat::diagnostics}) {
        for (const std::string name : {"a.data", "./a.data", "link", "hard"}) {
            progress_ = {};
            run(requestFor(name, 0, format));
            ASSERT_EQ(progress_.failures.size(), 1U);
            EXPECT_TRUE(progress_.failures[0].starts_with(folder_.pathOf(name) + ": "))
                << progress_.failures[0];
            EXPECT_EQ(read("a.data"), before);
        }
    }
}

TEST_F(ExportToOneFile, ExportedRecordsAreThoseThatWereLoaded) {
    load(record(1000, "1.5") + record(1001, "x") + "DATA\t1002\n" + record(1003, "-nan") +
         record(1004, "1e39"));
    run(requestFor("out.txt"));
    EXPECT_EQ(read("out.txt"), "SECONDS\tA\t\n1000\t1.5\n1003\tnan\n1004\tinf\n");
}

namespace {

// Allocations of writing records after the first one.
template <typename Write>
void expectNoAllocations(MemoryOutput &output, const Write &write) {
    Record record = recordAtHalfPastOne({1.5, -0.001, 1e30, 0.1, std::numeric_limits<double>::quiet_NaN()});
    write(record);
    output->flush();
    const AllocationWatch watch;
    for (int i = 0; i < 1000; ++i) {
        ++record.seconds;
        record.values[0] += 1.25;
        write(record);
    }
    EXPECT_EQ(watch.count(), 0U);
}

} // namespace

TEST(Writers, AllocateNothingForARecord) {
    if (!AllocationWatch::isPossible()) {
        GTEST_SKIP() << "allocations cannot be seen in this build";
    }
    {
        MemoryOutput output;
        TextWriter writer(*output);
        writer.setColumns({"A", "B", "C", "D", "E"}, TimeColumns::all);
        expectNoAllocations(output, [&](const Record &record) { writer.write(record); });
    }
    {
        MemoryOutput output;
        Tob1Writer writer(*output);
        writer.setEnvironment({});
        writer.setFieldNames({"A"});
        expectNoAllocations(output, [&](const Record &record) { writer.write(record); });
    }
    {
        MemoryOutput output;
        DiagnosticsWriter writer(*output, {"NOSIGNAL"});
        expectNoAllocations(output, [&](const Record &record) { writer.write(record); });
    }
}
