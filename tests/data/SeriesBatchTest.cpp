#include "data/SeriesBatch.h"

#include "PlainSeries.h"
#include "RandomDataFile.h"
#include "SourceReadingTest.h"
#include "support/CapturedStandardError.h"
#include "support/RandomNumbers.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

using SeriesBatchTest = SourceReadingTest;

std::size_t linesOf(const std::string &text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// The values of one variable.
std::vector<double> valuesOf(const DataSet &dataSet, const std::string &key, double start, double end) {
    return *dataSet.seriesOf({{key, ""}}, start, end).at(0).values;
}

struct Clock {
    const char *timezone; // as the file says
    const char *wallZone; // of the instrument's clock
    std::int64_t start;   // shortly before the clock is set back, mostly
};
constexpr std::array clocks{Clock{"", "Europe/Berlin", 1572138000 - 5000},
                            Clock{"Europe/Berlin", "Europe/Berlin", 1572138000 - 5000},
                            Clock{"America/New_York", "America/New_York", 1572760800 - 5000},
                            Clock{"Australia/Lord_Howe", "Australia/Lord_Howe", 1554562800 - 5000},
                            Clock{"Europe/Berlin", "Europe/Berlin", 1553994000 - 5000},
                            Clock{"Asia/Kolkata", "Asia/Kolkata", 1559347200}};

RandomDataFile::Options optionsAt(const Clock &clock, std::uint64_t seed) {
    RandomDataFile::Options options;
    options.seed = seed;
    options.timezone = clock.timezone;
    options.wallZone = clock.wallZone;
    options.start = clock.start;
    options.lines = 400;
    return options;
}

} // namespace

TEST_F(SeriesBatchTest, GivesOfRandomFilesExactlyThePointsThatEachKeyAloneGives) {
    const std::size_t rounds = scaledDown(60);
    std::size_t found = 0;
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        RandomNumbers random(seed);
        const Clock &clock = clocks.at(seed % clocks.size());
        DataSet merged;
        for (std::uint64_t file = 0; file < 3; ++file) {
            RandomDataFile::Options options = optionsAt(clock, 100 * seed + file);
            options.start += static_cast<std::int64_t>(file) * 1500; // overlapping
            options.isPlain = random.oneIn(4);
            const std::string name = std::to_string(file) + ".data";
            merged.merge(loadSource(folder_.write(name, RandomDataFile(options).text())));
        }
        for (int query = 0; query < 12; ++query) {
            const double start = static_cast<double>(clock.start + random.between(-600, 7000));
            const double length = static_cast<double>(random.between(0, random.oneIn(4) ? 20000 : 5000));
            ASSERT_TRUE(
                sameAsPlain(merged, randomRequests(merged, random), start, start + length * 0.97, &found))
                << "seed " << seed;
        }
        ASSERT_TRUE(
            sameAsPlain(merged, randomRequests(merged, random), wholeRangeStart, wholeRangeEnd, &found))
            << "seed " << seed;
    }
    EXPECT_GT(found, rounds * 500);
}

TEST_F(SeriesBatchTest, GivesOfFilesLongerThanOneReadExactlyThePointsThatEachKeyAloneGives) {
    // Offsets fall short behind every read.
    std::size_t found = 0;
    const std::size_t rounds = scaledDown(4);
    for (std::uint64_t seed = 1; seed <= rounds; ++seed) {
        RandomNumbers random(seed);
        const Clock &clock = clocks.at(seed % clocks.size());
        RandomDataFile::Options options = optionsAt(clock, seed);
        options.longestRemark = 20000;
        options.lines = 3000; // about 30 MB
        const DataSet source = loadSource(folder_.write("a.data", RandomDataFile(options).text()));
        for (int query = 0; query < 4; ++query) {
            const double start = static_cast<double>(clock.start + random.between(-600, 30000));
            std::vector<SeriesRequest> requests = randomRequests(source, random);
            requests.resize(std::min<std::size_t>(requests.size(), 4));
            ASSERT_TRUE(sameAsPlain(source, requests, start, start + 4000, &found)) << "seed " << seed;
        }
    }
    EXPECT_GT(found, rounds * 10);
}

TEST_F(SeriesBatchTest, GivesOfRandomFilesOnOddBoundsWhatEachKeyAloneGives) {
    RandomNumbers random(1);
    DataSet merged;
    for (std::uint64_t file = 0; file < 3; ++file) {
        RandomDataFile::Options options = optionsAt(clocks.at(0), 700 + file);
        options.start += static_cast<std::int64_t>(file) * 1000000;
        merged.merge(loadSource(folder_.write(std::to_string(file), RandomDataFile(options).text())));
    }
    const double middle = static_cast<double>(clocks.at(0).start) + 2000;
    const std::array bounds{-infinity,       -1.0,          wholeRangeStart, 1.0,      middle,
                            middle + 0.5,    wholeRangeEnd, middle + 4000,   infinity, middle + 6000,
                            middle + 999999, notANumber,    4294967295.0};
    for (const double start : bounds) {
        for (const double end : bounds) {
            ASSERT_TRUE(sameAsPlain(merged, randomRequests(merged, random), start, end));
        }
    }
}

