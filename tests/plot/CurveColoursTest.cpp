#include "plot/CurveColours.h"

#include <gtest/gtest.h>

TEST(CurveColours, TheFirstTenDiffer) {
    for (std::uint64_t i = 0; i < 10; ++i) {
        for (std::uint64_t j = 0; j < i; ++j) {
            EXPECT_NE(curveColour(i), curveColour(j)) << i << " and " << j;
        }
    }
}

TEST(CurveColours, TheOrderIsKept) {
    const Qt::GlobalColor order[] = {Qt::red,      Qt::blue,       Qt::magenta,   Qt::darkYellow,
                                     Qt::black,    Qt::darkRed,    Qt::darkGreen, Qt::darkBlue,
                                     Qt::darkCyan, Qt::darkMagenta};
    for (std::uint64_t i = 0; i < 10; ++i) {
        EXPECT_EQ(curveColour(i), QColor(order[i])) << i;
    }
}

TEST(CurveColours, TheEleventhIsRedAgain) {
    EXPECT_EQ(curveColour(10), QColor(Qt::red));
    EXPECT_EQ(curveColour(20), QColor(Qt::red));
    EXPECT_EQ(curveColour(13), QColor(Qt::darkYellow));
}
