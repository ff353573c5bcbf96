// What a loaded file holds: something for each period, nothing for each record.

#include "data/DataSet.h"
#include "support/HeldMemory.h"
#include "support/SanitizerBuild.h"

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr unsigned day = 86400; // s
// Of a minute, five minutes, half an hour and two hours.
constexpr std::uint64_t periodsOfADay = day / 60 + day / 300 + day / 1800 + day / 7200;

// What a day holds, loaded, of which a second has `rate` records.
std::uint64_t memoryOfDay(unsigned rate, unsigned columns) {
    std::string names;
    std::string values;
    for (unsigned column = 0; column < columns; ++column) {
        names += "\tCOLUMN" + std::to_string(column);
        values += "\t12." + std::to_string(column);
    }
    const std::uint64_t before = heldMemory();
    DataSet merged;
    {
        DataSet source("a.data");
        source.parseLine(1, "DATAH\tSECONDS\tNANOSECONDS" + names);
        for (unsigned second = 0; second <= day; ++second) {
            for (unsigned record = 0; record < rate; ++record) {
                source.parseLine(2, "DATA\t" + std::to_string(1559347200 + second) + '\t' +
                                        std::to_string(1000000000 / rate * record + 1) + values);
            }
        }
        source.finishLoading();
        merged.merge(source);
    }
    return heldMemory() - before;
}

class MemoryOfPeriods : public testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(MemoryOfPeriods, ADayHoldsThemAndAFixedAmountForEachColumnWhateverItsRateIs) {
    if (isSanitizerBuild) {
        GTEST_SKIP() << "the sanitizers have an allocator of their own";
    }
    const unsigned columns = GetParam();
    memoryOfDay(1, columns); // what is set up once for all
    const std::uint64_t slow = memoryOfDay(1, columns);
    const std::uint64_t fast = memoryOfDay(4, columns);
    // A stamp of 32 bytes; of each column an average, a maximum and a minimum.
    const std::uint64_t bound = periodsOfADay * (32 + 16 * columns) + 400 * columns + 8192;
    EXPECT_LE(slow, bound);
    EXPECT_LE(fast, bound);
    // The allocator counts small blocks that it keeps for reuse as held.
    constexpr std::uint64_t noise = 32768;
    EXPECT_GE(fast + noise, periodsOfADay * (32 + 16 * columns)); // the count is of what it should be
    // Four times the records: less than a byte for each of the more than 250,000 that came in addition.
    EXPECT_LE(fast, slow + noise);
}

INSTANTIATE_TEST_SUITE_P(Columns, MemoryOfPeriods, testing::Values(1U, 10U, 45U));
