#include "tools/Qa34xxWriter.h"

#include "tools/DataText.h"

#include <gtest/gtest.h>

namespace {

RecordingOptions recording() {
    RecordingOptions options;
    options.start = 1559368800;
    options.rate = 20;
    options.instrument = "AIU-0412";
    return options;
}

std::string written(const RecordingOptions &options, const RunLength &length) {
    Qa34xxWriter writer(options, Timezone(FVQA_ZONEINFO_DIR, "America/Denver"));
    StringSink sink;
    writer.write(sink, length, true);
    return sink.text();
}

} // namespace

TEST(Qa34xxWriter, HeaderNamesFortyFiveValuesBetweenTimeAndChecksum) {
    const std::string text = written(recording(), RunLength::ofSlots(1));
    const std::vector<std::string_view> names = splitAt(linesWith(text, "DATAH\t").at(0), '\t');
    ASSERT_EQ(names.size(), 51U); // the tag, 45 values, SECONDS, NANOSECONDS, DATE, TIME and CHK
    EXPECT_EQ(names[1], "SECONDS");
    EXPECT_EQ(names[2], "NANOSECONDS");
    EXPECT_EQ(names[3], "Sequence Number");
    EXPECT_EQ(names.back(), "CHK");
    EXPECT_EQ(std::count(names.begin(), names.end(), "CO2 dry (umol/mol)"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "Aux 1 - U (m/s)"), 1);
}

TEST(Qa34xxWriter, EveryRecordHasAllColumnsAndARightChecksum) {
    const std::string text = written(recording(), RunLength::ofSlots(20000));
    const std::vector<std::string_view> records = linesWith(text, "DATA\t");
    ASSERT_GT(records.size(), 10000U);
    for (const std::string_view record : records) {
        ASSERT_EQ(splitAt(record, '\t').size(), 51U);
    }
    EXPECT_EQ(wrongChecksums(records), 0U);
}

TEST(Qa34xxWriter, TwentyRecordsASecondWithMillisecondsInTheLocalTime) {
    const std::string text = written(recording(), RunLength::ofSlots(40));
    EXPECT_EQ(column(text, "DATA", "TIME").at(1), "00:00:00:050");
    EXPECT_EQ(column(text, "DATA", "NANOSECONDS").at(39), "950000000");
    EXPECT_EQ(column(text, "DATA", "SECONDS").at(39), "1559368801");
    EXPECT_EQ(column(text, "DATA", "Sequence Number").at(39), "40");
}

TEST(Qa34xxWriter, OddBlocksLeaveOutThePluggedSensors) {
    RecordingOptions options = recording();
    options.blocks = 3;
    options.badChecksums = 2;
    const std::string text = written(options, RunLength::ofSlots(3000));
    const std::vector<std::string_view> headers = linesWith(text, "DATAH\t");
    ASSERT_EQ(headers.size(), 3U);
    EXPECT_EQ(splitAt(headers[1], '\t').size(), 41U);
    EXPECT_EQ(headers[0], headers[2]);
    EXPECT_EQ(wrongChecksums(linesWith(text, "DATA\t")), 2U);
}

TEST(Qa34xxWriter, SameOptionsGiveTheSameBytesAndAnotherSeedOthers) {
    RecordingOptions other = recording();
    other.seed = 2;
    EXPECT_EQ(written(recording(), RunLength::ofSlots(2000)), written(recording(), RunLength::ofSlots(2000)));
    EXPECT_NE(written(recording(), RunLength::ofSlots(2000)), written(other, RunLength::ofSlots(2000)));
}
