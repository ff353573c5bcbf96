#include "data/DataSet.h"
#include "support/HeapText.h"
#include "support/LoadedSource.h"
#include "support/RandomNumbers.h"
#include "support/Repeated.h"
#include "support/SanitizerBuild.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

// Damaged and made-up input: nothing may hang, read outside its line, or take memory out of proportion.

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

// Every line from the end of its own heap block.
void parseLines(DataSet &source, const std::vector<std::string> &lines) {
    std::uint64_t offset = 0;
    for (const std::string &line : lines) {
        const HeapText copy(line);
        source.parseLine(offset, copy.view());
        offset += line.size() + 1;
    }
}

std::size_t countOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(HostileInput, AHeaderOf300000ColumnsGivesOneProblemAndItsRecordsAreDropped) {
    DataSet source("a.data");
    parseLines(source, {"Instrument:\tQ", "DATAH" + repeated("\tX", 300000)});
    EXPECT_EQ(source.messageText(), "");
    const std::string record = "DATA" + repeated("\t1", 300000);
    for (std::size_t i = scaledDown(2000); i > 0; --i) {
        source.parseLine(600100, record);
    }
    EXPECT_EQ(source.messageText(), "");
    EXPECT_EQ(source.problem(),
              "The header line asks for 300000 value columns, more than 10000: its records are left out");
    EXPECT_FALSE(source.hasGivenUp());
    EXPECT_EQ(fragmentAt(source, 0).recordCount(), 0U);
    EXPECT_EQ(source.variableKeys().size(), 0U);
    source.finishLoading();
    DataSet merged;
    merged.merge(source);
    EXPECT_TRUE(merged.fragments().empty());
    EXPECT_TRUE(readAgain(fragmentAt(source, 0)).empty());
    EXPECT_TRUE(pointsOf(source, "Q:DATA:X", "", wholeRangeStart, wholeRangeEnd).times.empty());
}

TEST(HostileInput, ADiagnosticWordOf300000NamesGivesOneProblemAndItsRecordsAreDropped) {
    DataSet source("a.data");
    parseLines(source, {"DATADIAGH" + repeated("\tF", 300000), "DATAH\tSECONDS\tDIAG", "DATA\t1\t1",
                        "DATA\t2\t1", "DATASTATH\tSECONDS\tA", "DATASTAT\t1\t1"});
    EXPECT_EQ(source.messageText(), "");
    EXPECT_EQ(countOf(source.problem(), " 300000 names of diagnostic bits"), 1U) << source.problem();
    EXPECT_EQ(fragmentAt(source, 0).recordCount(), 0U);
    EXPECT_EQ(fragmentAt(source, 1).recordCount(), 1U);
}

TEST(HostileInput, VeryManyChecksumColumnsCostNoMoreThanTheirBytes) {
    // Every column sums the line from its start: without a running sum, 50,000 columns would read 4 GB here.
    DataSet source("a.data");
    parseLines(source, {"Instrument:\tQ", "DATAH\tSECONDS" + repeated("\tCHK", 50000)});
    std::string record = "DATA\t1";
    unsigned sum = 0;
    for (const char c : record) {
        sum += static_cast<unsigned char>(c);
    }
    for (int column = 0; column < 50000; ++column) {
        sum += '\t';
        const std::string digits = std::to_string(sum % 256);
        record += '\t' + digits;
        for (const char c : digits) {
            sum += static_cast<unsigned char>(c);
        }
    }
    source.parseLine(200000, record);
    EXPECT_EQ(fragmentAt(source, 0).recordCount(), 1U);
    EXPECT_EQ(source.checksumFailures(), 0U);
    record.back() = record.back() == '1' ? '2' : '1';
    source.parseLine(400000, record);
    EXPECT_EQ(source.checksumFailures(), 1U);
}

TEST(HostileInput, FragmentsOfOneSourceShareTheNamesOfTheirBits) {
    // Otherwise a few bytes of header line would take as much memory as all the names.
    DataSet source("a.data");
    parseLines(source,
               {"DATADIAGH" + repeated("\tF", 1000), "DATAH\tA", "DATASTATH\tA", "DATABIOH\tA", "DATAH\tA"});
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(&fragmentAt(source, i).diagnosticNames(), &fragmentAt(source, 0).diagnosticNames());
        EXPECT_EQ(fragmentAt(source, i).diagnosticNames().size(), 1000U);
    }
}

