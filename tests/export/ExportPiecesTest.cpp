// Exports that are split: where they are cut, what the pieces are called, what begins anew in each.

#include "export/ExportTest.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

class ExportInPieces : public ExportTest {
protected:
    using Names = std::vector<std::string>;

    // The value columns of a text export's lines.
    static std::string valuesIn(const std::string &text) {
        std::string values;
        for (std::size_t begin = text.find('\n') + 1; begin < text.size();) {
            const auto end = text.find('\n', begin);
            const auto tab = text.find('\t', begin);
            values += (values.empty() ? "" : " ") + text.substr(tab + 1, end - tab - 1);
            begin = end + 1;
        }
        return values;
    }

    // Exports in pieces and returns what each piece is called, and holds.
    std::vector<std::pair<std::string, std::string>> pieces(std::int32_t period) {
        run(requestFor("f.txt", period));
        std::vector<std::pair<std::string, std::string>> all;
        for (const std::string &name : shownFiles()) {
            all.emplace_back(name, valuesIn(read(name)));
        }
        return all;
    }
    using Pieces = std::vector<std::pair<std::string, std::string>>;
};

TEST_F(ExportInPieces, ANewHourStartsANewPieceAfterATenthOfASecond) {
    load(record(tenOClock + hour - 1, "1", "900000000") + record(tenOClock + hour, "2"));
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1059.txt", "1"}, {"f-2021-06-30T1100.txt", "2"}}));
}

TEST_F(ExportInPieces, ARecordExactlyOnABoundaryStartsTheNewPiece) {
    load(record(tenOClock + 1799, "1") + record(tenOClock + 1800, "2") + record(tenOClock + 1801, "3"));
    EXPECT_EQ(pieces(1800), (Pieces{{"f-2021-06-30T1029.txt", "1"}, {"f-2021-06-30T1030.txt", "2 3"}}));
}

TEST_F(ExportInPieces, APieceThatStartsOnAMultipleEndsAtTheNextOne) {
    load(record(tenOClock, "1") + record(tenOClock + 3599, "2") + record(tenOClock + 3600, "3"));
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1000.txt", "1 2"}, {"f-2021-06-30T1100.txt", "3"}}));
}

TEST_F(ExportInPieces, HoursWithoutRecordsGiveNoPiece) {
    load(record(tenOClock, "1") + record(tenOClock + 5 * hour + 120, "2"));
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1000.txt", "1"}, {"f-2021-06-30T1502.txt", "2"}}));
}

TEST_F(ExportInPieces, LongerPiecesStartAtMultiplesOfTheirPeriod) {
    // 10:00 lies within 08:00 to 12:00.
    load(record(tenOClock, "1") + record(tenOClock + 2 * hour - 1, "2") + record(tenOClock + 2 * hour, "3"));
    EXPECT_EQ(pieces(14400), (Pieces{{"f-2021-06-30T1000.txt", "1 2"}, {"f-2021-06-30T1200.txt", "3"}}));
    progress_ = {};
    EXPECT_EQ(pieces(7200), (Pieces{{"f-2021-06-30T1000.txt", "1 2"}, {"f-2021-06-30T1200.txt", "3"}}));
}

TEST_F(ExportInPieces, APeriodThatDoesNotDivideADayIsAlignedTo1970) {
    load(record(6999, "1") + record(7000, "2") + record(13999, "3") + record(14000, "4"));
    EXPECT_EQ(pieces(7000), (Pieces{{"f-1970-01-01T0156.txt", "1"},
                                    {"f-1970-01-01T0156-2.txt", "2 3"},
                                    {"f-1970-01-01T0353.txt", "4"}}));
}

TEST_F(ExportInPieces, InAZoneWithHalfAnHourHourlyPiecesAreNamedByMinute30) {
    load(records(tenOClock, 3, hour), "Asia/Kolkata");
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1530.txt", "0"},
                                    {"f-2021-06-30T1630.txt", "1"},
                                    {"f-2021-06-30T1730.txt", "2"}}));
}

TEST_F(ExportInPieces, InAZoneWithThreeQuartersOfAnHourHourlyPiecesAreNamedByMinute45) {
    load(records(tenOClock, 2, hour), "Asia/Kathmandu");
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1545.txt", "0"}, {"f-2021-06-30T1645.txt", "1"}}));
}

TEST_F(ExportInPieces, AWesternZoneWithHalfAnHourNamesPiecesByItsOwnClock) {
    load(records(tenOClock, 2, hour), "America/St_Johns");
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T0730.txt", "0"}, {"f-2021-06-30T0830.txt", "1"}}));
}

TEST_F(ExportInPieces, ADailyPieceRunsFromMidnightToMidnightUtcUnderTheLocalDateOfItsFirstRecord) {
    // 2021-06-30 22:00 to 2021-07-02 02:00 UTC: in Denver, six hours behind, the evening before.
    const std::uint32_t tenAtNight = tenOClock + 12 * hour;
    load(records(tenAtNight, 15, 2 * hour), "America/Denver");
    EXPECT_EQ(pieces(86400), (Pieces{{"f-2021-06-30.txt", "0"},
                                     {"f-2021-06-30-2.txt", "1 2 3 4 5 6 7 8 9 10 11 12"},
                                     {"f-2021-07-01.txt", "13 14"}}));
}

