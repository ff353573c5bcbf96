#include "data/ColumnSelection.h"

#include "RandomFields.h"
#include "RandomNumberTexts.h"
#include "data/NumberReading.h"
#include "data/PlainFields.h"
#include "support/HeapText.h"
#include "support/RandomNumbers.h"
#include "support/RecordComparison.h"
#include "support/SanitizerBuild.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Kind = FieldReader::Kind;

struct Reading {
    FieldResult result = FieldResult::bad;
    Record record;
};

Reading read(const std::vector<FieldReader> &readers, std::size_t values, const ColumnLayout &layout,
             std::string_view fields) {
    const HeapText text(fields);
    Reading reading;
    reading.record.values.resize(values);
    reading.result = readFields(readers, layout.checksumSeed, text.view(), reading.record);
    return reading;
}

// Reading only `columns` must say the same of the line as reading all, and give the same values.
testing::AssertionResult readsAsAll(const ColumnLayout &layout, const std::vector<std::uint32_t> &columns,
                                    std::string_view fields) {
    const Reading all = read(layout.readers, layout.valueNames.size(), layout, fields);
    const ColumnSelection selection(layout, columns);
    const Reading some = read(selection.readers(), selection.valueCount(), layout, fields);
    const auto failure = [&] {
        return testing::AssertionFailure()
               << testing::PrintToString(fields) << " columns " << testing::PrintToString(columns) << ": ";
    };
    if (some.result != all.result) {
        return failure() << "result " << static_cast<int>(some.result) << " instead of "
                         << static_cast<int>(all.result);
    }
    if (all.result != FieldResult::good) {
        return testing::AssertionSuccess();
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (bitsOf(some.record.values.at(selection.placeOf(i))) != bitsOf(all.record.values.at(columns[i]))) {
            return failure() << "value " << i;
        }
    }
    RecordStamp stamp = some.record;
    stamp.diagnosticWord = all.record.diagnosticWord; // of no interest when no column wants it
    if (!isSameStamp(stamp, all.record)) {
        return failure() << sameStamps(some.record, all.record).message();
    }
    return testing::AssertionSuccess();
}

std::vector<std::uint32_t> randomColumns(const ColumnLayout &layout, RandomNumbers &random) {
    std::vector<std::uint32_t> columns;
    for (std::uint32_t column = 0; column < layout.valueNames.size(); ++column) {
        if (random.oneIn(4)) {
            columns.insert(columns.begin() + static_cast<std::ptrdiff_t>(random.below(columns.size() + 1)),
                           column);
        }
    }
    return columns;
}

} // namespace