TEST(HostileInput, AMillionColumnsToBeSkippedCostNothingForALineThatHoldsNone) {
    // Looking at each column for each line, this would take hours.
    DataSet source("a.data");
    parseLines(source, {"DATAH" + repeated("\t", 1000000), "DATASTATH" + repeated("\t", 1000000) + "X"});
    for (int i = 0; i < 1000000; ++i) {
        source.parseLine(1, "DATA\t");
        source.parseLine(1, "DATASTAT\tx");
    }
    EXPECT_EQ(fragmentAt(source, 0).recordCount(), 1000000U);
    EXPECT_EQ(fragmentAt(source, 1).recordCount(), 0U);
}

TEST(HostileInput, AFileOfNothingButHeadersAndSingleRecordsIsMergedAndRemoved) {
    DataSet source("a.data");
    const std::size_t blocks = scaledDown(20000);
    for (std::size_t i = 0; i < blocks; ++i) {
        source.parseLine(i * 20 + 1, "DATAH\tSECONDS\tA");
        source.parseLine(i * 20 + 10, "DATA\t" + std::to_string(blocks - i) + "\t1");
    }
    source.finishLoading();
    DataSet merged;
    merged.merge(source);
    EXPECT_EQ(merged.fragments().size(), blocks);
    EXPECT_EQ(merged.fragments().front().firstTime(), 1);
    merged.removeFile("a.data");
    EXPECT_TRUE(merged.fragments().empty());
}

TEST(HostileInput, FailingHeadersFillTheMessageTextToItsCapAndNoFurther) {
    DataSet source("a.data");
    source.parseLine(0, "Timezone:\tNo/Such/" + std::string(3000, 'x'));
    for (int i = 0; i < 1000; ++i) {
        source.parseLine(1, "DATAH\tA");
    }
    EXPECT_GT(source.messageText().size(), 9999U);
    EXPECT_LT(source.messageText().size(), 9999U + 3200U);
    EXPECT_TRUE(source.fragments().empty());
}

TEST(HostileInput, ALineOfAMillionCharactersIsReadLikeAnyOther) {
    const std::string million(1000000, '7');
    DataSet source("a.data");
    parseLines(source,
               {"Instrument:\t" + million, "DATAH\tREMARK\tA", "DATA\t" + million + "\t5",
                "DATA\tx\t" + million, "DATA\tx\t1." + million, "DATA\tx\t" + repeated("\t", 1000000) + "6",
                "DATA\tx\t0x" + million + "p-3999970", million, repeated("\t", 1000000)});
    EXPECT_EQ(source.messageText(), "");
    const DataFragment &fragment = fragmentAt(source, 0);
    EXPECT_EQ(fragment.header().instrument, million);
    EXPECT_EQ(fragment.recordCount(), 5U);
    EXPECT_EQ(fragment.maximumRecord().values[0], std::numeric_limits<double>::infinity());
    EXPECT_EQ(fragment.minimumRecord().values[0], static_cast<double>(1.7777778F));
}

TEST(HostileInput, NumbersOfAMillionDigitsAreClamped) {
    const std::string million(1000000, '9');
    DataSet source("a.data");
    parseLines(source,
               {"DATAH\tSECONDS\tNANOSECONDS\tDIAG", "DATA\t" + million + "\t-" + million + '\t' + million});
    const DataFragment &fragment = fragmentAt(source, 0);
    ASSERT_EQ(fragment.recordCount(), 1U);
    EXPECT_EQ(fragment.maximumRecord().seconds, 4294967295U);
    EXPECT_EQ(fragment.maximumRecord().nanoseconds, 0U);
    EXPECT_EQ(fragment.maximumRecord().values[0], 9223372036854775807.0);
}

TEST(HostileInput, BytesZeroAndBeyond127AreBytesLikeAnyOther) {
    const std::string name("\0\x80 \xff(\0\xfe)", 8);
    DataSet source("a.data");
    parseLines(source,
               {"Instrument:\t\0Q\xff"s, "DATAH\t" + name + "\tREMARK\tB", "DATA\t1\t\0\xff\x80\t2"s,
                "DATA\t\0\t\0\t2"s, "DATA\t1\xff\t2\t3"s, "\0"s, "\xff\xff\xff"s, "DATA\0\t1\t2\t3"s});
    const DataFragment &fragment = fragmentAt(source, 0);
    EXPECT_EQ(fragment.valueNames(), (std::vector<std::string>{name, "B"}));
    EXPECT_EQ(fragment.valueUnits()[0], "\0\xfe"sv);
    EXPECT_EQ(fragment.header().instrument, "\0Q\xff"sv);
    EXPECT_EQ(fragment.recordCount(), 2U);
    EXPECT_EQ(fragment.maximumRecord().values, (std::vector<double>{1, 2}));
    double low = 0;
    double high = 0;
    source.valueRange("\0Q\xff:DATA:"s + name, low, high);
    EXPECT_EQ(high, 1);
}

