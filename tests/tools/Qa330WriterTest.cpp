#include "tools/Qa330Writer.h"

#include "tools/DataText.h"

#include <gtest/gtest.h>
#include <set>

namespace {

RecordingOptions recording() {
    RecordingOptions options;
    options.start = 1559415600;
    options.instrument = "Mast 3";
    return options;
}

std::string written(const RecordingOptions &options, const RunLength &length, bool named = true,
                    const std::string &zone = "America/Denver") {
    Qa330Writer writer(options, Timezone(FVQA_ZONEINFO_DIR, zone));
    StringSink sink;
    writer.write(sink, length, named);
    return sink.text();
}

RunLength minutes(unsigned count) {
    return RunLength::ofSlots(count * 600ULL);
}

} // namespace

TEST(Qa330Writer, EveryRecordHasTheColumnsOfItsHeaderAndARightChecksum) {
    const std::string text = written(recording(), minutes(120));
    for (const std::string tag : {"DATA", "DATASTAT"}) {
        const std::vector<std::string_view> headers = linesWith(text, tag + "H\t");
        ASSERT_EQ(headers.size(), 1U);
        const std::size_t columns = splitAt(headers[0], '\t').size();
        const std::vector<std::string_view> records = linesWith(text, tag + "\t");
        ASSERT_GT(records.size(), 1000U);
        for (const std::string_view record : records) {
            ASSERT_EQ(splitAt(record, '\t').size(), columns) << record;
        }
        EXPECT_EQ(wrongChecksums(records), 0U);
    }
    EXPECT_EQ(text.back(), '\n');
}

TEST(Qa330Writer, RecordsAreATenthOfASecondApartButForOneCalibrationAnHour) {
    const std::string text = written(recording(), minutes(120));
    const std::vector<long> seconds = integers(column(text, "DATA", "SECONDS"));
    const std::vector<long> nanoseconds = integers(column(text, "DATA", "NANOSECONDS"));
    int gaps = 0;
    for (std::size_t i = 1; i < seconds.size(); ++i) {
        const long step =
            (seconds[i] - seconds[i - 1]) * 10 + (nanoseconds[i] - nanoseconds[i - 1]) / 100000000;
        if (step != 1) {
            EXPECT_EQ(step, 401);
            ++gaps;
        }
    }
    EXPECT_EQ(gaps, 2);
    EXPECT_EQ(seconds.front(), 1559415600);
}

TEST(Qa330Writer, StatusComesEveryFiveSecondsAlsoInAGap) {
    const std::vector<long> seconds =
        integers(column(written(recording(), minutes(60)), "DATASTAT", "SECONDS"));
    ASSERT_EQ(seconds.size(), 720U);
    for (std::size_t i = 1; i < seconds.size(); ++i) {
        ASSERT_EQ(seconds[i] - seconds[i - 1], 5);
    }
}

TEST(Qa330Writer, LocalColumnsFollowTheZoneThroughTheEndOfDaylightSaving) {
    RecordingOptions options = recording();
    options.start = 1572767999; // 2019-11-03 07:59:59 UTC
    const std::string text = written(options, RunLength::ofSlots(20));
    const std::vector<std::string_view> dates = column(text, "DATA", "DATE");
    const std::vector<std::string_view> times = column(text, "DATA", "TIME");
    ASSERT_EQ(times.size(), 20U);
    EXPECT_EQ(times[9], "01:59:59:900");
    EXPECT_EQ(times[10], "01:00:00:000");
    EXPECT_EQ(dates[10], "2019-11-03");
}

TEST(Qa330Writer, LocalColumnsAreUtcInTheZoneUtc) {
    const std::string text = written(recording(), RunLength::ofSlots(3), true, "UTC");
    EXPECT_EQ(column(text, "DATA", "DATE")[2], "2019-06-01");
    EXPECT_EQ(column(text, "DATA", "TIME")[2], "19:00:00:200");
}

