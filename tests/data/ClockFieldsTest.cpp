#include "ClockLines.h"
#include "support/RandomNumbers.h"
#include "support/SanitizerBuild.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string digits(RandomNumbers &random, std::size_t count) {
    std::string text;
    while (text.size() < count) {
        text += static_cast<char>('0' + random.below(10));
    }
    return text;
}

} // namespace

TEST(ClockFields, ReadRandomDatesAndTimesAsTheirNumbersRead) {
    RandomNumbers random(31);
    for (std::size_t round = scaledDown(500'000); round > 0; --round) {
        std::string line = "1559368800\t" + digits(random, 4) + "-" + digits(random, 2) + "-" +
                           digits(random, 2) + "\t" + digits(random, 2) + ":" + digits(random, 2) + ":" +
                           digits(random, 2);
        if (!random.oneIn(4)) {
            line += ":" + digits(random, random.oneIn(4) ? random.below(5) : 3);
        }
        line += random.oneIn(20) ? "" : "\t123";
        for (std::uint64_t changes = random.oneIn(2) ? 0 : random.below(4); changes > 0; --changes) {
            static constexpr std::string_view odd = "0123456789\t -:./+x\x80\xff";
            line[11 + random.below(line.size() - 11)] = random.pick(odd);
        }
        ASSERT_TRUE(readsAsWithBlanks(line));
    }
}

TEST(ClockFields, ReadAnyEightBytesOfADateOrATimeThatDifferInOne) {
    const std::string line = "1559368800\t2019-06-01\t12:30:05:250\t123456789";
    for (std::size_t place = 11; place < line.size(); ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = line;
            changed[place] = static_cast<char>(byte);
            ASSERT_TRUE(readsAsWithBlanks(changed)) << place << ' ' << byte;
        }
    }
}

TEST(ClockFields, AreReadWithTheirParts) {
    Record record;
    ASSERT_EQ(readClockLine(dateAndTimeOnly, "1559368800\t2019-06-01\t12:30:05:250\t", record),
              FieldResult::good);
    EXPECT_EQ(record.year, 2019);
    EXPECT_EQ(record.month, 6);
    EXPECT_EQ(record.day, 1);
    EXPECT_EQ(record.hour, 12);
    EXPECT_EQ(record.minute, 30);
    EXPECT_EQ(record.second, 5);
    EXPECT_EQ(record.nanoseconds, 250000000U);
    EXPECT_EQ(record.flags, RecordStamp::hasDate | RecordStamp::hasTimeOfDay);
}