TEST(HostileInput, LinesOfOnlyATagGiveNoRecordAndNoMessage) {
    DataSet source("a.data");
    for (int round = 0; round < 2; ++round) {
        parseLines(source,
                   {"DATA\t", "DATASTAT\t", "DATABIO\t", "DATA", "DATASTAT", "DATAH\t", "DATAH",
                    "DATADIAGH\t", "Timezone:\t", "Timezone:", "DATAEVENT\t", "DATAEVENT\tNAME\t", "\t", ""});
        parseLines(source, {"DATAH\tDIAG\tCHK\tDATE\tTIME", "DATASTATH\tSECONDS", "DATABIOH\tX"});
    }
    for (const auto &fragment : source.fragments()) {
        EXPECT_EQ(fragment->recordCount(), 0U);
    }
    EXPECT_EQ(source.messageText(), "");
}

TEST(HostileInput, DatesBeyondTheCalendarNeitherHangNorFail) {
    for (const char *const zone : {"Unknown", "Europe/Berlin", "America/New_York"}) {
        const ScratchFolder folder;
        const DataSet source = loadSource(folder.write(
            "a.data", std::string("Instrument:\tQ\nTimezone:\t") + zone +
                          "\nDATAH\tDATE\tTIME\tA\nDATA\t65535-99-99\t99:99:99\t1\nDATA\t0-0-0\t0:0:0\t2\n"
                          "DATA\t99999-255-255\t255:255:255.999\t3\nDATA\t2019-02-30\t25:61:61\t4\n"
                          "DATA\t1969-12-31\t23:59:59\t5\nDATA\t2106-02-07\t06:28:15\t6\n"
                          "DATA\t1900-01-01\t00:00:00\t7\n"));
        EXPECT_EQ(source.messageText(), "") << zone;
        EXPECT_EQ(fragmentAt(source, 0).recordCount(), 7U) << zone;
        EXPECT_EQ(readAgain(source, "Q", "DATA").size(), 7U) << zone;
    }
}

TEST(HostileInput, ExtremeSecondsCanBeAskedForAndReadAgain) {
    const ScratchFolder folder;
    const DataSet source = loadSource(folder.write(
        "a.data", "Instrument:\tQ\nDATAH\tSECONDS\tA\nDATA\t4294967295\t1\nDATA\t0\t2\nDATA\t-1\t3\n"
                  "DATA\t99999999999999999999999\t4\nDATA\t2147483648\t5\nDATA\t4294967296\t6\n"));
    EXPECT_EQ(readAgain(source, "Q", "DATA").size(), 6U);
    EXPECT_EQ(fragmentAt(source, 0).halfHourIndex().entries().size(), 1U);
    for (const double bound : {-1e300, -1.0, 0.0, 1.0, 2147483648.0, 4294967295.0, 4294967296.0, 1e300}) {
        for (const double other : {-1e300, 0.0, 2147483648.0, 4294967295.0, 1e300}) {
            pointsOf(source, "Q:DATA:A", "", bound, other);
        }
    }
}

TEST(HostileInput, RandomLinesNeverThrowNorLeaveTheirLine) {
    RandomNumbers random(17);
    static constexpr std::array pieces{
        "DATA\t"sv,      "DATAH\t"sv,     "DATASTAT\t"sv, "DATASTATH\t"sv, "DATABIO\t"sv,   "DATABIOH\t"sv,
        "DATADIAGH\t"sv, "DATAEVENT\t"sv, "NAME\t"sv,     "SN\t"sv,        "Timezone:\t"sv, "SECONDS"sv,
        "NANOSECONDS"sv, "DATE"sv,        "TIME"sv,       "DIAG"sv,        "CHK"sv,         "REMARK"sv,
        "X (u"sv,        "("sv,           ")"sv,          "\t"sv,          "\t"sv,          "12:30:05"sv,
        "2019-06-01"sv,  ".5"sv,          ":250"sv,       "-"sv,           "+"sv,           "0x1p5"sv,
        "nan"sv,         "1e99"sv,        "7"sv,          "UTC"sv,         "../x"sv,        "\0"sv,
        "\xff"sv,        " "sv,           "\r"sv};
    for (std::size_t round = scaledDown(300); round > 0; --round) {
        DataSet source("a.data");
        for (int i = 0; i < 100; ++i) {
            std::string line;
            for (auto count = random.below(9); count > 0; --count) {
                line += random.pick(pieces);
            }
            const HeapText copy(line);
            ASSERT_NO_THROW(source.parseLine(random.bits() >> random.below(64), copy.view()));
        }
        source.finishLoading();
        DataSet merged;
        merged.merge(source);
        for (const std::string &key : merged.variableKeys()) {
            double low = 0;
            double high = 0;
            merged.valueRange(key, low, high);
            EXPECT_LE(low, high);
        }
    }
}
