#include "data/FragmentList.h"

#include "support/RandomNumbers.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <list>
#include <set>
#include <string>
#include <vector>

namespace {

std::shared_ptr<const DataFragment> fragmentOf(const std::string &fileName, std::uint32_t firstTime) {
    auto fragment =
        std::make_shared<DataFragment>(SourceHeader{fileName, "", "Q", "", "", "UTC"}, "DATA",
                                       std::vector<std::string>{"SECONDS"}, std::vector<std::string>());
    fragment->acceptRecord(1, "DATA\t" + std::to_string(firstTime));
    fragment->finishLoading();
    return fragment;
}

std::vector<const DataFragment *> contentOf(const FragmentList &list) {
    std::vector<const DataFragment *> content;
    for (const auto &fragment : list) {
        content.push_back(fragment.get());
    }
    return content;
}

} // namespace

TEST(FragmentList, KeepsTheOrderOfArrivalUntilItIsSorted) {
    FragmentList list;
    EXPECT_TRUE(list.empty());
    const auto late = fragmentOf("a", 300);
    const auto early = fragmentOf("a", 100);
    list.append(late);
    list.append(early);
    EXPECT_EQ(contentOf(list), (std::vector{late.get(), early.get()}));
    EXPECT_EQ(&list.front(), late.get());
    EXPECT_EQ(&list.back(), early.get());
    list.sort();
    EXPECT_EQ(contentOf(list), (std::vector{early.get(), late.get()}));
    EXPECT_EQ(list.size(), 2U);
}

TEST(FragmentList, FragmentsAtTimeZeroAreSortedToo) {
    FragmentList list;
    const auto zero = fragmentOf("a", 0);
    const auto one = fragmentOf("a", 1);
    list.append(one);
    list.append(zero);
    list.sort();
    EXPECT_EQ(contentOf(list), (std::vector{zero.get(), one.get()}));
}

TEST(FragmentList, RemovingAFileGivesItsFragmentsInTheOrderTheyCame) {
    FragmentList list;
    const auto second = fragmentOf("a", 300);
    const auto first = fragmentOf("a", 100);
    list.append(second);
    list.append(fragmentOf("b", 200));
    list.append(first);
    list.sort();
    EXPECT_TRUE(list.removeFile("c").empty());
    const auto removed = list.removeFile("a");
    EXPECT_EQ(removed, (std::vector<std::shared_ptr<const DataFragment>>{second, first}));
    EXPECT_EQ(list.size(), 1U);
    EXPECT_TRUE(list.removeFile("a").empty());
}

TEST(FragmentList, NamesEveryFileOnce) {
    FragmentList list;
    for (const char *const name : {"b", "a", "b", "c"}) {
        list.append(fragmentOf(name, 1));
    }
    list.removeFile("c");
    std::multiset<std::string> names;
    list.forEachFileName([&names](const std::string &name) { names.insert(name); });
    EXPECT_EQ(names, (std::multiset<std::string>{"a", "b"}));
}

TEST(FragmentList, AFileMayComeAgain) {
    FragmentList list;
    list.append(fragmentOf("a", 1));
    list.removeFile("a");
    list.append(fragmentOf("a", 2));
    list.sort();
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(list.front().firstTime(), 2);
    EXPECT_EQ(list.removeFile("a").size(), 1U);
    EXPECT_TRUE(list.empty());
}

TEST(FragmentList, VeryManyFragmentsOfOneFileAreSortedAndRemoved) {
    // A damaged file may hold a header line every few bytes. Looking at all for each one would take minutes.
    const std::size_t blocks = scaledDown(300000);
    const auto early = fragmentOf("a", 1);
    const auto late = fragmentOf("a", 2);
    FragmentList list;
    for (std::size_t i = 0; i < blocks; ++i) {
        list.append(i % 2 == 0 ? late : early);
    }
    list.sort();
    EXPECT_EQ(&list.front(), early.get());
    EXPECT_EQ(&list.back(), late.get());
    EXPECT_EQ(list.removeFile("a").size(), blocks);
    EXPECT_TRUE(list.empty());
}

TEST(FragmentList, BehavesAsAPlainListThatIsSortedStably) {
    RandomNumbers random(5);
    for (int round = 0; round < 20; ++round) {
        FragmentList list;
        std::list<std::shared_ptr<const DataFragment>> plain;
        for (int step = 0; step < 60; ++step) {
            if (random.oneIn(6)) {
                const std::string name(1, static_cast<char>('a' + random.below(5)));
                list.removeFile(name);
                plain.remove_if([&name](const auto &f) { return f->header().fileName == name; });
            } else {
                const std::string name(1, static_cast<char>('a' + random.below(5)));
                const auto fragment = fragmentOf(name, static_cast<std::uint32_t>(random.below(6)));
                list.append(fragment);
                plain.push_back(fragment);
                list.sort();
                plain.sort([](const auto &a, const auto &b) { return a->firstTime() < b->firstTime(); });
            }
            std::vector<const DataFragment *> expected;
            for (const auto &fragment : plain) {
                expected.push_back(fragment.get());
            }
            ASSERT_EQ(contentOf(list), expected);
        }
    }
}
