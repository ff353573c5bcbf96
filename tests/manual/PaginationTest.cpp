#include "Pagination.h"

#include <gtest/gtest.h>

namespace {

// Parts of 10 each, directly below each other.
std::vector<StripPart> lines(int count) {
    std::vector<StripPart> parts;
    for (int i = 0; i < count; ++i) {
        StripPart part;
        part.top = i * 10.0;
        part.bottom = part.top + 10;
        parts.push_back(part);
    }
    return parts;
}

// The first page's end, in parts.
int partsOnFirstPage(const std::vector<StripPart> &parts, double height) {
    const auto pages = paginate(parts, height);
    return static_cast<int>(pages.front().back().bottom / 10);
}

TEST(Pagination, NothingNeedsNoPage) {
    EXPECT_TRUE(paginate({}, 100).empty());
}

TEST(Pagination, APageHoldsWholeLinesOnly) {
    EXPECT_EQ(partsOnFirstPage(lines(20), 99), 9);
    EXPECT_EQ(partsOnFirstPage(lines(20), 100), 10);
    EXPECT_EQ(paginate(lines(20), 100).size(), 2U);
}

TEST(Pagination, EveryLineIsOnExactlyOnePage) {
    double next = 0;
    for (const StripPage &page : paginate(lines(57), 95)) {
        ASSERT_EQ(page.size(), 1U);
        EXPECT_EQ(page.front().top, next);
        next = page.front().bottom;
    }
    EXPECT_EQ(next, 570);
}

TEST(Pagination, AHeadingGoesToThePageOfWhatItHeads) {
    auto parts = lines(20);
    parts[9].keepsWithNext = true;
    EXPECT_EQ(partsOnFirstPage(parts, 100), 9);
}

TEST(Pagination, SeveralThatStayTogetherGoTogether) {
    auto parts = lines(20);
    parts[7].keepsWithNext = parts[8].keepsWithNext = parts[9].keepsWithNext = true;
    EXPECT_EQ(partsOnFirstPage(parts, 100), 7);
}

TEST(Pagination, WhatIsHigherThanAPageIsCutAllTheSame) {
    auto parts = lines(20);
    for (StripPart &part : parts) {
        part.keepsWithNext = true;
    }
    EXPECT_EQ(partsOnFirstPage(parts, 100), 10);
    StripPart high;
    high.bottom = 500;
    EXPECT_EQ(paginate({high}, 100).size(), 1U);
}

TEST(Pagination, AChapterDoesNotBeginAtAPagesFoot) {
    auto parts = lines(20);
    parts[8].wantedRoom = 25;
    EXPECT_EQ(partsOnFirstPage(parts, 100), 8);
    EXPECT_EQ(partsOnFirstPage(parts, 110), 11);
}

TEST(Pagination, ATableThatGoesOnRepeatsItsHeader) {
    auto parts = lines(20);
    for (std::size_t row = 3; row < 20; ++row) {
        parts[row].repeatedHeader = 2;
    }
    const auto pages = paginate(parts, 100);
    ASSERT_EQ(pages.size(), 3U);
    ASSERT_EQ(pages[1].size(), 2U);
    EXPECT_EQ(pages[1][0].top, 20);
    EXPECT_EQ(pages[1][0].bottom, 30);
    EXPECT_EQ(pages[1][1].top, 100);
    EXPECT_EQ(pages[1][1].bottom, 190) << "the header takes room on the page";
}

} // namespace