TEST(Qa330Writer, HeadNamesTheInstrumentUnlessItIsNameless) {
    const std::string named = written(recording(), RunLength::ofSlots(1));
    EXPECT_EQ(linesWith(named, "Instrument:\tMast 3").size(), 1U);
    EXPECT_EQ(linesWith(named, "DATAEVENT\tNAME\tMast 3").size(), 1U);
    EXPECT_EQ(linesWith(named, "Timezone:\tAmerica/Denver").size(), 1U);
    EXPECT_EQ(linesWith(named, "DATAEVENT\tSN\t").size(), 1U);
    const std::string nameless = written(recording(), RunLength::ofSlots(1), false);
    EXPECT_EQ(nameless.find("Mast 3"), std::string::npos);
    EXPECT_EQ(linesWith(nameless, "DATAH\t").size(), 1U);
}

TEST(Qa330Writer, BlocksHaveOtherColumnsInTheMiddleOfTheFile) {
    RecordingOptions options = recording();
    options.blocks = 2;
    const std::string text = written(options, minutes(10));
    const std::vector<std::string_view> headers = linesWith(text, "DATAH\t");
    ASSERT_EQ(headers.size(), 2U);
    EXPECT_NE(headers[0], headers[1]);
    const std::vector<std::string_view> records = linesWith(text, "DATA\t");
    const auto records2 = linesWith(std::string_view(text).substr(text.rfind("DATAH\t")), "DATA\t");
    EXPECT_NEAR(static_cast<double>(records2.size()), static_cast<double>(records.size()) / 2, 500);
    for (const std::string_view record : records2) {
        ASSERT_EQ(splitAt(record, '\t').size(), splitAt(headers[1], '\t').size());
    }
    EXPECT_EQ(wrongChecksums(records), 0U);
}

TEST(Qa330Writer, DamagesAsManyChecksumsAsAskedFor) {
    RecordingOptions options = recording();
    options.badChecksums = 7;
    EXPECT_EQ(wrongChecksums(linesWith(written(options, minutes(30)), "DATA\t")), 7U);
    EXPECT_EQ(wrongChecksums(linesWith(written(options, RunLength::ofBytes(1000000)), "DATA\t")), 7U);
}

TEST(Qa330Writer, FileOfAGivenSizeEndsWithTheLineThatReachesIt) {
    const std::string text = written(recording(), RunLength::ofBytes(3000000));
    EXPECT_GE(text.size(), 3000000U);
    EXPECT_LT(text.rfind('\n', text.size() - 2) + 1, 3000000U);
}

TEST(Qa330Writer, SameOptionsGiveTheSameBytesAndAnotherSeedOthers) {
    RecordingOptions other = recording();
    other.seed = 2;
    EXPECT_EQ(written(recording(), minutes(5)), written(recording(), minutes(5)));
    EXPECT_NE(written(recording(), minutes(5)), written(other, minutes(5)));
}

TEST(Qa330Writer, PiecesContinueOneRecording) {
    Qa330Writer writer(recording(), Timezone(FVQA_ZONEINFO_DIR, "America/Denver"));
    StringSink first;
    StringSink second;
    writer.write(first, minutes(2), true);
    writer.write(second, minutes(2), true);
    const std::string whole = written(recording(), minutes(4));
    const auto records = [](const std::string &text) {
        std::string lines;
        for (const std::string_view line : linesWith(text, "DATA")) {
            if (line.starts_with("DATA\t") || line.starts_with("DATASTAT\t")) {
                lines.append(line).append("\n");
            }
        }
        return lines;
    };
    EXPECT_EQ(records(first.text()) + records(second.text()), records(whole));
}

TEST(Qa330Writer, ADayShowsEveryConditionThatPeopleLookFor) {
    const std::string text = written(recording(), RunLength::ofSlots(864000));
    const std::vector<std::string_view> names = splitAt(linesWith(text, "DATADIAGH\t").at(0), '\t');
    std::set<std::string_view> on;
    std::set<std::string_view> off;
    for (const long word : integers(column(text, "DATA", "DIAG"))) {
        for (std::size_t bit = 0; bit + 1 < names.size(); ++bit) {
            ((word >> bit & 1) != 0 ? on : off).insert(names[bit + 1]);
        }
    }
    for (const std::string_view name : {"NOSIGNAL", "MOTORSPINNING", "PUMPON", "TOPHEATERON",
                                        "BOTTOMHEATERON", "CALIBRATING", "REFUNLOCKED"}) {
        EXPECT_TRUE(on.contains(name)) << name;
        EXPECT_TRUE(off.contains(name)) << name;
    }
}
