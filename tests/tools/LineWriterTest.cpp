#include "tools/LineWriter.h"

#include "tools/DataText.h"

#include <gtest/gtest.h>

namespace {

std::string fixedText(double value, unsigned decimals) {
    StringSink sink;
    LineWriter writer(sink);
    writer.begin("X");
    writer.fixed(value, decimals);
    writer.end();
    writer.flush();
    return sink.text();
}

} // namespace

TEST(LineWriter, FixedRoundsHalfAwayFromZeroAndPadsWithZeros) {
    const struct {
        double value;
        unsigned decimals;
        const char *text;
    } rows[] = {
        {0, 0, "0"},
        {0, 3, "0.000"},
        {1.5, 0, "2"},
        {-1.5, 0, "-2"},
        {0.0625, 3, "0.063"},
        {-0.0625, 3, "-0.063"},
        {12.375, 2, "12.38"},
        {0.004, 2, "0.00"},
        {-0.004, 2, "0.00"},
        {-0.25, 2, "-0.25"},
        {99.999, 2, "100.00"},
        {1559412000, 0, "1559412000"},
        {0.067312, 6, "0.067312"},
        {123456789.125, 3, "123456789.125"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(fixedText(row.value, row.decimals), std::string("X\t") + row.text + "\n");
    }
}

TEST(LineWriter, ChecksumIsTheLowByteOfTheSumOfAllBytesBeforeIt) {
    StringSink sink;
    LineWriter writer(sink);
    writer.begin("DATA");
    writer.integer(5);
    writer.endWithChecksum(false);
    writer.flush();
    // 'D' 'A' 'T' 'A' = 68 + 65 + 84 + 65, tab 9, '5' = 53, tab 9: 353 = 256 + 97
    EXPECT_EQ(sink.text(), "DATA\t5\t97\n");
}

TEST(LineWriter, DamagedChecksumFitsNeitherWithNorWithoutTheLastTab) {
    StringSink sink;
    LineWriter writer(sink);
    for (int i = 0; i < 300; ++i) {
        writer.begin("DATA");
        writer.integer(i);
        writer.endWithChecksum(true);
    }
    writer.flush();
    for (const std::string_view line : splitAt(sink.text(), '\n')) {
        const std::size_t digits = line.rfind('\t') + 1;
        int sum = 0;
        for (const char byte : line.substr(0, digits)) {
            sum += byte;
        }
        const long written = std::atol(std::string(line.substr(digits)).c_str());
        EXPECT_NE(written, sum % 256) << line;
        EXPECT_NE(written, (sum - '\t') % 256) << line;
    }
}

TEST(LineWriter, MillisecondsHaveThreeDigits) {
    StringSink sink;
    LineWriter writer(sink);
    writer.begin("X");
    writer.textWithMilliseconds("12:30:05:", 7);
    writer.end();
    writer.flush();
    EXPECT_EQ(sink.text(), "X\t12:30:05:007\n");
}

TEST(LineWriter, CountsAndKeepsEveryByteAcrossBlocks) {
    StringSink sink;
    LineWriter writer(sink);
    const std::string field(100000, 'x'); // longer than the room kept for one line
    for (int i = 0; i < 50; ++i) {
        writer.line("LINE", field);
    }
    const std::uint64_t counted = writer.bytes();
    writer.flush();
    EXPECT_EQ(counted, 50 * (field.size() + 6));
    ASSERT_EQ(sink.text().size(), counted);
    for (const std::string_view line : splitAt(sink.text(), '\n')) {
        ASSERT_EQ(line, "LINE\t" + field);
    }
}
