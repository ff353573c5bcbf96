#include "support/FaultyReads.h"
#include "time/AllocationWatch.h"
#include "time/CalendarFields.h"
#include "time/Timezone.h"
#include "time/ZoneFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace std::string_literals;

namespace {

ZoneFileBuilder fixedClock(std::int32_t utcOffset, const std::string &abbreviation) {
    return ZoneFileBuilder().type(utcOffset, false, 0).abbreviations(abbreviation + '\0');
}

std::string abbreviationOf(const ZoneFileBuilder &file) {
    return zoneOf(file).currentAbbreviation();
}

} // namespace

TEST(ZoneContents, FileShorterThanAHeaderOrWithoutItsMarkIsInvalid) {
    const ZoneFolder folder;
    const std::string good = fixedClock(0, "UTC").bytes();
    for (const std::string &bytes : {""s, "TZif"s, good.substr(0, 43), "tzif" + good.substr(4),
                                     "\0\0\0\0"s + good.substr(4), std::string(200, 'x'), " " + good}) {
        folder.write("Bad", bytes);
        EXPECT_EQ(folder.errorOf("Bad"), "Invalid timezone file: " + folder.pathOf("Bad"));
    }
}

TEST(ZoneContents, VersionAndTheOtherCountsAreNotLookedAt) {
    std::string bytes = easternClock().bytes();
    for (std::size_t at = 4; at < 32; ++at) {
        bytes[at] = '\xFF';
    }
    const ZoneFolder folder;
    folder.write("Odd", bytes);
    EXPECT_EQ(folder.errorOf("Odd"), "");
}

TEST(ZoneContents, WhatFollowsTheAbbreviationsIsIgnored) {
    const ZoneFolder folder;
    folder.write("Longer", easternClock().bytes() + easternClock().bytes() + "\nCET-1\n");
    Timezone zone(folder.path(), "Longer");
    std::tm local{};
    EXPECT_EQ(written(*zone.localTime(easternSummerBegins, &local)), "2020-3-29 3:0:0");
    EXPECT_EQ(zone.currentAbbreviation(), "CEST");
}

TEST(ZoneContents, FileCutAnywhereLoadsOrSaysWhatIsMissing) {
    const ZoneFolder folder;
    const std::string good = easternClock().bytes();
    const std::string path = folder.pathOf("Cut");
    constexpr std::size_t header = 44;
    constexpr std::size_t transitions = header + std::size_t{5} * 5;
    constexpr std::size_t types = transitions + std::size_t{2} * 6;
    for (std::size_t length = 0; length <= good.size(); ++length) {
        const std::string expected =
            length < header        ? "Invalid timezone file: " + path
            : length < transitions ? "Unable to read timezone data from file: " + path
            : length < types       ? "Unable to read timezone type info from file: " + path
            : length == types      ? "Unable to read timezone abbreviations from file: " + path
                                   : "";
        folder.write("Cut", good.substr(0, length));
        EXPECT_EQ(folder.errorOf("Cut"), expected) << length << " bytes";
    }
}

TEST(ZoneContents, FileThatFailsAtAnyByteIsNamed) {
    const ZoneFolder folder;
    const std::string good = easternClock().bytes();
    const std::string path = folder.pathOf("Failing");
    folder.write("Failing", good);
    // The last byte only ends the abbreviations.
    for (std::size_t at = 0; at + 1 < good.size(); ++at) {
        const FaultyReads faults(path, {.failsAt = at});
        const std::string error = folder.errorOf("Failing");
        EXPECT_TRUE(error.ends_with(" file: " + path)) << at << ": " << error;
        EXPECT_GT(faults.failures(), 0U);
    }
    const FaultyReads faults(path, {.largestPiece = 1});
    EXPECT_EQ(folder.errorOf("Failing"), "");
    EXPECT_GE(faults.reads(), good.size() - 1);
}