TEST_F(SeriesBatchTest, NoRequestsGiveNoSeries) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    EXPECT_TRUE(source.seriesOf({}, 0, 5000).empty());
    EXPECT_TRUE(DataSet().seriesOf({}, wholeRangeStart, wholeRangeEnd).empty());
}

TEST_F(SeriesBatchTest, KeysThatNameNothingGiveEmptyListsOfTheirOwnPlace) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\n");
    const auto points = source.seriesOf(
        {{"", ""}, {"Q:DATA:A", ""}, {"Q:DATA", ""}, {"Q:DATA:B", "max"}, {"R:DATA:A", "min"}}, 0, 5000);
    ASSERT_EQ(points.size(), 5U);
    for (const std::size_t i : {0U, 2U, 3U, 4U}) {
        ASSERT_NE(points[i].times, nullptr) << i;
        ASSERT_NE(points[i].values, nullptr) << i;
        EXPECT_TRUE(points[i].times->empty() && points[i].values->empty()) << i;
    }
    EXPECT_EQ(*points[1].times, std::vector<double>{1000});
    EXPECT_EQ(*points[1].values, std::vector<double>{1});
}

TEST_F(SeriesBatchTest, TheSeriesOfOneVariableShareTheRecordsWhateverTheirSelectors) {
    const DataSet source = load("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t2\nDATA\t1001\t3\t4\n");
    const auto points = source.seriesOf(
        {{"Q:DATA:A", ""}, {"Q:DATA:A", "max"}, {"Q:DATA:A", "min"}, {"Q:DATA:A", "other"}, {"Q:DATA:B", ""}},
        0, 5000);
    EXPECT_EQ(*points[0].values, (std::vector<double>{1, 3}));
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_EQ(points[i].values, points[0].values) << i;
        EXPECT_EQ(points[i].times, points[0].times) << i;
    }
    EXPECT_EQ(*points[4].values, (std::vector<double>{2, 4}));
    EXPECT_EQ(points[4].times, points[0].times);
}

TEST_F(SeriesBatchTest, TheSeriesOfAnotherTagHaveTimesOfTheirOwn) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATASTATH\tSECONDS\tA\nDATA\t1000\t1\nDATASTAT\t1001\t2\n"
                                "DATA\t1002\t3\n");
    const auto points = source.seriesOf({{"Q:DATA:A", ""}, {"Q:DATASTAT:A", ""}}, 0, 5000);
    EXPECT_EQ(*points[0].times, (std::vector<double>{1000, 1002}));
    EXPECT_EQ(*points[1].times, std::vector<double>{1001});
    EXPECT_EQ(*points[1].values, std::vector<double>{2});
}

TEST_F(SeriesBatchTest, SeriesWhoseColumnsAFragmentLacksHaveTimesOfTheirOwn) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t10\n", "a"));
    merged.merge(load("DATAH\tSECONDS\tB\nDATA\t2000\t20\n", "b"));
    merged.merge(load("DATAH\tSECONDS\tC\tA\tB\nDATA\t3000\t300\t3\t30\n", "c"));
    const auto points =
        merged.seriesOf({{"Q:DATA:A", ""}, {"Q:DATA:B", ""}, {"Q:DATA:C", ""}, {"Q:DATA:A", "max"}}, 0, 5000);
    EXPECT_EQ(*points[0].times, (std::vector<double>{1000, 3000}));
    EXPECT_EQ(*points[0].values, (std::vector<double>{1, 3}));
    EXPECT_EQ(*points[1].times, (std::vector<double>{1000, 2000, 3000}));
    EXPECT_EQ(*points[1].values, (std::vector<double>{10, 20, 30}));
    EXPECT_EQ(*points[2].times, std::vector<double>{3000});
    EXPECT_EQ(*points[2].values, std::vector<double>{300});
    EXPECT_EQ(points[3].times, points[0].times);
}

