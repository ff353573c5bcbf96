#include "plot/TimeLabels.h"

#include "plot/AxisTimes.h"
#include "plot/LabelSequence.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t noon = utc(2021, 3, 4, 12);

class TimeLabels : public testing::Test {
protected:
    Timezone zone_ = zoneNamed("UTC");
};

} // namespace

TEST_F(TimeLabels, WithoutAReferenceHaveTimeDayAndYear) {
    EXPECT_EQ(timeLabelText(utc(2021, 3, 4, 13, 5), {}, zone_), "13:05\nMar 4\n2021");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 14, 3, 5, 7), {}, zone_), "03:05:07\nMar 14\n2021");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 4, 0, 0, 1), {}, zone_), "00:00:01\nMar 4\n2021");
}

TEST_F(TimeLabels, OfMidnightHaveNoTimeLineOnlyTheDateAndTheYearWhereRequired) {
    const std::int64_t midnight = utc(2021, 3, 4);
    EXPECT_EQ(timeLabelText(midnight, {}, zone_), "Mar 4\n2021");
    EXPECT_EQ(timeLabelText(midnight, midnight - 1, zone_), "Mar 4\n");
    EXPECT_EQ(timeLabelText(midnight, utc(2020, 12, 31), zone_), "Mar 4\n2021");
    EXPECT_EQ(timeLabelText(midnight, noon, zone_), "");
}

TEST_F(TimeLabels, OfTheReferencesDayKeepTheLineFeedBehindTheirTime) {
    EXPECT_EQ(timeLabelText(utc(2021, 3, 4, 13, 10), noon, zone_), "13:10\n");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 4, 13, 10), utc(2021, 3, 4, 23, 59, 59), zone_), "13:10\n");
}

TEST_F(TimeLabels, OfAnotherDayNameItAndTheYearOnlyWhenItDiffers) {
    EXPECT_EQ(timeLabelText(utc(2021, 3, 5, 6), noon, zone_), "06:00\nMar 5\n");
    EXPECT_EQ(timeLabelText(utc(2021, 4, 4, 6), noon, zone_), "06:00\nApr 4\n");
    EXPECT_EQ(timeLabelText(utc(2022, 3, 4, 6), noon, zone_), "06:00\nMar 4\n2022");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 3, 6), noon, zone_), "06:00\nMar 3\n");
}

TEST_F(TimeLabels, NameTheMonthsInEnglish) {
    const char *names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (unsigned month = 1; month <= 12; ++month) {
        EXPECT_EQ(timeLabelText(utc(2021, month, 1), {}, zone_), std::string(names[month - 1]) + " 1\n2021");
    }
}

TEST_F(TimeLabels, HaveFourDigitsInTheYearAtLeast) {
    EXPECT_EQ(timeLabelText(utc(33, 4, 3), {}, zone_), "Apr 3\n0033");
    EXPECT_EQ(timeLabelText(utc(1969, 12, 31, 23, 59, 59), {}, zone_), "23:59:59\nDec 31\n1969");
    EXPECT_EQ(timeLabelText(utc(2107, 1, 1), {}, zone_), "Jan 1\n2107");
    EXPECT_EQ(timeLabelText(9007199254740992, {}, zone_), "07:36:32\nNov 12\n285428751");
}

TEST_F(TimeLabels, OfTheTimeOfDayAloneHaveNoDate) {
    EXPECT_EQ(timeOfDayLabelText(utc(2021, 3, 4, 13, 5), zone_), "13:05");
    EXPECT_EQ(timeOfDayLabelText(utc(2021, 3, 4, 3, 5, 7), zone_), "03:05:07");
    EXPECT_EQ(timeOfDayLabelText(utc(2021, 3, 4), zone_), "Mar 4\n2021");
}

TEST_F(TimeLabels, ShowTheZonesClock) {
    Timezone kolkata = zoneNamed("Asia/Kolkata");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 4, 18), {}, kolkata), "23:30\nMar 4\n2021");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 4, 18, 30), utc(2021, 3, 4, 18), kolkata), "Mar 5\n");
    Timezone newYork = zoneNamed("America/New_York");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 14, 6, 59), {}, newYork), "01:59\nMar 14\n2021");
    EXPECT_EQ(timeLabelText(utc(2021, 3, 14, 7), {}, newYork), "03:00\nMar 14\n2021");
}

TEST(LabelSequence, GoesFromStateToStateAsTimesComeInAndOutOfOrder) {
    struct Call {
        std::int64_t time;
        int state;
        std::optional<std::int64_t> reference;
    };
    struct Row {
        const char *what;
        std::vector<Call> calls;
    };
    const Row rows[] = {
        {"the order of an axis", {{10, 1, {}}, {50, 2, 10}, {20, 3, 10}, {30, 4, 20}, {40, 4, 30}}},
        {"the same time twice at the start", {{10, 1, {}}, {10, 1, {}}, {20, 2, 10}}},
        {"state 1 goes back without a new first time", {{10, 1, {}}, {5, 1, {}}, {7, 2, 10}}},
        {"state 2 stays while times grow", {{10, 1, {}}, {20, 2, 10}, {20, 2, 10}, {30, 2, 10}}},
        {"state 2 starts again at its first time", {{10, 1, {}}, {20, 2, 10}, {10, 1, {}}, {30, 2, 10}}},
        {"state 2 starts again before its first time", {{10, 1, {}}, {20, 2, 10}, {9, 1, {}}, {30, 2, 9}}},
        {"state 3 takes the same time", {{10, 1, {}}, {50, 2, 10}, {20, 3, 10}, {20, 4, 20}}},
        {"state 3 starts again", {{10, 1, {}}, {50, 2, 10}, {20, 3, 10}, {19, 1, {}}, {60, 2, 19}}},
        {"state 4 takes the same time", {{1, 1, {}}, {9, 2, 1}, {2, 3, 1}, {3, 4, 2}, {3, 4, 3}}},
        {"state 4 starts again", {{1, 1, {}}, {9, 2, 1}, {2, 3, 1}, {3, 4, 2}, {2, 1, {}}, {9, 2, 2}}},
        {"a later axis is not recognised as new",
         {{1, 1, {}}, {9, 2, 1}, {2, 3, 1}, {3, 4, 2}, {20, 4, 3}, {30, 4, 20}, {21, 1, {}}, {22, 2, 21}}},
        {"times before 1970", {{-50, 1, {}}, {-10, 2, -50}, {-40, 3, -50}, {-30, 4, -40}}},
    };
    for (const Row &row : rows) {
        LabelSequence sequence;
        EXPECT_EQ(sequence.state(), 0);
        int call = 0;
        for (const Call &expected : row.calls) {
            EXPECT_EQ(sequence.referenceFor(expected.time), expected.reference) << row.what << " " << call;
            EXPECT_EQ(sequence.state(), expected.state) << row.what << " " << call;
            ++call;
        }
    }
}
