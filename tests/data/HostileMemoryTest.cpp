// What files that are made to cost as much as they can take of memory, held against the bound.

#include "data/ColumnLayout.h"
#include "data/DataSet.h"
#include "data/MemoryAllowance.h"
#include "data/UnitTable.h"
#include "support/HeldMemory.h"
#include "support/HostileInputs.h"
#include "support/LoadedSource.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t{1024} * 1024;
// Room for a header line of a MiB while it is split, beside what is reckoned.
constexpr std::uint64_t forOneLine = 64 * mebibyte;

struct Cost {
    std::uint64_t reckoned = 0;
    std::uint64_t limit = 0;
    std::uint64_t held = 0; // loaded and merged
    std::uint64_t most = 0; // on the way
};

// Loads the text as a file, and merges it as the programs do.
Cost costOf(const std::string &text) {
    const std::uint64_t before = heldMemory();
    Cost cost;
    DataSet merged;
    {
        DataSet source("a.data");
        std::size_t lines = 0;
        for (std::size_t begin = 0; begin < text.size() && !source.hasGivenUp();) {
            const std::size_t feed = std::min(text.find('\n', begin), text.size());
            source.parseLine(begin, std::string_view(text).substr(begin, feed - begin));
            begin = feed + 1;
            if (++lines % 256 == 0 || text.size() / lines > 1000) {
                cost.most = std::max(cost.most, heldMemory() - before);
            }
        }
        source.finishLoading();
        merged.merge(source);
        cost.reckoned = source.memoryTaken();
    }
    cost.held = std::max(heldMemory(), before) - before;
    cost.most = std::max(cost.most, cost.held);
    cost.limit = MemoryAllowance::stock + MemoryAllowance::forEachByteRead * text.size();
    return cost;
}

// Columns of one letter, so that each costs as few bytes of the file as can be.
std::string headerOf(std::size_t columns) {
    std::string line = "DATAH";
    for (std::size_t i = 0; i < columns; ++i) {
        line += "\tA";
    }
    return line + '\n';
}

} // namespace

TEST(HostileMemory, NoMadeUpFileTakesMoreThanItsBound) {
    if (isSanitizerBuild) {
        GTEST_SKIP() << "the sanitizers have an allocator of their own";
    }
    costOf(hostileInputs().front().make(1000)); // what is set up once for all
    for (const HostileInput &input : hostileInputs()) {
        const Cost cost = costOf(input.make(1200000));
        EXPECT_LE(cost.reckoned, cost.limit) << input.name;
        EXPECT_LE(cost.held, cost.reckoned + mebibyte) << input.name;
        EXPECT_LE(cost.most, 3 * cost.reckoned + forOneLine) << input.name;
    }
}

TEST(HostileMemory, AFileThatAsksForMoreThanItsBoundEndsThereAndSaysWhy) {
    DataSet source("a.data");
    std::uint64_t offset = 0;
    const auto parse = [&](const std::string &line) {
        source.parseLine(offset, line);
        offset += line.size() + 1;
    };
    parse("Instrument:\t" + std::string(1000000, 'Q'));
    parse("DATAH\tSECONDS\tA");
    parse("DATA\t1\t5");
    while (!source.hasGivenUp() && offset < 1100000) {
        parse("DATAH\tA");
    }
    ASSERT_TRUE(source.hasGivenUp());
    const std::string expectedEnd =
        "MiB of memory. Reading ends at byte " + std::to_string(offset - 8) + " of the file";
    EXPECT_TRUE(source.problem().starts_with("Too many header lines for the size of the file: "))
        << source.problem();
    EXPECT_TRUE(source.problem().ends_with(expectedEnd)) << source.problem();
    EXPECT_EQ(source.messageText(), "");

    const std::size_t blocks = source.fragments().size();
    parse("DATAH\tSECONDS\tA");
    parse("DATA\t2\t6");
    EXPECT_EQ(source.fragments().size(), blocks);
    source.finishLoading();
    DataSet merged;
    merged.merge(source);
    EXPECT_EQ(merged.fragments().size(), 1U); // what was read before stays
    EXPECT_EQ(merged.fragments().front().recordCount(), 1U);
}

