#include "SourceReadingTest.h"
#include "data/RecordCursor.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Blocks of one tag in one source, and offsets that fall short, keep every record with its own block.

using BlockReading = SourceReadingTest;

TEST_F(BlockReading, TwoBlocksOfOneTagAreReadWithTheirOwnColumnsEach) {
    const DataSet source = load("DATAH\tSECONDS\tA\tB\nDATA\t1000\t1\t10\nDATA\t2000\t2\t20\n"
                                "DATAH\tB\tSECONDS\tC\tA\nDATA\t30\t5000\t300\t3\nDATA\t40\t6000\t400\t4\n");
    const std::vector<Record> first = readAgain(fragmentAt(source, 0));
    const std::vector<Record> second = readAgain(fragmentAt(source, 1));
    ASSERT_EQ(first.size(), 2U);
    ASSERT_EQ(second.size(), 2U);
    EXPECT_EQ(first[1].values, (std::vector<double>{2, 20}));
    EXPECT_EQ(second[0].values, (std::vector<double>{30, 300, 3}));
    EXPECT_EQ(timesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1000, 2000, 5000, 6000}));
}

TEST_F(BlockReading, TwoBlocksOfOneTagWhoseClocksOverlapKeepTheirRecordsApart) {
    // The second block's lines would read as good records of the first one's columns, at wrong times.
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nDATA\t5000\t2\n"
                                "DATAH\tA\tSECONDS\nDATA\t3000\t1500\nDATA\t4000\t2500\n");
    const std::vector<Record> first = readAgain(fragmentAt(source, 0));
    EXPECT_EQ(timesOf(first), (std::vector<double>{1000, 5000}));
    const std::vector<Record> second = readAgain(fragmentAt(source, 1));
    EXPECT_EQ(timesOf(second), (std::vector<double>{1500, 2500}));
    EXPECT_EQ(firstValuesOf(second), (std::vector<double>{3000, 4000}));
    EXPECT_EQ(timesOf(readAgain(source, "Q", "DATA")), (std::vector<double>{1000, 5000, 1500, 2500}));
    EXPECT_EQ(timesOf(readAgain(source, "Q", "DATA", 1200, 2000)), std::vector<double>{1500});
    EXPECT_EQ(timesOf(readAgain(fragmentAt(source, 0), 2000, 6000)), std::vector<double>{5000});
}

TEST_F(BlockReading, BlocksBehindARefillKeepTheirRecordsApartThoughOffsetsFallShort) {
    // A long line is carried over, so that all offsets behind it fall short by more than the lines between it
    // and the next header line hold: by its offset the second block seems to start within the first.
    constexpr std::size_t piece = 8 << 20U;
    std::string text = "DATAH\tSECONDS\tA\tREMARK\n";
    std::vector<double> first;
    const auto addFirst = [&](std::size_t remark) {
        first.push_back(begin + static_cast<double>(first.size()));
        text +=
            "DATA\t" + std::to_string(begin + first.size() - 1) + "\t1\t" + std::string(remark, 'x') + '\n';
    };
    while (text.size() < piece - 30000) {
        addFirst(9000);
    }
    // From here on offsets fall short by 20,000 to 30,000, also for a reader that starts at the first record.
    addFirst(piece - text.size() + 1000);
    for (int i = 0; i < 100; ++i) {
        addFirst(5);
    }
    text += "DATAH\tSECONDS\tA\n" + recordsOf("DATA", begin, begin + 99, 1, "\t2");
    const DataSet source = load(text);
    ASSERT_EQ(source.fragments().size(), 2U);
    ASSERT_LT(fragmentAt(source, 1).firstOffset(), piece);
    const std::vector<Record> ofFirst = readAgain(fragmentAt(source, 0));
    EXPECT_EQ(timesOf(ofFirst), first);
    EXPECT_EQ(firstValuesOf(ofFirst), std::vector<double>(first.size(), 1));
    const std::vector<Record> ofSecond = readAgain(fragmentAt(source, 1));
    EXPECT_EQ(timesOf(ofSecond), numbers(begin, begin + 99, 1));
    EXPECT_EQ(firstValuesOf(ofSecond), std::vector<double>(100, 2));
}

TEST_F(BlockReading, ABlockWhoseHeaderFailedBelongsToTheBlockBefore) {
    const DataSet source = load("DATAH\tSECONDS\tA\nDATA\t1000\t1\nTimezone:\tNo/Such\nDATAH\tA\tSECONDS\n"
                                "DATA\t1100\t2\n");
    ASSERT_EQ(source.fragments().size(), 1U);
    EXPECT_EQ(firstValuesOf(readAgain(fragmentAt(source, 0))), (std::vector<double>{1, 2}));
}

TEST_F(BlockReading, ShortOffsetsOfAFileLongerThanOneReadLoseNoRecord) {
    const DataSet source = load("DATAH\tSECONDS\tA\tREMARK\n" +
                                recordsOf("DATA", begin, begin + 12000, 1, "\t1\t" + std::string(900, 'x')));
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_GT(fragment.endOffset(), std::uint64_t{8} << 20U);
    EXPECT_EQ(timesOf(readAgain(fragment)), numbers(begin, begin + 12000, 1));
    for (const auto &[key, offset] : fragment.halfHourIndex().entries()) {
        const double start = std::max(key, begin);
        EXPECT_EQ(timesOf(readAgain(fragment, start, start + 100)),
                  numbers(start, std::min(start + 100, begin + 12000.0), 1))
            << key;
    }
}

TEST_F(BlockReading, AShortOffsetIntoTheMiddleOfALineMakesNoRecordOfItsRest) {
    // Every line holds, behind its last column, what reads as a whole record line. The first index entry
    // behind the line reader's first piece falls short by so much that reading starts there, or next to it.
    const std::string inner = "DATA\t" + std::to_string(begin + 9000) + "\t2\tnever loaded";
    const std::string rest = "\t1\t" + std::string(970, 'x') + '\t' + inner;
    const std::size_t length = std::string_view("DATA\t1500000000\n").size() + rest.size();
    constexpr std::size_t piece = 8 << 20U;
    for (const std::size_t carried : {inner.size(), inner.size() + 1, inner.size() + 2}) {
        std::string header = "DATAH\tSECONDS\tA\tREMARK\n";
        while ((piece - std::string_view("Instrument:\tQ\n").size() - header.size()) % length != carried) {
            header.insert(0, 1, '\n');
        }
        const DataSet source = load(header + recordsOf("DATA", begin, begin + 12000, 1, rest));
        const DataFragment &fragment = fragmentAt(source, 0);
        ASSERT_EQ(fragment.recordCount(), 12001U);
        const auto &entries = fragment.halfHourIndex().entries();
        const auto entry =
            std::find_if(entries.begin(), entries.end(), [](const auto &e) { return e.second > piece; });
        ASSERT_NE(entry, entries.end());
        const std::vector<Record> records = readAgain(fragment, entry->first, wholeRangeEnd);
        EXPECT_EQ(timesOf(records), numbers(entry->first, begin + 12000, 1)) << carried;
        EXPECT_EQ(firstValuesOf(records), std::vector<double>(records.size(), 1)) << carried;
        const Points points = pointsOf(source, "Q:DATA:A", "", entry->first, begin + 12000);
        EXPECT_EQ(points.times, timesOf(records)) << carried;
        EXPECT_EQ(points.values, firstValuesOf(records)) << carried;
    }
}