TEST_F(ExportInPieces, AnHourThatComesTwiceGetsANumberAndARemark) {
    // Denver, 2019-11-03: 01:00 to 02:00 in summer time, then once more in winter time.
    load(records(1572764400, 5, 1800), "America/Denver");
    EXPECT_EQ(pieces(1800), (Pieces{{"f-2019-11-03T0100.txt", "0"},
                                    {"f-2019-11-03T0130.txt", "1"},
                                    {"f-2019-11-03T0100-2.txt", "2"},
                                    {"f-2019-11-03T0130-2.txt", "3"},
                                    {"f-2019-11-03T0200.txt", "4"}}));
    ASSERT_EQ(progress_.remarks.size(), 2U);
    EXPECT_TRUE(progress_.remarks[0].starts_with(folder_.pathOf("f-2019-11-03T0100-2.txt") + ": "));
    EXPECT_TRUE(progress_.remarks[0].find(folder_.pathOf("f-2019-11-03T0100.txt")) != std::string::npos);
    EXPECT_TRUE(progress_.failures.empty());
}

TEST_F(ExportInPieces, AnHourThatIsSkippedLeavesAGapInTheNamesOnly) {
    // Denver, 2019-03-10: 02:00 to 03:00 does not exist.
    load(records(1552204800, 4, 1800), "America/Denver");
    EXPECT_EQ(pieces(1800), (Pieces{{"f-2019-03-10T0100.txt", "0"},
                                    {"f-2019-03-10T0130.txt", "1"},
                                    {"f-2019-03-10T0300.txt", "2"},
                                    {"f-2019-03-10T0330.txt", "3"}}));
}

TEST_F(ExportInPieces, AThirdPieceOfOneNameGetsTheNextNumber) {
    load(record(tenOClock, "1"), "Europe/Berlin");
    load(record(tenOClock + hour, "2"), "Europe/London", "b.data");
    load(record(tenOClock + 2 * hour, "3"), "UTC", "c.data");
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1200.txt", "1"},
                                    {"f-2021-06-30T1200-2.txt", "2"},
                                    {"f-2021-06-30T1200-3.txt", "3"}}));
}

TEST_F(ExportInPieces, RecordsThatGoBackInTimeAcrossACutStayInThePiece) {
    load(record(tenOClock + hour - 1, "1") + record(tenOClock + hour + 1, "2") +
         record(tenOClock + hour - 2, "3") + record(tenOClock + 2 * hour, "4") + record(tenOClock, "5"));
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1059.txt", "1"},
                                    {"f-2021-06-30T1100.txt", "2 3"},
                                    {"f-2021-06-30T1200.txt", "4 5"}}));
}

TEST_F(ExportInPieces, AnOverlappingFileStaysInThePieceThatIsOpen) {
    load(records(tenOClock, 4, 1800));
    load(records(tenOClock + 1800, 4, 1800), "UTC", "b.data");
    EXPECT_EQ(pieces(3600), (Pieces{{"f-2021-06-30T1000.txt", "0 1"},
                                    {"f-2021-06-30T1100.txt", "2 3 0 1 2"},
                                    {"f-2021-06-30T1200.txt", "3"}}));
}

TEST_F(ExportInPieces, EveryTextPieceHasOneHeader) {
    load(records(tenOClock, 4, 1800));
    run(requestFor("f.txt", 3600));
    EXPECT_EQ(read("f-2021-06-30T1000.txt"), "SECONDS\tA\t\n1625047200\t0\n1625049000\t1\n");
    EXPECT_EQ(read("f-2021-06-30T1100.txt"), "SECONDS\tA\t\n1625050800\t2\n1625052600\t3\n");
}

TEST_F(ExportInPieces, EveryTob1PieceCountsFromZeroAndTakesItsOwnOffset) {
    // Berlin, 2021-03-28 01:00 UTC: from 3600 s to 7200 s east.
    const std::uint32_t change = 1616893200;
    load(records(change - 1, 3), "Europe/Berlin");
    run(requestFor("f.tob1", 1800, ExportFormat::tob1));
    EXPECT_EQ(shownFiles(), (Names{"f-2021-03-28T0159.tob1", "f-2021-03-28T0300.tob1"}));
    const auto fieldOf = [this](const std::string &name, std::size_t record, std::size_t field) {
        const std::string file = read(name);
        const std::string_view end = "\"IEEE4\"\r\n";
        const std::size_t at = file.find(end) + end.size() + 16 * record + 4 * field;
        std::uint32_t number = 0;
        for (std::size_t i = 4; i-- > 0;) {
            number = number << 8 | static_cast<unsigned char>(file.at(at + i));
        }
        return number;
    };
    EXPECT_EQ(fieldOf("f-2021-03-28T0159.tob1", 0, 0), change - 1 + 3600 - 631152000);
    EXPECT_EQ(fieldOf("f-2021-03-28T0159.tob1", 0, 2), 0U);
    EXPECT_EQ(fieldOf("f-2021-03-28T0300.tob1", 0, 0), change + 7200 - 631152000);
    EXPECT_EQ(fieldOf("f-2021-03-28T0300.tob1", 0, 2), 0U);
    EXPECT_EQ(fieldOf("f-2021-03-28T0300.tob1", 1, 2), 1U);
}

