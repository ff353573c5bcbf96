#include "time/Timezone.h"
#include "time/ZoneFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace std::string_literals;

namespace {

ZoneFileBuilder fixedClock(std::int32_t utcOffset, const std::string &abbreviation) {
    return ZoneFileBuilder().type(utcOffset, false, 0).abbreviations(abbreviation + '\0');
}

// Points `zoneDirectory` elsewhere while it lives.
class OtherZoneDirectory {
public:
    explicit OtherZoneDirectory(const std::string &path) { zoneDirectory = path; }
    ~OtherZoneDirectory() { zoneDirectory = previous_; }
    OtherZoneDirectory(const OtherZoneDirectory &) = delete;
    OtherZoneDirectory &operator=(const OtherZoneDirectory &) = delete;

private:
    std::string previous_ = zoneDirectory;
};

} // namespace

TEST(ZoneChoice, UnknownLoadsUtcAndStaysUnknown) {
    const ZoneFolder folder;
    folder.write("UTC", fixedClock(0, "from UTC").bytes());
    folder.write("Unknown", fixedClock(0, "from Unknown").bytes());
    const Timezone zone(folder.path(), "Unknown");
    EXPECT_EQ(zone.currentAbbreviation(), "from UTC");
    EXPECT_EQ(zone.name(), "Unknown");
    EXPECT_TRUE(zone.isUnknown());
}

TEST(ZoneChoice, ZoneNamedUtcIsKnown) {
    const ZoneFolder folder;
    folder.write("UTC", fixedClock(0, "UTC").bytes());
    const Timezone zone(folder.path(), "UTC");
    EXPECT_EQ(zone.name(), "UTC");
    EXPECT_FALSE(zone.isUnknown());
}

TEST(ZoneChoice, MissingUtcIsNamedInTheErrorOfUnknown) {
    const ZoneFolder folder;
    EXPECT_EQ(folder.errorOf("Unknown"), "Unable to open file: " + folder.pathOf("UTC"));
}

TEST(ZoneChoice, EmptyNameThrowsBeforeAnyFileAccess) {
    // The folder itself exists: any access would complain of it.
    const ZoneFolder folder;
    EXPECT_EQ(folder.errorOf(""), "Zero length timezone string");
}

TEST(ZoneChoice, ZoneDirectoryIsTheSystemsUntilTheProgramSetsIt) {
    EXPECT_EQ(zoneDirectory, "/usr/share/zoneinfo");
}

TEST(ZoneChoice, ZoneWithoutAFolderComesFromTheZoneDirectoryOfThatMoment) {
    const ZoneFolder first;
    const ZoneFolder second;
    first.write("Area/Place", fixedClock(0, "first").bytes());
    second.write("Area/Place", fixedClock(0, "second").bytes());
    const OtherZoneDirectory other(first.path());
    EXPECT_EQ(Timezone("Area/Place").currentAbbreviation(), "first");
    zoneDirectory = second.path();
    EXPECT_EQ(Timezone("Area/Place").currentAbbreviation(), "second");
}

TEST(ZoneChoice, FileThatCannotBeOpenedIsNamed) {
    const ZoneFolder folder;
    folder.write("UTC", fixedClock(0, "UTC").bytes());
    for (const std::string &name :
         {"Nowhere"s, "Area/Place"s, "UTC/"s, "UTC/Place"s, std::string(5000, 'x')}) {
        EXPECT_EQ(folder.errorOf(name), "Unable to open file: " + folder.pathOf(name));
    }
}

TEST(ZoneChoice, FolderIsAnInvalidZoneFile) {
    const ZoneFolder folder;
    folder.write("Area/Place", fixedClock(0, "UTC").bytes());
    for (const std::string name : {"Area", "Area/", ".", "/"}) {
        EXPECT_EQ(folder.errorOf(name), "Invalid timezone file: " + folder.pathOf(name));
    }
}

TEST(ZoneChoice, PipeIsNotOpenedAndSoCannotHang) {
    const ZoneFolder folder;
    ASSERT_EQ(mkfifo(folder.pathOf("Pipe").c_str(), 0600), 0);
    EXPECT_EQ(folder.errorOf("Pipe"), "Unable to open file: " + folder.pathOf("Pipe"));
}

TEST(ZoneChoice, LinkToADeviceOrToNothingIsNotOpened) {
    const ZoneFolder folder;
    std::filesystem::create_symlink("/dev/zero", folder.pathOf("Device"));
    std::filesystem::create_symlink("Nowhere", folder.pathOf("Dangling"));
    std::filesystem::create_symlink("Circle", folder.pathOf("Circle"));
    for (const std::string name : {"Device", "Dangling", "Circle"}) {
        EXPECT_EQ(folder.errorOf(name), "Unable to open file: " + folder.pathOf(name));
    }
}

TEST(ZoneChoice, LinkToAZoneFileIsFollowed) {
    const ZoneFolder folder;
    folder.write("Area/Place", fixedClock(0, "UTC").bytes());
    std::filesystem::create_symlink("Area/Place", folder.pathOf("Alias"));
    EXPECT_EQ(folder.errorOf("Alias"), "");
}

TEST(ZoneChoice, NameCannotLeadOutOfTheFolder) {
    const ZoneFolder folder;
    folder.write("UTC", fixedClock(0, "UTC").bytes());
    folder.write("Area/Place", fixedClock(0, "UTC").bytes());
    for (const std::string name : {"..", "../UTC", "Area/../UTC", "Area/..", "Area//..//UTC", "/../UTC"}) {
        EXPECT_EQ(folder.errorOf(name), "Unable to open file: " + folder.pathOf(name));
    }
    for (const std::string name : {"./UTC", "/UTC", "Area/./Place", "Area//Place"}) {
        EXPECT_EQ(folder.errorOf(name), "") << name;
    }
}

TEST(ZoneChoice, NameMayContainTwoDots) {
    const ZoneFolder folder;
    for (const std::string name : {"..UTC", "UTC..", "A..B/..C", "..."}) {
        folder.write(name, fixedClock(0, "UTC").bytes());
        EXPECT_EQ(folder.errorOf(name), "") << name;
    }
}

TEST(ZoneChoice, NulByteInTheNameDoesNotCutThePath) {
    const ZoneFolder folder;
    folder.write("UTC", fixedClock(0, "UTC").bytes());
    EXPECT_EQ(folder.errorOf("UTC\0.data"s), "Unable to open file: " + folder.pathOf("UTC"));
    EXPECT_EQ(folder.errorOf("\0"s), "Unable to open file: " + folder.pathOf(""));
}
