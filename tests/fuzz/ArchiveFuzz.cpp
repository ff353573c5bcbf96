// Any bytes as an archive: its list holds together, its members give the same lines by whatever way they are
// opened, and what was loaded can be read again.

#include "FuzzCheck.h"
#include "FuzzFiles.h"
#include "FuzzInput.h"
#include "MemoryFile.h"
#include "data/RecordCursor.h"
#include "loading/FileLoading.h"
#include "loading/lines/Archive.h"
#include "loading/support/ZipWriting.h"
#include "support/CapturedStandardError.h"
#include "support/LoadedSource.h"
#include "support/ScratchFolder.h"

#include <quazip.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t mostMembersLookedAt = 4;

// An archive by its name, whose bytes are in memory.
class StoredArchive {
public:
    StoredArchive() : path_(folder_.pathOf("fuzz.ghg")) {
        std::filesystem::create_symlink(file_.path(), path_);
    }

    void hold(std::string_view bytes) const { file_.hold(bytes); }
    QString path() const { return QString::fromStdString(path_); }

private:
    ScratchFolder folder_;
    MemoryFile file_;
    std::string path_;
};

// Members with claims of their own, so that an input need not hit upon the format by chance.
std::string builtArchive(FuzzInput &input) {
    std::vector<RawZipEntry> entries(input.below(5));
    for (RawZipEntry &entry : entries) {
        entry.name = input.text(input.below(40));
        entry.bytes = input.text(input.number(2) % 2000);
        const bool isHonest = !input.flag();
        entry.declaredSize = isHonest ? entry.bytes.size() : input.number(input.below(9));
        entry.crc = isHonest ? crcOf(entry.bytes) : static_cast<std::uint32_t>(input.number(4));
    }
    std::string bytes = rawZip(entries);
    while (!input.isUsedUp()) {
        const std::size_t at = input.number(2) % bytes.size();
        bytes[at] = static_cast<char>(input.byte());
    }
    return bytes;
}

struct Reading {
    bool isOpen = false;
    std::vector<std::string> lines;
    QString problem;
};

Reading finished(ChunkLineReader &reader, bool isOpen) {
    Reading reading;
    reading.isOpen = isOpen;
    while (isOpen && reader.nextLine()) {
        require(reader.line().size() <= static_cast<std::size_t>(ChunkLineReader::maximumLineLength) &&
                    reader.line().find('\n') == std::string_view::npos,
                "a line is a line");
        reading.lines.emplace_back(reader.line());
    }
    reader.close();
    reading.problem = reader.problem();
    return reading;
}

void checkMembers(const QString &path, const MemberList &list) {
    qint64 total = 0;
    for (const ArchiveMember &member : list.members) {
        require(member.size >= 0, "no member is smaller than nothing");
        require(!member.name.endsWith(QLatin1String(".metadata"), Qt::CaseInsensitive),
                "settings of the site are no data");
        total += member.size;
    }
    require(total == list.totalSize, "the total is that of the members");
    QuaZip archive(path);
    archive.open(QuaZip::mdUnzip);
    for (std::size_t i = 0; i < std::min(list.members.size(), mostMembersLookedAt); ++i) {
        const QString &name = list.members[i].name;
        if (name.isEmpty()) {
            continue; // the archive itself is meant
        }
        ChunkLineReader alone;
        ChunkLineReader together;
        const Reading first = finished(alone, alone.open(path, name));
        const Reading second = finished(together, together.openMember(archive, name));
        require(first.isOpen == second.isOpen && first.lines == second.lines &&
                    first.problem == second.problem,
                "a member is the same however it is opened");
        require(first.isOpen || !first.problem.isEmpty(), "why a member cannot be opened is told");
    }
}

void checkLoading(const QString &path) {
    const std::atomic<bool> cancelled = false;
    DataSet source(path.toStdString());
    int last = -1;
    const LoadReport report = loadFile(path, source, cancelled, [&last](int percent, qint64) {
        require(percent >= 0 && percent <= 100 && percent > last, "progress grows");
        last = percent;
    });
    require(last == 100, "a load comes to its end");
    const auto &fragments = source.fragments();
    const auto records = std::accumulate(
        fragments.begin(), fragments.end(), std::uint64_t{0},
        [](std::uint64_t sum, const auto &fragment) { return sum + fragment->recordCount(); });
    require(records > 0 || !report.problem.isEmpty() || !report.remark.isEmpty(),
            "why there is no record is told");
    for (const auto &fragment : fragments) {
        if (fragment->valueCount() > 0) {
            require(readAgain(*fragment).size() == fragment->recordCount(),
                    "as many records are read again as were loaded");
        }
    }
}

} // namespace

// A first byte that is odd: what an archive is built from. One that is even: an archive.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    prepareForFiles();
    const CapturedStandardError quiet;
    static const StoredArchive stored;
    FuzzInput input(bytes, size);
    if (input.flag()) {
        stored.hold(builtArchive(input));
    } else {
        stored.hold(input.rest());
    }
    checkMembers(stored.path(), listArchive(stored.path()));
    checkLoading(stored.path());
    return 0;
}
