#include "export/Tob1Writer.h"

#include "export/MadeRecord.h"
#include "export/MemorySink.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

// A TOB1 file taken apart.
struct Tob1File {
    explicit Tob1File(const std::string &bytes) {
        std::size_t begin = 0;
        for (int line = 0; line < 5; ++line) {
            const auto end = bytes.find("\r\n", begin);
            lines.push_back(bytes.substr(begin, end - begin));
            begin = end + 2;
        }
        binary = bytes.substr(begin);
    }

    std::uint32_t field(std::size_t offset) const {
        std::uint32_t number = 0;
        for (std::size_t i = 4; i-- > 0;) {
            number = number << 8 | static_cast<unsigned char>(binary.at(offset + i));
        }
        return number;
    }
    float value(std::size_t offset) const { return std::bit_cast<float>(field(offset)); }

    std::vector<std::string> lines; // of the header
    std::string binary;
};

struct Tob1Columns {
    std::vector<std::string> environment{"QA330", "QA330", "", "2.4.1", "QA330", "QA330", "DATA"};
    std::vector<std::string> names{"A", "B"};
    std::vector<std::string> units{"C", "kPa"};
    std::vector<std::string> processing;
};

Tob1File tob1Of(const std::vector<Record> &records, const Tob1Columns &columns = {}) {
    MemoryOutput output;
    Tob1Writer writer(*output);
    writer.setEnvironment(columns.environment);
    writer.setFieldNames(columns.names);
    writer.setUnits(columns.units);
    writer.setProcessing(columns.processing);
    for (const Record &record : records) {
        writer.write(record);
    }
    return Tob1File(output.bytes());
}

TEST(Tob1Writer, TheHeaderIsFiveQuotedLines) {
    const Tob1File file = tob1Of({recordAtHalfPastOne({1, 2})});
    EXPECT_EQ(file.lines, (std::vector<std::string>{
                              R"("TOB1","QA330","QA330","","2.4.1","QA330","QA330","DATA")",
                              R"("SECONDS","NANOSECONDS","RECORD","A","B")",
                              R"("SECONDS","NANOSECONDS","RN","C","kPa")",
                              R"("","","","Smp","Smp")",
                              R"("UINT4","UINT4","UINT4","IEEE4","IEEE4")",
                          }));
}

TEST(Tob1Writer, TenVariablesGiveTenFloatsAndRecordsOf52Bytes) {
    const Record record = recordAtHalfPastOne({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    const Tob1File file = tob1Of({record, record, record});
    EXPECT_EQ(file.lines[4],
              R"("UINT4","UINT4","UINT4","IEEE4","IEEE4","IEEE4","IEEE4","IEEE4","IEEE4","IEEE4","IEEE4",)"
              R"("IEEE4","IEEE4")");
    EXPECT_EQ(file.binary.size(), 3U * 52);
    EXPECT_EQ(file.value(52 + 12), 1.0F);
    EXPECT_EQ(file.value(52 + 48), 10.0F);
}

TEST(Tob1Writer, AVariableWithItsUnitInBracketsKeepsLettersAndDigits) {
    Tob1Columns columns;
    columns.names = {"CO2 (mmol/m^3)", "B"};
    EXPECT_EQ(tob1Of({recordAtHalfPastOne({1, 2})}, columns).lines[1],
              R"("SECONDS","NANOSECONDS","RECORD","CO2mmolm3","B")");
}

TEST(Tob1Writer, NamesHoldOnlyWhatLoggersTake) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"mmol/m^3", "mmolm3"},
        {"2ndTemp", "n2ndTemp"},
        {"%", ""},
        {"", ""},
        {"-_a.B 9", "_aB9"},
        {" 9", "n9"},
        {"_9", "_9"},
        {"Temp\xc3\xa9rature", "Temprature"},
        {"\xb0\x43", "C"},
        {"DIAG:PUMPON", "DIAGPUMPON"},
        {"abcdefghijklmnop", "abcdefghijklmnop"},
        {"abcdefghijklmnopq", "abcdefghijklmnop"},
        {"a-b-c-d-e-f-g-h-i-j-k-l-m-n-o-p-q", "abcdefghijklmnop"},
        {"123456789012345", "n123456789012345"},
        {"1234567890123456", "n123456789012345"},
        {std::string("a\0b", 3), "ab"},
    };
    for (const auto &[text, name] : rows) {
        EXPECT_EQ(tob1Name(text), name) << text;
    }
}

TEST(Tob1Writer, UnitsAndProcessingAreNamesToo) {
    Tob1Columns columns;
    columns.units = {"mmol/m^3", "%"};
    columns.processing = {"2-min Avg"};
    const Tob1File file = tob1Of({recordAtHalfPastOne({1, 2})}, columns);
    EXPECT_EQ(file.lines[2], R"("SECONDS","NANOSECONDS","RN","mmolm3","")");
    EXPECT_EQ(file.lines[3], R"("","","","n2minAvg","Smp")");
}