TEST_F(ExportInPieces, ThePiecesRecordsTogetherAreThoseOfTheUncutFile) {
    load(records(tenOClock + 7, 3000, 11), "Australia/Lord_Howe");
    load(records(tenOClock + 9 * hour, 1000, 23), "Australia/Lord_Howe", "b.data");
    run(requestFor("whole.txt"));
    const std::string whole = read("whole.txt");
    const std::string header = whole.substr(0, whole.find('\n') + 1);
    for (const std::int32_t period : {1800, 3600, 7200, 14400, 86400}) {
        progress_ = {};
        run(requestFor("cut.txt", period));
        std::string together = header;
        for (const std::string &name : shownFiles()) {
            const std::string piece = read(name);
            ASSERT_TRUE(piece.starts_with(header));
            together += piece.substr(header.size());
        }
        EXPECT_EQ(together, whole) << period;
    }
}

TEST_F(ExportInPieces, WithoutRecordsNoFileIsMade) {
    load(records(1000, 1));
    const std::size_t before =
        static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.pathOf("")), {}));
    runExport(source("DATABIO"), requestFor("f.txt", 3600), progress_);
    EXPECT_EQ(progress_.files, Names());
    EXPECT_EQ(static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.pathOf("")), {})),
              before);
    EXPECT_TRUE(progress_.hasEnded);
}

TEST_F(ExportInPieces, ADotInAFoldersNameCountsWhenTheFileNameHasNone) {
    load(record(tenOClock, "1"));
    fs::create_directory(folder_.pathOf("out-2021-06-30T1000.d"));
    run(requestFor("out.d/f", 3600));
    EXPECT_EQ(progress_.files, Names{folder_.pathOf("out-2021-06-30T1000.d/f")});
    EXPECT_TRUE(progress_.failures.empty());
    EXPECT_TRUE(exists("out-2021-06-30T1000.d/f"));
}

TEST_F(ExportInPieces, APieceThatCannotBeOpenedLeavesTheOthers) {
    load(records(tenOClock, 3, hour));
    fs::create_directory(folder_.pathOf("f-2021-06-30T1100.txt"));
    run(requestFor("f.txt", 3600));
    EXPECT_EQ(progress_.failures, Names{folder_.pathOf("f-2021-06-30T1100.txt") +
                                        ": The export cannot be written: Is a directory"});
    EXPECT_EQ(valuesIn(read("f-2021-06-30T1000.txt")), "0");
    EXPECT_EQ(valuesIn(read("f-2021-06-30T1200.txt")), "2");
}

TEST_F(ExportInPieces, APieceThatIsALoadedFileIsLeftAloneAndTheOthersWritten) {
    load(records(tenOClock, 3, hour), "UTC", "f-2021-06-30T1100.txt");
    const std::string before = read("f-2021-06-30T1100.txt");
    run(requestFor("f.txt", 3600));
    ASSERT_EQ(progress_.failures.size(), 1U);
    EXPECT_TRUE(progress_.failures[0].starts_with(folder_.pathOf("f-2021-06-30T1100.txt") + ": "));
    EXPECT_EQ(read("f-2021-06-30T1100.txt"), before);
    EXPECT_EQ(valuesIn(read("f-2021-06-30T1000.txt")), "0");
    EXPECT_EQ(valuesIn(read("f-2021-06-30T1200.txt")), "2");
}

TEST_F(ExportInPieces, AFileThatIsLoadedWhileTheExportRunsIsLeftAlone) {
    load(records(tenOClock, 1200) + record(tenOClock + hour, "7"));
    progress_.atTime = [this] {
        const std::string text = "Instrument:\tR\nDATAH\tSECONDS\tA\nDATA\t1\t1\n";
        data_.merge(loadSource(folder_.write("f-2021-06-30T1100.txt", text)));
    };
    run(requestFor("f.txt", 3600));
    ASSERT_EQ(progress_.failures.size(), 1U);
    EXPECT_TRUE(read("f-2021-06-30T1100.txt").starts_with("Instrument:\tR\n"));
}

TEST_F(ExportInPieces, TheLastPieceOfTheRangeOfTimesEnds) {
    loadText("DATAH\tSECONDS\tA\nDATA\t2147480000\t1\nDATA\t2147483647\t2\n");
    EXPECT_EQ(pieces(86400), (Pieces{{"f-2038-01-19.txt", "1 2"}}));
}

} // namespace
