#include "export/ExportProgress.h"

#include "export/ExportTest.h"
#include "support/CapturedStandardError.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(ProgressScale, IsZeroAtTheEarliestAndAHundredAtTheLatestTime) {
    for (const double span : {0.05, 1.0, 1799.95, 1e6, 3e8}) {
        for (const double earliest : {0.0, 1.0, 1559415600.0, 1559415600.123456789}) {
            const ProgressScale scale(earliest, earliest + span);
            EXPECT_EQ(scale.percentAt(earliest), 0);
            EXPECT_EQ(scale.percentAt(earliest + span), 100);
        }
    }
}

TEST(ProgressScale, CutsToWholePercents) {
    const ProgressScale scale(1000, 2000);
    EXPECT_EQ(scale.percentAt(1009.9), 0);
    EXPECT_EQ(scale.percentAt(1010), 1);
    EXPECT_EQ(scale.percentAt(1500), 50);
    EXPECT_EQ(scale.percentAt(1999.9), 99);
}

TEST(ProgressScale, StaysBetweenZeroAndAHundred) {
    const ProgressScale scale(1000, 2000);
    EXPECT_EQ(scale.percentAt(0), 0);
    EXPECT_EQ(scale.percentAt(1e300), 100);
    EXPECT_EQ(scale.percentAt(std::numeric_limits<double>::infinity()), 100);
    EXPECT_EQ(scale.percentAt(std::nan("")), 0);
}

TEST(ProgressScale, IsZeroWhenThereIsNoTimeBetween) {
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(ProgressScale(5, 5).percentAt(5), 0);
    EXPECT_EQ(ProgressScale(largest, -largest).percentAt(5), 0);
}

class QuietProgress : public ExportProgress {
public:
    void showFile(const std::string &) override {}
    void showTime(double) override {}
    bool isCancelled() override { return false; }
};

TEST(ExportProgress, LinesGoToStandardErrorUnlessTakenElsewhere) {
    const CapturedStandardError captured;
    QuietProgress progress;
    progress.reportFailure("a failure");
    progress.remark("a remark");
    EXPECT_EQ(captured.text(), "a failure\na remark\n");
}

using ExportProgressOfJob = ExportTest;

TEST_F(ExportProgressOfJob, ComesAfterEvery1001stRecordWithItsTime) {
    load(records(1000, 3005));
    run(requestFor("out.txt"));
    EXPECT_EQ(progress_.times, (std::vector<double>{2000, 3001, 4002}));
    EXPECT_EQ(progress_.files, std::vector<std::string>{folder_.pathOf("out.txt")});
    EXPECT_EQ(progress_.timesAsked, 3);
    EXPECT_TRUE(progress_.hasEnded);
}

TEST_F(ExportProgressOfJob, CountsRecordsAcrossPieces) {
    load(records(tenOClock, 12 * 1001, 60));
    run(requestFor("out.txt", 3600));
    EXPECT_EQ(progress_.times.size(), 12U);
    EXPECT_EQ(progress_.files.size(), 12U * 1001 / 60 + 1);
}

TEST_F(ExportProgressOfJob, ACancelledFileKeepsItsBeginning) {
    load(records(1000, 5000));
    progress_.cancelledFrom = 1;
    run(requestFor("out.txt"));
    const std::string text = read("out.txt");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 2002);
    EXPECT_TRUE(text.ends_with("\n3001\t2001\n"));
    EXPECT_FALSE(progress_.hasEnded);
}

TEST_F(ExportProgressOfJob, CancelAfter500RecordsIsNoticedOnlyBeforeTheNextPieceOrAfter1001Records) {
    load(records(tenOClock, 900));
    progress_.cancelledFrom = 0;
    run(requestFor("out.txt"));
    EXPECT_EQ(progress_.timesAsked, 0);
    EXPECT_TRUE(read("out.txt").ends_with("\t899\n"));

    // Pieces of 900 and 1100 records; the user cancels within the first one.
    load(records(tenOClock + hour, 1100), "UTC", "b.data");
    progress_ = {};
    progress_.cancelledFrom = 1; // not before the first piece
    run(requestFor("cut.txt", 3600));
    EXPECT_EQ(shownFiles(), std::vector<std::string>{"cut-2021-06-30T1000.txt"});
    EXPECT_TRUE(read("cut-2021-06-30T1000.txt").ends_with("\t899\n"));
    EXPECT_FALSE(exists("cut-2021-06-30T1100.txt"));
    EXPECT_FALSE(progress_.hasEnded);
}

TEST_F(ExportProgressOfJob, ACancelledSplitExportKeepsTheEarlierPieces) {
    load(records(tenOClock, 100, 36) + records(tenOClock + hour, 3000));
    progress_.cancelledFrom = 2; // before each of two pieces, then after 1001 records
    run(requestFor("out.txt", 3600));
    EXPECT_TRUE(read("out-2021-06-30T1000.txt").ends_with("\t99\n"));
    EXPECT_TRUE(read("out-2021-06-30T1100.txt").ends_with("\t900\n"));
}

TEST_F(ExportProgressOfJob, ACancelledDiagnosticsFileKeepsItsLines) {
    std::string text = "DATADIAGH\tNOSIGNAL\nDATAH\tSECONDS\tDIAG\n";
    for (int i = 0; i < 3000; ++i) {
        text += "DATA\t" + std::to_string(1000 + i) + '\t' + std::to_string(i % 2) + '\n';
    }
    loadText(text);
    progress_.cancelledFrom = 0;
    run(requestFor("out.txt", 0, ExportFormat::diagnostics));
    const std::string log = read("out.txt");
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1 + 1000);
}

} // namespace