TEST(Tob1Writer, SurplusNamesAreDroppedMissingOnesEmptyAndTheirProcessingSmp) {
    Tob1Columns columns;
    const Tob1File fewer = tob1Of({recordAtHalfPastOne({1})}, columns);
    EXPECT_EQ(fewer.lines[1], R"("SECONDS","NANOSECONDS","RECORD","A")");
    EXPECT_EQ(fewer.lines[2], R"("SECONDS","NANOSECONDS","RN","C")");
    EXPECT_EQ(fewer.lines[3], R"("","","","Smp")");
    const Tob1File more = tob1Of({recordAtHalfPastOne({1, 2, 3})}, columns);
    EXPECT_EQ(more.lines[1], R"("SECONDS","NANOSECONDS","RECORD","A","B","")");
    EXPECT_EQ(more.lines[2], R"("SECONDS","NANOSECONDS","RN","C","kPa","")");
    EXPECT_EQ(more.lines[3], R"("","","","Smp","Smp","Smp")");
    EXPECT_EQ(more.lines[4], R"("UINT4","UINT4","UINT4","IEEE4","IEEE4","IEEE4")");
}

TEST(Tob1Writer, ALongEnvironmentIsCutToEightEntries) {
    Tob1Columns columns;
    columns.environment = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
    EXPECT_EQ(tob1Of({recordAtHalfPastOne({1, 2})}, columns).lines[0],
              R"("TOB1","1","2","3","4","5","6","7")");
}

TEST(Tob1Writer, AShortEnvironmentIsFilledToEightEntries) {
    Tob1Columns columns;
    columns.environment = {"1"};
    EXPECT_EQ(tob1Of({recordAtHalfPastOne({1, 2})}, columns).lines[0], R"("TOB1","1","","","","","","")");
}

// Texts of the first line are no names: nothing is taken out of them, nothing escaped.
TEST(Tob1Writer, TheEnvironmentIsWrittenAsItIs) {
    Tob1Columns columns;
    columns.environment = {"QA 330", "a\"b", "2.4.1-beta, x"};
    EXPECT_EQ(tob1Of({recordAtHalfPastOne({1, 2})}, columns).lines[0],
              R"("TOB1","QA 330","a"b","2.4.1-beta, x","","","","")");
}

TEST(Tob1Writer, SecondsAreLocalSince1990) {
    const Tob1File file = tob1Of({recordAtHalfPastOne({1.5, -2}, 7200)});
    EXPECT_EQ(file.field(0), 993915000U);
    EXPECT_EQ(file.field(4), 500'000'000U);
    EXPECT_EQ(file.field(8), 0U);
    EXPECT_EQ(file.value(12), 1.5F);
    EXPECT_EQ(file.value(16), -2.0F);
    EXPECT_EQ(file.binary.substr(0, 4), "\x78\xf0\x3d\x3b"); // 0x3b3df078, lowest byte first
}

TEST(Tob1Writer, AWesternZonesOffsetIsSubtracted) {
    EXPECT_EQ(tob1Of({recordAtHalfPastOne({1}, -12600)}).field(0), 1625059800U - 12600 - 631152000);
}

TEST(Tob1Writer, TheFirstRecordsOffsetHoldsForTheWholeFile) {
    const Record summer = recordAtHalfPastOne({1}, 7200);
    Record winter = recordAtHalfPastOne({2}, 3600);
    winter.seconds += 1000;
    const Tob1File file = tob1Of({summer, winter});
    EXPECT_EQ(file.field(16), 993915000U + 1000);
}

TEST(Tob1Writer, SecondsBefore1990WrapRound) {
    Record record = recordAtHalfPastOne({1});
    record.seconds = 0;
    EXPECT_EQ(tob1Of({record}).field(0), 4294967296 - 631152000);
}

TEST(Tob1Writer, RecordsAreNumberedFromZero) {
    const Record record = recordAtHalfPastOne({1});
    const Tob1File file = tob1Of({record, record, record});
    EXPECT_EQ(file.field(8), 0U);
    EXPECT_EQ(file.field(16 + 8), 1U);
    EXPECT_EQ(file.field(32 + 8), 2U);
}

TEST(Tob1Writer, ValuesBeyondTheRangeOfAFloatBecomeInfinities) {
    const Tob1File file = tob1Of({recordAtHalfPastOne({1e39, -1e308, 3.4028235e38, 1e-60})});
    EXPECT_EQ(file.value(12), std::numeric_limits<float>::infinity());
    EXPECT_EQ(file.value(16), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(file.value(20), std::numeric_limits<float>::max());
    EXPECT_EQ(file.value(24), 0.0F);
}

TEST(Tob1Writer, NotANumberStaysSo) {
    EXPECT_TRUE(std::isnan(tob1Of({recordAtHalfPastOne({std::nan("")})}).value(12)));
}

TEST(Tob1Writer, NothingIsWrittenBeforeTheFirstRecord) {
    MemoryOutput output;
    Tob1Writer writer(*output);
    writer.setEnvironment({"QA330"});
    EXPECT_EQ(output.bytes(), "");
}

} // namespace