TEST_F(SeriesBatchTest, AveragesShareTheirTimesButNotTheirValues) {
    const DataSet source =
        load("DATAH\tSECONDS\tA\tB\n" + recordsOf("DATA", begin, begin + 7000, 1, "\t1\t2"));
    const auto points = source.seriesOf(
        {{"Q:DATA:A", ""}, {"Q:DATA:A", "max"}, {"Q:DATA:B", ""}, {"Q:DATA:A", "other"}, {"Q:DATA:A", "max"}},
        wholeRangeStart, wholeRangeEnd);
    EXPECT_EQ(points[0].times->size(), 117U);
    EXPECT_EQ(points[1].times, points[0].times);
    EXPECT_EQ(points[2].times, points[0].times);
    EXPECT_NE(points[1].values, points[0].values);
    EXPECT_EQ(points[4].values, points[1].values);
    EXPECT_EQ(points[2].values->front(), 2);
    EXPECT_TRUE(points[3].times->empty() && points[3].values->empty());
}

TEST_F(SeriesBatchTest, EachInstrumentAndTagResolvesTheWholeRangeForItself) {
    // One is short enough for records, the other one is not.
    const DataSet source = load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 7000, 10) +
                                "DATASTATH\tSECONDS\tA\n" + recordsOf("DATASTAT", begin, begin + 60, 10));
    const auto points =
        source.seriesOf({{"Q:DATA:A", ""}, {"Q:DATASTAT:A", "other"}}, wholeRangeStart, wholeRangeEnd);
    EXPECT_EQ(points[0].times->size(), 117U);
    EXPECT_EQ(*points[1].times, numbers(begin, begin + 60, 10));
}

TEST_F(SeriesBatchTest, AFlagAloneIsReadFromItsWord) {
    const DataSet source = load("DATADIAGH\tF\tG\tH\nDATAH\tSECONDS\tA\tDIAG\tB\nDATA\t100\t1\t6\t2\n"
                                "DATA\t101\t1\t1\t2\nDATA\t102\t1\tbad\t2\n");
    EXPECT_EQ(valuesOf(source, "Q:DATA:DIAG:G", 1, 1000), (std::vector<double>{2, 0}));
    EXPECT_EQ(valuesOf(source, "Q:DATA:DIAG", 1, 1000), (std::vector<double>{6, 1}));
    // The word must be there though nobody wants it.
    EXPECT_EQ(valuesOf(source, "Q:DATA:B", 1, 1000), (std::vector<double>{2, 2}));
}

TEST_F(SeriesBatchTest, BadChecksumsCountOnceForAllSeries) {
    const DataSet source = load("DATAH\tSECONDS\tA\tB\tCHK\nDATA\t1000\t1\t2\t0\nDATA\t1001\t1\t2\t1\n");
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_EQ(fragment.checksumFailures(), 2U);
    // The block holds no good record, so its time range is the zero of an unset clock.
    readAgain(fragment, -1, 1);
    ASSERT_EQ(fragment.checksumFailures(), 4U);
    source.seriesOf({{"Q:DATA:A", ""}, {"Q:DATA:B", ""}, {"Q:DATA:A", "max"}}, -1, 1);
    EXPECT_EQ(fragment.checksumFailures(), 6U);
}

TEST_F(SeriesBatchTest, AClockThatStepsBackGivesWhatEachKeyAloneGives) {
    const DataSet source =
        load("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t1\nDATA\t3000\t2\t1\nDATA\t900\t3\t1\nDATA\t2000\t4\t1\n"
             "DATA\t9000\t5\t1\nDATA\t2500\t6\t1\n");
    for (const auto &[start, end] :
         {std::pair{0.0, 5000.0}, std::pair{950.0, 5000.0}, std::pair{1500.0, 5000.0},
          std::pair{900.0, 2500.0}, std::pair{2600.0, 4000.0}}) {
        EXPECT_TRUE(sameAsPlain(source, {{"Q:DATA:A", ""}, {"Q:DATA:B", "max"}}, start, end));
    }
}

TEST_F(SeriesBatchTest, ASourceThatIsGoneGivesOneLineOnStandardErrorForAllSeriesAndBlocks) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t1\nDATAH\tSECONDS\tA\nDATA\t1500\t1\n"
                      "DATASTATH\tSECONDS\tA\nDATASTAT\t1000\t1\n",
                      "gone"));
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t2000\t2\n", "there"));
    ASSERT_EQ(std::remove(folder_.pathOf("gone").c_str()), 0);
    const CapturedStandardError errors;
    const auto points = merged.seriesOf(
        {{"Q:DATA:A", ""}, {"Q:DATA:A", "max"}, {"Q:DATA:B", ""}, {"Q:DATASTAT:A", ""}}, 0, 5000);
    EXPECT_EQ(*points[0].values, std::vector<double>{2});
    EXPECT_EQ(points[1].values, points[0].values);
    EXPECT_TRUE(points[2].values->empty());
    EXPECT_TRUE(points[3].values->empty());
    EXPECT_TRUE(errors.text().starts_with(folder_.pathOf("gone") + ": ")) << errors.text();
    EXPECT_EQ(linesOf(errors.text()), 1U) << errors.text();
}