TEST(HostileMemory, TheBytesThatWereReadRaiseTheBoundUpToItsCeiling) {
    MemoryAllowance allowance;
    EXPECT_EQ(allowance.limit(), MemoryAllowance::stock);
    allowance.take(MemoryAllowance::stock, "columns");
    EXPECT_THROW(allowance.take(1, "columns"), MemoryAllowance::Exceeded);
    allowance.noteRead(10);
    allowance.take(80, "columns");
    EXPECT_THROW(allowance.take(1, "columns"), MemoryAllowance::Exceeded);
    allowance.giveBack(1);
    allowance.take(1, "columns");
    allowance.noteRead(std::numeric_limits<std::uint64_t>::max() - 10);
    EXPECT_EQ(allowance.limit(), MemoryAllowance::ceiling);
    EXPECT_THROW(allowance.take(std::numeric_limits<std::uint64_t>::max(), "columns"),
                 MemoryAllowance::Exceeded);
}

TEST(HostileMemory, TheLastRecordBeforeTheBoundIsTakenInWhole) {
    DataSet source("a.data");
    source.parseLine(0, headerOf(9999).insert(5, "\tSECONDS"));
    std::string values;
    for (int i = 0; i < 9999; ++i) {
        values += "\t1";
    }
    std::uint64_t seconds = 0;
    while (!source.hasGivenUp() && seconds < std::uint64_t{7200} * 10000) {
        seconds += 7200;
        source.parseLine(1, "DATA\t" + std::to_string(seconds) + values);
    }
    ASSERT_TRUE(source.hasGivenUp());
    EXPECT_TRUE(source.problem().starts_with("Too many periods")) << source.problem();
    source.finishLoading();
    const DataFragment &fragment = fragmentAt(source, 0);
    EXPECT_EQ(fragment.recordCount() * 7200, seconds);
    EXPECT_EQ(fragment.lastTime(), static_cast<double>(seconds));
    EXPECT_EQ(fragment.latestTime(), static_cast<double>(seconds));
}

TEST(HostileMemory, AnOrdinaryYearOfHalfHoursInOneArchiveStaysFarBelowTheBound) {
    // Two tags in each member, of as many columns as the fast analyser has, and a record in three minutes.
    DataSet source("a.zip");
    std::string names;
    std::string values;
    for (int i = 0; i < 45; ++i) {
        names += "\tCOLUMN " + std::to_string(i);
        values += "\t12.345";
    }
    constexpr std::uint64_t halfHoursOfAYear = 17520;
    constexpr std::uint64_t rounds = isSanitizerBuild ? 500 : halfHoursOfAYear;
    for (std::uint64_t member = 0; member < rounds; ++member) {
        source.setSubFileName("2019-06-01T00" + std::to_string(member) + "_AIU-0001.data");
        for (const std::string tag : {"DATA", "DATASTAT"}) {
            source.parseLine(1, tag + "H\tSECONDS" + names);
            for (std::uint64_t record = 0; record < 10; ++record) {
                source.parseLine(1, tag + '\t' + std::to_string(member * 1800 + record * 180) + values);
            }
        }
    }
    EXPECT_FALSE(source.hasGivenUp()) << source.problem();
    EXPECT_EQ(source.fragments().size(), 2 * rounds);
}

TEST(HostileMemory, AFullTableOfUnitsStillLeavesEachColumnTheUnitInItsName) {
    for (int i = 0; i < 110000; ++i) {
        setUnit("name " + std::to_string(i), "m");
    }
    EXPECT_EQ(unitOf("name 109999"), "");
    const ColumnLayout layout = layOutColumns("DATA", {"late (km)", "CH4", "late (km"}, {});
    EXPECT_EQ(layout.valueUnits, (std::vector<std::string>{"km", "umol/mol", "km"}));
    setUnit("CH4", "other");
    EXPECT_EQ(unitOf("CH4"), "other");
    setUnit("CH4", "umol/mol");
}
