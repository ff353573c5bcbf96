// The example recordings after a power failure, a bad disk or a bad copy. Every case is chosen by a seed; a
// failure names it, and FVQA_DAMAGE_SEED=... runs it alone.

#include "damage/Damage.h"
#include "damage/DataFileRules.h"
#include "damage/ExampleFiles.h"
#include "damage/MemoryFolder.h"
#include "support/RunningCase.h"
#include "support/SanitizerBuild.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr std::array exampleNames{"QA330-2019-06-01T130000.data", "AIU-0412-2019-06-01T133000.data",
                                  "2019-06-01T120000_AIU-0412.ghg", "2019-06-01T123000_AIU-0412.ghg",
                                  "2019-06-01T130000_AIU-0412.ghg"};

// Damage to a line knows nothing of the lines far away, so the first lines of an example stand for all of
// them, some minutes of records; a thousand seeds of the whole would take hours under a sanitizer.
constexpr std::size_t linesLength = std::size_t{isSanitizerBuild ? 16 : 32} * 1024;

ExampleFile shortened(ExampleFile example) {
    if (!example.isArchive()) {
        example.bytes = firstLines(example.bytes, linesLength);
        return example;
    }
    for (ZipEntry &member : example.members) {
        member.bytes = firstLines(member.bytes, linesLength);
    }
    example.bytes = packed(example.members);
    return example;
}

std::size_t unpackedLength(const ExampleFile &example, const std::string &bytes) {
    std::size_t length = bytes.size();
    for (const ZipEntry &member : example.members) {
        length += member.bytes.size();
    }
    return length;
}

class DamagedDataFile : public testing::TestWithParam<const char *> {
protected:
    // Gives the file these bytes, checks it and returns its number of records.
    std::size_t check(const std::string &bytes, RandomNumbers &random) const {
        return DataFileRules::check(folder_.write(example_.name, bytes), unpackedLength(example_, bytes),
                                    random);
    }

    MemoryFolder folder_;
    ExampleFile example_ = exampleFile(GetParam());
};

std::string testName(const testing::TestParamInfo<const char *> &example) {
    std::string name = example.param;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }, '_');
    return name;
}

} // namespace

TEST_P(DamagedDataFile, WithOneByteInAHundredChangedIsReadPlottedAndExportedByTheRules) {
    example_ = shortened(example_);
    RandomNumbers none(0);
    ASSERT_GT(check(example_.bytes, none), 10U);
    std::size_t records = 0;
    std::size_t recordsOfGoodArchives = 0;
    const auto seeds = damageSeeds();
    for (const std::uint64_t seed : seeds) {
        const RunningCase running("FVQA_DAMAGE_SEED=" + std::to_string(seed));
        SCOPED_TRACE(running.text());
        RandomNumbers random(seed);
        // So much damage leaves few records: some files have less.
        const std::uint64_t bytesPerChange = seed % 4 == 0 ? 1000 : 100;
        if (example_.isArchive() && seed % 2 == 0) {
            // Behind a good check sum, so that the damage gets through to the records.
            std::vector<ZipEntry> members = example_.members;
            for (ZipEntry &member : members) {
                member.bytes = withChangedBytes(member.bytes, random, bytesPerChange);
            }
            recordsOfGoodArchives += check(packed(members), random);
        } else {
            records += check(withChangedBytes(example_.bytes, random, bytesPerChange), random);
        }
        ASSERT_FALSE(HasFailure());
    }
    if (seeds.size() >= fewSeeds) {
        // Of an archive whose own bytes are changed nothing may be left.
        EXPECT_GT(example_.isArchive() ? recordsOfGoodArchives : records, 0U);
    }
}

TEST_P(DamagedDataFile, JoinedWithAnotherIsReadPlottedAndExportedByTheRules) {
    std::vector<ExampleFile> others;
    for (const char *const name : exampleNames) {
        others.push_back(shortened(exampleFile(name)));
    }
    example_ = shortened(example_);
    std::size_t records = 0;
    std::size_t recordsOfGoodArchives = 0;
    const auto seeds = damageSeeds();
    for (const std::uint64_t seed : seeds) {
        const RunningCase running("FVQA_DAMAGE_SEED=" + std::to_string(seed));
        SCOPED_TRACE(running.text());
        RandomNumbers random(seed);
        const ExampleFile &other = random.pick(others);
        if (example_.isArchive() && other.isArchive() && seed % 2 == 0) {
            // Two halves of recordings in one good archive.
            std::vector<ZipEntry> members = example_.members;
            members.front().bytes = joined(members.front().bytes, other.members.front().bytes, random);
            recordsOfGoodArchives += check(packed(members), random);
        } else {
            records += check(joined(example_.bytes, other.bytes, random), random);
        }
        ASSERT_FALSE(HasFailure());
    }
    if (seeds.size() >= fewSeeds) {
        // Of an archive that is joined with a plain file no directory is left.
        EXPECT_GT(example_.isArchive() ? recordsOfGoodArchives : records, 0U);
    }
}

// The recordings as they lie in the folder, archives by their own bytes. One byte in a hundred leaves nothing
// of a recording so long, so some have less damage.
TEST_P(DamagedDataFile, OfFullLengthIsReadPlottedAndExportedByTheRules) {
    constexpr std::array<std::uint64_t, 4> bytesPerChange{1'000'000, 10'000, 1000, 100};
    const std::vector<std::uint64_t> few{4, 5, 6, 7, 9}; // a join, and damage of every degree
    std::size_t records = 0;
    const auto seeds = isThoroughRun() ? damageSeeds() : few;
    for (const std::uint64_t seed : seeds) {
        const RunningCase running("FVQA_DAMAGE_SEED=" + std::to_string(seed));
        SCOPED_TRACE(running.text());
        RandomNumbers random(seed);
        if (seed % 5 == 0) {
            const ExampleFile other = exampleFile(random.pick(exampleNames));
            records += check(joined(example_.bytes, other.bytes, random), random);
        } else {
            records += check(withChangedBytes(example_.bytes, random, bytesPerChange[seed % 4]), random);
        }
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(records, 0U);
}

TEST_P(DamagedDataFile, CutAtAnyByteIsReadPlottedAndExportedByTheRules) {
    constexpr std::size_t step = 997;
    const std::string whole = example_.bytes;
    // Every cut of the whole recording, but of the lines before it only the first and the last ones: see
    // above.
    const std::string first = firstLines(whole, 4096);
    std::size_t records = 0;
    const std::size_t stride = isThoroughRun() ? step : whole.size() / 8 / step * step;
    for (std::size_t cut = 0; cut <= whole.size(); cut += stride) {
        const RunningCase running(example_.name + " cut at byte " + std::to_string(cut));
        SCOPED_TRACE(running.text());
        RandomNumbers random(cut);
        std::string bytes = whole.substr(0, cut);
        if (!example_.isArchive() && cut > linesLength + first.size()) {
            bytes = first + bytes.substr(bytes.find('\n', cut - linesLength) + 1);
        }
        records += check(bytes, random);
        ASSERT_FALSE(HasFailure());
    }
    // A cut archive has lost its directory.
    EXPECT_EQ(records > 0, !example_.isArchive());
}

INSTANTIATE_TEST_SUITE_P(Examples, DamagedDataFile, testing::ValuesIn(exampleNames), testName);