TEST_F(SeriesBatchTest, FragmentsOutsideTheWindowAreNotEvenOpened) {
    DataSet merged;
    constexpr std::uint32_t length = 100;
    for (std::uint32_t file = 0; file < 300; ++file) {
        const std::uint32_t first = begin + file * 1000;
        merged.merge(
            load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", first, first + length, 10), std::to_string(file)));
        if (file != 150) {
            ASSERT_EQ(std::remove(folder_.pathOf(std::to_string(file)).c_str()), 0);
        }
    }
    const CapturedStandardError errors;
    const double first = begin + 150 * 1000.0;
    const double behind = first - 1000 + length;
    EXPECT_EQ(*merged.seriesOf({{"Q:DATA:A", ""}}, behind + 0.5, first + 999.5)[0].times,
              numbers(first, first + length, 10));
    EXPECT_TRUE(merged.seriesOf({{"Q:DATA:A", ""}}, first + length + 0.5, first + 999.5)[0].times->empty());
    EXPECT_TRUE(merged.seriesOf({{"Q:DATA:A", ""}}, 1, 5000)[0].times->empty());
    EXPECT_EQ(errors.text(), "");
    EXPECT_TRUE(merged.seriesOf({{"Q:DATA:A", ""}}, behind, behind)[0].times->empty());
    EXPECT_EQ(linesOf(errors.text()), 1U) << "of the file before, whose last record is at the start";
}

TEST_F(SeriesBatchTest, AFragmentWithoutAWantedColumnIsNotEvenOpened) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tB\nDATA\t1000\t1\n", "gone"));
    merged.merge(load("DATAH\tSECONDS\tA\nDATA\t1000\t2\n", "there"));
    ASSERT_EQ(std::remove(folder_.pathOf("gone").c_str()), 0);
    const CapturedStandardError errors;
    EXPECT_EQ(valuesOf(merged, "Q:DATA:A", 0, 5000), std::vector<double>{2});
    EXPECT_EQ(errors.text(), "");
}

TEST_F(SeriesBatchTest, BlocksFarApartInOneFileAreBothReadThoughTheClockSteppedBackBetweenThem) {
    // The second block lies many reads behind the first one.
    const std::string remark = "\t1\t" + std::string(2000, 'x');
    std::string text = "DATAH\tSECONDS\tA\tREMARK\n" + recordsOf("DATA", begin, begin + 50, 1, remark);
    for (int day = 1; day < 20; ++day) {
        const std::uint32_t first = begin + static_cast<std::uint32_t>(day) * 86400;
        text += "DATAH\tSECONDS\tA\tREMARK\n" + recordsOf("DATA", first, first + 1000, 1, remark);
    }
    text += "DATAH\tA\tSECONDS\n" + std::string("DATA\t7\t") + std::to_string(begin + 20) + "\n";
    const DataSet source = load(text);
    const DataFragment &last = source.fragments().back();
    ASSERT_GT(last.firstOffset(), std::uint64_t{32} << 20U);
    std::vector<double> expected(51, 1);
    expected.push_back(7);
    EXPECT_EQ(valuesOf(source, "Q:DATA:A", begin, begin + 60.0), expected);
    EXPECT_TRUE(sameAsPlain(source, {{"Q:DATA:A", ""}}, begin + 10.0, begin + 20.0));
}

TEST_F(SeriesBatchTest, AFileThatWasReplacedMeanwhileDoesNoHarm) {
    DataSet merged;
    merged.merge(load("DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 4000, 1), "a"));
    const std::string longLine(3000000, 'x');
    for (const std::string &content :
         {std::string(), std::string("\n"), std::string("DATA"), recordsOf("DATA", begin, begin + 5, 1),
          std::string(100000, '\n'), longLine, recordsOf("DATA", 1, 5000, 1, "\t1\t2\t3")}) {
        folder_.write("a", content);
        const CapturedStandardError errors;
        EXPECT_TRUE(
            sameAsPlain(merged, {{"Q:DATA:A", ""}, {"Q:DATA:A", "max"}}, begin + 100.0, begin + 4000.0));
        EXPECT_TRUE(sameAsPlain(merged, {{"Q:DATA:A", ""}}, begin + 2000.0, begin + 4000.0));
        // Which ends the reading; the others merely hold nothing.
        EXPECT_EQ(errors.text().starts_with(folder_.pathOf("a") + ": A line of more than"),
                  content == longLine);
        EXPECT_EQ(errors.text().empty(), content != longLine) << errors.text();
    }
}
