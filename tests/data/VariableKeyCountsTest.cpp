#include "data/VariableKeyCounts.h"

#include "support/RandomNumbers.h"

#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;
using Set = std::set<std::string>;

std::shared_ptr<const DataFragment> fragmentOf(const std::string &instrument, const std::string &tag,
                                               Names columns) {
    auto fragment = std::make_shared<DataFragment>(SourceHeader{"file", "", instrument, "", "", "UTC"}, tag,
                                                   std::move(columns), Names());
    fragment->setUpColumns();
    return fragment;
}

} // namespace

TEST(VariableKeyCounts, AKeyStaysUntilItsLastFragmentIsGone) {
    VariableKeyCounts counts;
    EXPECT_TRUE(counts.empty());
    const auto a = fragmentOf("Q", "DATA", {"A", "B"});
    const auto b = fragmentOf("Q", "DATA", {"B", "C"});
    counts.add(*a);
    counts.add(*b);
    counts.add(*a);
    EXPECT_EQ(counts.keys(), (Set{"Q:DATA:A", "Q:DATA:B", "Q:DATA:C"}));
    counts.remove(*a);
    EXPECT_EQ(counts.keys(), (Set{"Q:DATA:A", "Q:DATA:B", "Q:DATA:C"}));
    counts.remove(*a);
    EXPECT_EQ(counts.keys(), (Set{"Q:DATA:B", "Q:DATA:C"}));
    counts.remove(*b);
    EXPECT_TRUE(counts.empty());
    EXPECT_EQ(counts.keys(), Set{});
}

TEST(VariableKeyCounts, TheRevisionChangesExactlyWhenTheSetOfKeysDoes) {
    VariableKeyCounts counts;
    const auto a = fragmentOf("Q", "DATA", {"A", "B"});
    const auto sameKeysOtherLayout = fragmentOf("Q", "DATA", {"B", "A", "A"});
    const auto before = counts.revision();
    counts.add(*a);
    const auto one = counts.revision();
    EXPECT_NE(one, before);
    counts.add(*a);
    counts.add(*sameKeysOtherLayout);
    counts.remove(*a);
    counts.remove(*a);
    EXPECT_EQ(counts.revision(), one);
    counts.remove(*sameKeysOtherLayout);
    EXPECT_NE(counts.revision(), one);
}

TEST(VariableKeyCounts, AFragmentWithoutValueColumnsChangesNothing) {
    VariableKeyCounts counts;
    const auto none = fragmentOf("Q", "DATA", {"SECONDS"});
    const auto before = counts.revision();
    counts.add(*none);
    EXPECT_TRUE(counts.empty());
    counts.remove(*none);
    EXPECT_EQ(counts.revision(), before);
}

TEST(VariableKeyCounts, RemovingWhatWasNeverAddedChangesNothing) {
    VariableKeyCounts counts;
    counts.add(*fragmentOf("Q", "DATA", {"A"}));
    const auto before = counts.revision();
    counts.remove(*fragmentOf("Q", "DATA", {"B"}));
    counts.remove(*fragmentOf("Q", "DATASTAT", {"A"}));
    counts.remove(*fragmentOf("R", "DATA", {"A"}));
    EXPECT_EQ(counts.keys(), Set{"Q:DATA:A"});
    EXPECT_EQ(counts.revision(), before);
}

TEST(VariableKeyCounts, HoldsTheKeysOfWhateverIsThere) {
    RandomNumbers random(9);
    VariableKeyCounts counts;
    std::vector<std::shared_ptr<const DataFragment>> present;
    for (int step = 0; step < 3000; ++step) {
        if (!present.empty() && random.oneIn(2)) {
            const auto at = present.begin() + static_cast<std::ptrdiff_t>(random.below(present.size()));
            counts.remove(**at);
            present.erase(at);
        } else {
            Names columns(random.below(4));
            for (std::string &name : columns) {
                name = std::string(1, static_cast<char>('A' + random.below(3)));
            }
            present.push_back(
                fragmentOf(random.oneIn(2) ? "Q" : "R", random.oneIn(2) ? "DATA" : "DATASTAT", columns));
            counts.add(*present.back());
        }
        Set expected;
        for (const auto &fragment : present) {
            fragment->addVariableKeys(expected);
        }
        ASSERT_EQ(counts.keys(), expected);
        ASSERT_EQ(counts.empty(), expected.empty());
    }
}
