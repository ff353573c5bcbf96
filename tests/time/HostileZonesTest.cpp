#include "time/AllocationWatch.h"
#include "time/CalendarFields.h"
#include "time/Timezone.h"
#include "time/ZoneFolder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

// Zone names come out of data files, and zone files may be anything: each gives a clock with defined answers
// or the message that says what is wrong.

using namespace std::string_literals;

namespace {

std::string compiledZone(const std::string &name) {
    std::ifstream file(std::string(FVQA_ZONEINFO_DIR) + '/' + name, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(file.is_open()) << name;
    return bytes;
}

std::size_t countAt(std::string_view file, std::size_t at) {
    std::size_t count = 0;
    for (const char byte : file.substr(at, 4)) {
        count = count * 256 + static_cast<unsigned char>(byte);
    }
    return count;
}

// Where the parts of a zone file end.
struct Ends {
    explicit Ends(std::string_view file)
        : transitions(header + 5 * countAt(file, 32)),
          types(transitions + 6 * countAt(file, 36)),
          abbreviations(types + countAt(file, 40)) {}

    std::string messageAt(std::size_t length) const {
        return length < header        ? "Invalid timezone file: "
               : length < transitions ? "Unable to read timezone data from file: "
               : length < types       ? "Unable to read timezone type info from file: "
               : length == types      ? "Unable to read timezone abbreviations from file: "
                                      : "";
    }

    static constexpr std::size_t header = 44;
    std::size_t transitions;
    std::size_t types;
    std::size_t abbreviations;
};

// Local times round the year in a zone, with what is told of them but for the names.
std::string clockOf(Timezone &zone) {
    std::ostringstream text;
    for (std::int64_t instant = 1546300800; instant < 1577836800; instant += 740700) {
        std::tm local{};
        TimezoneInfo info;
        zone.localTime(instant, &local, &info);
        text << writtenInFull(local) << ' ' << info.utcOffset << ' ' << info.isDst << ' ' << info.fold << ' '
             << zone.makeTime(local) << '\n';
    }
    return text.str();
}

// 1000 to 1999 and from 3000 on of a type that the file does not have.
ZoneFileBuilder clockWithHoles(int index) {
    return ZoneFileBuilder()
        .transition(0, 0)
        .transition(1000, index)
        .transition(2000, 1)
        .transition(3000, index)
        .type(3600, false, 0)
        .type(7200, true, 4)
        .abbreviations("AAA\0BBB\0"s);
}

} // namespace

TEST(HostileZones, RealZoneFileCutAtEveryByteLoadsOrSaysWhatIsMissing) {
    const ZoneFolder folder;
    for (const std::string name : {"Europe/Berlin", "America/St_Johns", "Asia/Kathmandu",
                                   "Australia/Lord_Howe", "Pacific/Apia", "UTC"}) {
        const std::string whole = compiledZone(name);
        const Ends ends(whole);
        ASSERT_LT(ends.abbreviations, whole.size()) << "the newer data follows";
        folder.write("Whole", whole);
        Timezone wholeZone(folder.path(), "Whole");
        const std::string clock = clockOf(wholeZone);
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            folder.write("Cut", std::string_view(whole).substr(0, length));
            const std::string message = ends.messageAt(length);
            const std::string error = folder.errorOf("Cut");
            ASSERT_EQ(error, message.empty() ? "" : message + folder.pathOf("Cut")) << name << ' ' << length;
            if (error.empty()) {
                Timezone zone(folder.path(), "Cut");
                ASSERT_EQ(clockOf(zone), clock) << name << ' ' << length;
            }
        }
    }
}

TEST(HostileZones, CountsWhoseBytesWrapRoundAt32BitsAreErrorsThatAllocateNothingForThem) {
    const ZoneFolder folder;
    // Times 4, 5 and 6 these are a few bytes beyond a multiple of 4 GiB.
    for (const std::uint32_t count : {0x40000000U, 0x33333334U, 0x2AAAAAABU, 0x80000001U, 0xFFFFFFFFU}) {
        folder.write("Transitions", easternClock().claimTransitions(count).bytes());
        folder.write("Types", easternClock().claimTypes(count).bytes());
        folder.write(
            "All",
            easternClock().claimTransitions(count).claimTypes(count).claimAbbreviationBytes(count).bytes());
        const AllocationWatch watch;
        EXPECT_EQ(folder.errorOf("Transitions"),
                  "Unable to read timezone data from file: " + folder.pathOf("Transitions"));
        EXPECT_EQ(folder.errorOf("Types"),
                  "Unable to read timezone type info from file: " + folder.pathOf("Types"));
        EXPECT_EQ(folder.errorOf("All"), "Unable to read timezone data from file: " + folder.pathOf("All"));
        EXPECT_LT(watch.largest(), 100000U);
    }
}

