// Exports of the programs held against those of a second reader, byte for byte.

#include "independent/ComparedExports.h"
#include "independent/HostileDataFile.h"
#include "loading/support/ZipWriting.h"
#include "support/RunningCase.h"

#include <cstdlib>
#include <filesystem>

namespace {

constexpr std::array<std::int64_t, 6> splits{0, 1800, 3600, 7200, 14400, 86400};

// How many random files the test looks at: few in the everyday suite, many in the slow one.
std::uint64_t setting(const char *name, std::uint64_t standard) {
    const char *text = std::getenv(name);
    return text == nullptr ? standard : std::stoull(text);
}

std::vector<std::string> examples() {
    std::vector<std::string> paths;
    for (const auto &entry : std::filesystem::directory_iterator(FVQA_EXAMPLES_DIR)) {
        if (entry.path().extension() != ".md") {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// One to three files, plain or archives of a few members.
std::vector<std::string> writeHostileFiles(std::uint64_t seed, const ScratchFolder &folder) {
    RandomNumbers random(seed);
    std::vector<std::string> paths;
    for (std::uint64_t count = random.oneIn(3) ? 3 : 1; count > 0; --count) {
        HostileDataFile file(random.bits(), FVQA_ZONEINFO_DIR);
        const auto lines = [&random] {
            return static_cast<int>(random.oneIn(5) ? 4000 : random.between(1, 900));
        };
        const std::string stem = (random.oneIn(2) ? "AB-12-x" : "plain") + std::to_string(count);
        if (!random.oneIn(3)) {
            paths.push_back(folder.write(stem + ".data", file.source(lines())));
            continue;
        }
        std::vector<ZipEntry> members{{"site.metadata", "DATAH\tA\nDATA\t1\n"}};
        for (std::uint64_t i = 1 + random.below(3); i > 0; --i) {
            members.push_back({QString::number(i) + ".data", file.source(lines()),
                               random.oneIn(3) ? ZipEntry::Method::stored : ZipEntry::Method::deflated});
        }
        paths.push_back(folder.pathOf(stem + (random.oneIn(2) ? ".ghg" : ".ZIP")));
        writeZip(QString::fromStdString(paths.back()), members);
    }
    return paths;
}

void expectAllEqual(const ComparedExports &exports, const IndependentRequest &request) {
    EXPECT_TRUE(exports.areEqual(ExportFormat::text, request));
    EXPECT_TRUE(exports.areEqual(ExportFormat::tob1, request));
    EXPECT_TRUE(exports.areEqual(ExportFormat::diagnostics, request));
}

TEST(IndependentExport, ExamplesExportTheSameWithEverySetOfTimeColumns) {
    const ComparedExports exports({FVQA_EXAMPLES_DIR "/2019-06-01T120000_AIU-0412.ghg",
                                   FVQA_EXAMPLES_DIR "/QA330-2019-06-01T130000.data"});
    for (const auto &[instrument, tag] : {std::pair("AIU-0412", "DATA"), std::pair("QA330", "DATASTAT")}) {
        for (unsigned columns = 0; columns < 64; ++columns) {
            EXPECT_TRUE(exports.areEqual(ExportFormat::text, {instrument, tag, "flux.txt", columns, 0}));
        }
    }
}

TEST(IndependentExport, ExamplesExportTheSameInPiecesOfEveryPeriod) {
    const ComparedExports exports(examples());
    ASSERT_EQ(exports.recordCount(), 3U * 1800 + 3600 + 8600 + 180 - 1); // one has a wrong checksum
    for (const auto &[instrument, tag] : exports.kinds()) {
        for (const std::int64_t split : splits) {
            expectAllEqual(exports, {instrument, tag, "flux.x.txt", 63, split});
        }
    }
}

TEST(IndependentExport, HostileFilesExportTheSame) {
    const std::uint64_t first = setting("FVQA_FIRST_SEED", 1);
    std::size_t records = 0;
    for (std::uint64_t seed = first; seed < first + setting("FVQA_SEEDS", 12); ++seed) {
        const RunningCase running("FVQA_FIRST_SEED=" + std::to_string(seed) + " FVQA_SEEDS=1");
        SCOPED_TRACE(running.text());
        const ScratchFolder folder;
        const ComparedExports exports(writeHostileFiles(seed, folder));
        records += exports.recordCount();
        RandomNumbers random(seed);
        for (const auto &[instrument, tag] : exports.kinds()) {
            for (const std::int64_t split : {splits[0], splits[1 + random.below(5)]}) {
                const auto columns = static_cast<unsigned>(random.below(64));
                const std::string target = random.oneIn(4) ? "flux" : "a.b.txt";
                expectAllEqual(exports, {instrument, tag, target, columns, split});
            }
        }
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_GT(records, 1000U);
}

} // namespace
