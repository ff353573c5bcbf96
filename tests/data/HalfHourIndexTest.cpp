#include "data/HalfHourIndex.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

using Entries = std::vector<HalfHourIndex::Entry>;

constexpr std::uint64_t fallback = 1;

HalfHourIndex indexOf(const Entries &records) {
    HalfHourIndex index;
    index.begin(records.front().first);
    for (const auto &[seconds, offset] : records) {
        index.note(seconds, offset);
    }
    return index;
}

} // namespace

TEST(HalfHourIndex, NotesTheFirstRecordAtOrAfterEachHalfHour) {
    const HalfHourIndex index =
        indexOf({{1900, 10}, {2000, 20}, {3599, 30}, {3600, 40}, {3700, 50}, {5500, 60}});
    EXPECT_EQ(index.entries(), (Entries{{1800, 10}, {3600, 40}, {5400, 60}}));
}

TEST(HalfHourIndex, TheKeyAfterAGapIsTheHalfHourThatWasPending) {
    const HalfHourIndex index = indexOf({{1900, 10}, {20000, 20}, {20100, 30}, {21600, 40}});
    EXPECT_EQ(index.entries(), (Entries{{1800, 10}, {3600, 20}, {21600, 40}}));
}

TEST(HalfHourIndex, AClockThatStepsBackAddsNoEntry) {
    const HalfHourIndex index = indexOf({{7300, 10}, {100, 20}, {7400, 30}, {9000, 40}});
    EXPECT_EQ(index.entries(), (Entries{{7200, 10}, {9000, 40}}));
}

TEST(HalfHourIndex, TheEndOfTheTimeRangeDoesNotWrapRound) {
    const HalfHourIndex index = indexOf({{4294967294U, 10}, {4294967295U, 20}, {4294967295U, 30}});
    EXPECT_EQ(index.entries(), (Entries{{4294965600U, 10}}));
    const HalfHourIndex jump = indexOf({{0, 10}, {4294967295U, 20}, {4294967295U, 30}});
    EXPECT_EQ(jump.entries(), (Entries{{0, 10}, {1800, 20}}));
}

TEST(HalfHourIndex, ReadingStartsAtTheLastEntryAtOrBeforeTheTime) {
    const HalfHourIndex index = indexOf({{1900, 10}, {3600, 20}, {20000, 30}});
    EXPECT_EQ(index.entries(), (Entries{{1800, 10}, {3600, 20}, {5400, 30}}));
    EXPECT_EQ(index.offsetFor(1799, fallback), fallback);
    EXPECT_EQ(index.offsetFor(1800, fallback), 10U);
    EXPECT_EQ(index.offsetFor(3599, fallback), 10U);
    EXPECT_EQ(index.offsetFor(3600, fallback), 20U);
    EXPECT_EQ(index.offsetFor(5400, fallback), 30U);
    EXPECT_EQ(index.offsetFor(4294967295U, fallback), 30U);
}

TEST(HalfHourIndex, ReadingEndsAtTheFirstEntryAtOrAfterTheTime) {
    const HalfHourIndex index = indexOf({{1900, 10}, {3600, 20}, {20000, 30}});
    EXPECT_EQ(index.offsetBehind(0, fallback), 10U);
    EXPECT_EQ(index.offsetBehind(1800, fallback), 10U);
    EXPECT_EQ(index.offsetBehind(1801, fallback), 20U);
    EXPECT_EQ(index.offsetBehind(5400, fallback), 30U);
    EXPECT_EQ(index.offsetBehind(5401, fallback), fallback);
    EXPECT_EQ(index.offsetBehind(1e300, fallback), fallback);
}

TEST(HalfHourIndex, WithoutEntriesTheFallbackStands) {
    const HalfHourIndex index;
    EXPECT_EQ(index.offsetFor(5, fallback), fallback);
    EXPECT_EQ(index.offsetBehind(5, fallback), fallback);
}
