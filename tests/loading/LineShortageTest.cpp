// Memory that runs out at one line: what becomes of it and of those behind it.

#include "data/DataSet.h"
#include "support/FailingAllocations.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>

namespace {

using Lasting = FailingAllocations::Lasting;

std::size_t recordsIn(const DataSet &data) {
    std::size_t count = 0;
    for (const auto &fragment : data.fragments()) {
        count += fragment->recordCount();
    }
    return count;
}

// Each allocation in turn fails, the first one at line `from`; the lines behind that have memory again. Gives
// how many ways there were.
std::size_t failInTurn(std::span<const std::string_view> lines, std::size_t from,
                       const std::function<void(const DataSet &)> &check) {
    for (std::size_t good = 0;; ++good) {
        SCOPED_TRACE("memory ran out after " + std::to_string(good) + " blocks");
        DataSet source("a.data");
        bool wasShort = false;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const FailingAllocations shortage(i == from ? good : FailingAllocations::never, Lasting::once);
            source.parseLine(i, lines[i]);
            wasShort = wasShort || shortage.hasFailed();
        }
        if (!wasShort) {
            return good;
        }
        EXPECT_TRUE(source.wasShortOfMemory());
        check(source);
    }
}

class LineShortage : public testing::Test {
protected:
    void SetUp() override {
        if (!FailingAllocations::isPossible()) {
            GTEST_SKIP() << "this sanitizer allows no operator new of ours";
        }
    }
};

} // namespace

TEST_F(LineShortage, ALineForWhichThereIsNoMemoryIsAnErrorAndTheNextOneIsHandled) {
    for (const Lasting lasting : {Lasting::once, Lasting::fromThen}) {
        DataSet source("a.data");
        {
            const FailingAllocations shortage(0, lasting);
            source.parseLine(0, "DATAH\tSECONDS\tCH4_MOLE_FRACTION_OF_AIR(ppm)");
        }
        EXPECT_EQ(source.messageText(), "ERROR: std::bad_alloc");
        EXPECT_TRUE(source.fragments().empty());
        source.parseLine(1, "DATAH\tSECONDS\tCH4");
        source.parseLine(2, "DATA\t5\t1");
        EXPECT_EQ(source.messageText(), "ERROR: std::bad_alloc");
        EXPECT_EQ(recordsIn(source), 1U);
    }
}

TEST_F(LineShortage, AFirstRecordWithoutMemoryCostsNoOther) {
    constexpr std::array<std::string_view, 5> lines{"DATAH\tSECONDS\tDIAG\tCH4_MOLE_FRACTION_OF_AIR(ppm)",
                                                    "DATA\t5\t1\t2", "DATA\t6\t1\t2", "DATA\t7\t1\t2",
                                                    "DATA\t8\t1\t2"};
    const std::size_t ways =
        failInTurn(lines, 1, [](const DataSet &source) { EXPECT_EQ(recordsIn(source), 3U); });
    EXPECT_GT(ways, 5U);
}

TEST_F(LineShortage, ABlockThatCannotBeStartedLeavesItsRecordsToTheOneBefore) {
    constexpr std::array<std::string_view, 5> lines{"DATAH\tSECONDS\tCH4", "DATA\t5\t1",
                                                    "DATAH\tSECONDS\tCH4_MOLE_FRACTION_OF_AIR(ppm)",
                                                    "DATA\t6\t1", "DATA\t7\t1"};
    const std::size_t ways = failInTurn(lines, 2, [](const DataSet &source) {
        EXPECT_EQ(source.fragments().size(), 1U);
        EXPECT_EQ(recordsIn(source), 3U);
        EXPECT_EQ(source.fragments().front().blockEnd(), DataFragment::openEnd);
    });
    EXPECT_GT(ways, 5U);
}