TEST(ZoneContents, CountsBeyondTheFileAreErrorsThatAllocateNothingForThem) {
    const ZoneFolder folder;
    for (const std::uint32_t count : {0x00100000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        folder.write("Transitions", easternClock().claimTransitions(count).bytes());
        folder.write("Types", easternClock().claimTypes(count).bytes());
        const AllocationWatch watch;
        EXPECT_EQ(folder.errorOf("Transitions"),
                  "Unable to read timezone data from file: " + folder.pathOf("Transitions"));
        EXPECT_EQ(folder.errorOf("Types"),
                  "Unable to read timezone type info from file: " + folder.pathOf("Types"));
        EXPECT_LT(watch.largest(), 100000U);
    }
}

TEST(ZoneContents, AbbreviationCountBeyondTheFileLoadsWhatIsThere) {
    const ZoneFolder folder;
    for (const std::uint32_t count : {10U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        folder.write("Short", easternClock().claimAbbreviationBytes(count).bytes());
        const AllocationWatch watch;
        Timezone zone(folder.path(), "Short");
        EXPECT_LT(watch.largest(), 100000U);
        std::tm local{};
        zone.localTime(easternSummerBegins, &local);
        EXPECT_EQ(zone.currentAbbreviation(), "CEST");
    }
}

TEST(ZoneContents, LargeFileIsLoadedWhole) {
    constexpr std::int64_t count = 20000;
    ZoneFileBuilder file;
    for (std::int64_t i = 0; i < count; ++i) {
        file.transition(3600 * i, static_cast<int>(i % 2));
    }
    file.type(0, false, 0).type(3600, true, 4).abbreviations("AAA\0BBB\0"s);
    const ZoneFolder folder;
    folder.write("Large", file.bytes());
    const AllocationWatch watch;
    Timezone zone(folder.path(), "Large");
    if (AllocationWatch::isPossible()) {
        EXPECT_GE(watch.largest(), static_cast<std::size_t>(count) * sizeof(std::int64_t))
            << "the watch sees what is allocated";
    }
    std::tm local{};
    EXPECT_EQ(zone.localTime((count - 2) * 3600, &local)->tm_isdst, 0);
    EXPECT_EQ(zone.localTime((count - 1) * 3600, &local)->tm_isdst, 1);
}

TEST(ZoneContents, AbbreviationBlockWithoutACharacterIsAnError) {
    const ZoneFolder folder;
    const std::string message = "Unable to read timezone abbreviations from file: " + folder.pathOf("Bad");
    // The last byte of the block is never read, so one byte is as bad as none.
    for (const std::uint32_t count : {0U, 1U}) {
        folder.write("Bad", fixedClock(0, "UTC").claimAbbreviationBytes(count).bytes());
        EXPECT_EQ(folder.errorOf("Bad"), message) << count;
    }
    folder.write("Bad", fixedClock(0, "\nUTC").bytes());
    EXPECT_EQ(folder.errorOf("Bad"), message) << "a line feed comes first";
}

TEST(ZoneContents, AbbreviationIsTheTextFromItsIndexToTheNextNul) {
    struct Row {
        int index;
        const char *abbreviation;
    };
    for (const Row &row : {Row{0, "CET"}, {1, "ET"}, {3, ""}, {4, "CEST"}, {6, "ST"}, {8, ""}}) {
        EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, row.index).abbreviations("CET\0CEST\0"s)),
                  row.abbreviation)
            << row.index;
    }
}

TEST(ZoneContents, AbbreviationMayStartWithANul) {
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 1).abbreviations("\0UTC\0"s)), "UTC");
}

TEST(ZoneContents, LastByteOfTheAbbreviationBlockIsNotRead) {
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 0).abbreviations("ABCD")), "ABC");
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 3).abbreviations("ABCD")), "");
}

TEST(ZoneContents, LineFeedEndsTheAbbreviations) {
    const std::string block = "AB\nCD\0EF\0"s;
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 0).abbreviations(block)), "AB");
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 2).abbreviations(block)), "");
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 3).abbreviations(block)), "");
    EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, 6).abbreviations(block)), "");
}

TEST(ZoneContents, AbbreviationIndexOutsideTheBlockGivesNoText) {
    for (const int index : {4, 5, 200, 255}) {
        EXPECT_EQ(abbreviationOf(ZoneFileBuilder().type(0, false, index).abbreviations("UTC\0"s)), "");
    }
    // Inside what the header claims, but behind what the file holds.
    EXPECT_EQ(abbreviationOf(fixedClock(0, "UTC").type(0, false, 200).claimAbbreviationBytes(250)), "UTC");
    EXPECT_EQ(abbreviationOf(
                  ZoneFileBuilder().type(0, false, 200).abbreviations("UTC").claimAbbreviationBytes(250)),
              "");
}

TEST(ZoneContents, AnyDamagedByteGivesAZoneThatConvertsOrAZoneError) {
    const ZoneFolder folder;
    const std::string good = easternClock().bytes();
    int loaded = 0;
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (const char damage : {'\x00', '\x01', '\n', '\x7F', '\x80', '\xFF'}) {
            std::string bytes = good;
            bytes[at] = damage;
            folder.write("Damaged", bytes);
            if (!folder.errorOf("Damaged").empty()) {
                continue;
            }
            ++loaded;
            Timezone zone(folder.path(), "Damaged");
            for (const std::int64_t instant : {INT64_MIN, INT64_C(0), easternSummerEnds, INT64_MAX}) {
                std::tm local{};
                TimezoneInfo info;
                ASSERT_EQ(zone.localTime(instant, &local, &info), &local);
                ASSERT_LT(std::string(info.abbreviation).size(), good.size());
                zone.makeTime(local);
            }
        }
    }
    EXPECT_GT(loaded, 100);
}

TEST(ZoneContents, EveryCompiledZoneOfTheWorldLoads) {
    int count = 0;
    const std::filesystem::path root = FVQA_ZONEINFO_DIR;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) {
            const std::string name = std::filesystem::relative(entry.path(), root).string();
            EXPECT_NO_THROW(Timezone(root.string(), name)) << name;
            ++count;
        }
    }
    EXPECT_GT(count, 400);
}