TEST(ColumnSelection, TakesWhatReadingAllColumnsTakesOfRandomLines) {
    const std::vector<std::string> names{"SECONDS", "A", "B",   "DIAG", "C",      "D",   "E", "",
                                         "F",       "G", "H",   "DATE", "DIAG",   "I",   "J", "TIME",
                                         "K",       "L", "CHK", "M",    "REMARK", "CHK", "N"};
    RandomNumbers random(4);
    RandomFields lines(5);
    std::size_t good = 0;
    for (std::size_t round = scaledDown(400'000); round > 0; --round) {
        std::vector<std::string> columns;
        const std::size_t first = random.below(names.size());
        for (std::size_t i = first; i < names.size() && i < first + 1 + random.below(20); ++i) {
            // Few lines survive a check sum.
            if (names[i] != "CHK" || random.oneIn(20)) {
                columns.push_back(names[i]);
            }
        }
        const ColumnLayout layout =
            layOutColumns("DATA", columns,
                          random.oneIn(2) ? std::vector<std::string>{"X", "Y"} : std::vector<std::string>());
        const std::string line = lines.line(columns.size());
        ASSERT_TRUE(readsAsAll(layout, randomColumns(layout, random), line));
        good += read(layout.readers, layout.valueNames.size(), layout, line).result == FieldResult::good;
    }
    EXPECT_GT(good, scaledDown(50'000));
}

TEST(ColumnSelection, ChecksTheSameSumsOfRandomLines) {
    const ColumnLayout layout = layOutColumns("DATA", {"SECONDS", "A", "B", "C", "D", "CHK"}, {});
    RandomNumbers random(6);
    RandomFields lines(7);
    std::size_t good = 0;
    std::size_t failures = 0;
    for (std::size_t round = scaledDown(200'000); round > 0; --round) {
        std::string line = lines.line(5) + '\t';
        unsigned sum = layout.checksumSeed;
        for (const char c : line) {
            sum += static_cast<unsigned char>(c);
        }
        line += std::to_string((sum + (random.oneIn(5) ? 1 : 0)) % 256);
        ASSERT_TRUE(readsAsAll(layout, randomColumns(layout, random), line));
        const FieldResult result = read(layout.readers, 4, layout, line).result;
        good += result == FieldResult::good;
        failures += result == FieldResult::checksumFailure;
    }
    EXPECT_GT(good, scaledDown(20'000));
    EXPECT_GT(failures, scaledDown(10'000));
}

TEST(ColumnSelection, AnUnwantedFieldThatCannotBeReadMakesTheLineBad) {
    const ColumnLayout layout = layOutColumns("DATA", {"A", "B", "C", "D"}, {});
    for (const char *const line :
         {"1\t2\t3\t4",   "1\tx\t3\t4",     "1\t\t3\t4",        "1\t\t3\t4\t5",   "1\t2\t3",
          "1\t2\t3\t",    "1\tnan\tinf\t4", "1\t0x1p3\t1e5\t4", "1\t2\t1e999\t4", "1\t2 3\t4",
          "1\t2x\t3\t4",  "1\t-\t3\t4",     "1\t.\t3\t4",       "1\t-.5\t3.\t4",  "1\t+2\t3\t4",
          "1\t--2\t3\t4", " 1 2 3 4 ",      "1,2\t3\t4\t5",     "1\t2\t3\t4x",    ""}) {
        for (std::uint32_t wanted = 0; wanted < 4; ++wanted) {
            EXPECT_TRUE(readsAsAll(layout, {wanted}, line));
        }
        EXPECT_TRUE(readsAsAll(layout, {}, line));
    }
}

TEST(ColumnSelection, AWordsFlagsComeWithTheirWord) {
    const ColumnLayout layout = layOutColumns("DATA", {"A", "DIAG", "B"}, {"F", "G"});
    const ColumnSelection selection(layout, std::vector<std::uint32_t>{4, 3});
    EXPECT_EQ(selection.valueCount(), 4U);
    Record record;
    record.values.resize(selection.valueCount());
    ASSERT_EQ(readFields(selection.readers(), 0, "7\t2\t8", record), FieldResult::good);
    EXPECT_EQ(record.values[selection.placeOf(0)], 8);
    EXPECT_EQ(record.values[selection.placeOf(1)], 2);
}

TEST(ColumnSelection, UnwantedValuesSideBySideAreCheckedInOneGo) {
    const ColumnLayout layout =
        layOutColumns("DATA", {"SECONDS", "A", "B", "C", "DIAG", "D", "E", "CHK"}, {});
    const ColumnSelection selection(layout, std::vector<std::uint32_t>{4});
    std::vector<Kind> kinds;
    std::vector<std::uint32_t> counts;
    for (const FieldReader &reader : selection.readers()) {
        kinds.push_back(reader.kind);
        counts.push_back(reader.fieldCount);
    }
    EXPECT_EQ(kinds, (std::vector<Kind>{Kind::seconds, Kind::checkedValues, Kind::checkedWord, Kind::value,
                                        Kind::checkedValues, Kind::checksum}));
    EXPECT_EQ(counts, (std::vector<std::uint32_t>{1, 3, 1, 1, 1, 1}));
}

TEST(PassingFloats, MovesAndFailsAsReadingThemDoes) {
    RandomNumberTexts texts(20190604);
    RandomFields lines(8);
    RandomNumbers random(9);
    for (std::size_t round = scaledDown(1'500'000); round > 0; --round) {
        const HeapText text(random.oneIn(2) ? texts.number() + "\t" + texts.number()
                                            : lines.line(random.below(40)));
        const auto count = static_cast<std::uint32_t>(random.below(40));
        TextCursor read{text.begin(), text.end()};
        bool good = true;
        for (std::uint32_t i = 0; i < count && good; ++i) {
            float value = 0;
            good = readFloat(read, value);
        }
        TextCursor passed{text.begin(), text.end()};
        PlainFields plain(passed);
        ASSERT_EQ(passFloats(passed, count, plain), good)
            << testing::PrintToString(text.view()) << ' ' << count;
        if (good) {
            ASSERT_EQ(passed.at - text.begin(), read.at - text.begin())
                << testing::PrintToString(text.view()) << ' ' << count;
        }
    }
}