TEST(HostileZones, AbsoluteNameIsLookedForInsideTheFolder) {
    const ZoneFolder inside;
    const ZoneFolder outside;
    outside.write("Place", easternClock().bytes());
    const std::string name = outside.pathOf("Place");
    EXPECT_EQ(inside.errorOf(name), "Unable to open file: " + inside.path() + '/' + name);
    inside.write(name.substr(1), westernClock().bytes());
    Timezone zone(inside.path(), name);
    std::tm local{};
    TimezoneInfo info;
    zone.localTime(westernSummerBegins, &local, &info);
    EXPECT_EQ(info.utcOffset, -4 * 3600) << "the western clock lies inside";
}

TEST(HostileZones, NameThatLeadsOutIsNotEvenLookedFor) {
    // The file that the name leads to is there and is a good one.
    const ZoneFolder folder;
    folder.write("Inner/UTC", easternClock().bytes());
    folder.write("Outer", easternClock().bytes());
    const std::string inner = folder.pathOf("Inner");
    for (const std::string name : {"../Outer", "./../Outer", "Nowhere/../../Outer", "..//Outer", "UTC/..",
                                   "/../Outer", "../Inner/UTC"}) {
        try {
            const Timezone zone(inner, name);
            ADD_FAILURE() << name << " was loaded";
        } catch (const Timezone::Error &error) {
            EXPECT_EQ(error.what(), "Unable to open file: " + inner + '/' + name);
        }
    }
}

TEST(HostileZones, ConversionBesideABadTypeIndexTakesItForUtcOnBothSides) {
    for (const int index : {2, 127, 128, 255}) {
        Timezone zone = zoneOf(clockWithHoles(index));
        struct Row {
            std::int64_t instant;
            std::int32_t utcOffset;
            std::int64_t fold;
        };
        // An hour or two of difference reach over all of these short stretches.
        for (const Row &row :
             {Row{500, 3600, 3600}, Row{1500, 0, -3600}, Row{2500, 7200, 7200}, Row{3500, 0, -7200}}) {
            std::tm local{};
            TimezoneInfo info;
            zone.localTime(row.instant, &local, &info);
            EXPECT_EQ(info.utcOffset, row.utcOffset) << index << ' ' << row.instant;
            EXPECT_EQ(info.fold, row.fold) << index << ' ' << row.instant;
        }
    }
}

TEST(HostileZones, SearchBesideABadTypeIndexGivesAnInstantOfThatLocalTime) {
    for (const int index : {2, 127, 128, 255}) {
        Timezone zone = zoneOf(clockWithHoles(index));
        for (std::int64_t instant = -10000; instant < 20000; instant += 97) {
            std::tm local{};
            zone.localTime(instant, &local);
            for (const int flag : {-1, 0, 1}) {
                std::tm wanted = local;
                wanted.tm_isdst = flag;
                TimezoneInfo info;
                const std::int64_t found = zone.makeTime(wanted, &info);
                std::tm shown{};
                TimezoneInfo shownInfo;
                zone.localTime(found, &shown, &shownInfo);
                ASSERT_EQ(shownInfo.utcOffset, info.utcOffset) << index << ' ' << instant;
                ASSERT_NEAR(static_cast<double>(found), static_cast<double>(instant), 3 * 7200.0)
                    << index << ' ' << instant;
            }
        }
    }
}

TEST(HostileZones, AbbreviationIndexPastTheBlockOfARealFileGivesNoNameAndTheSameClock) {
    const ZoneFolder folder;
    const std::string whole = compiledZone("Europe/Berlin");
    const Ends ends(whole);
    folder.write("Whole", whole);
    Timezone wholeZone(folder.path(), "Whole");
    const std::string clock = clockOf(wholeZone);
    std::string bytes = whole;
    for (std::size_t type = ends.transitions; type < ends.types; type += 6) {
        bytes[type + 5] = '\xFF';
    }
    folder.write("Nameless", bytes);
    Timezone zone(folder.path(), "Nameless");
    EXPECT_EQ(clockOf(zone), clock);
    EXPECT_EQ(zone.currentAbbreviation(), "");
}
