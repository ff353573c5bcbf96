// Any bytes as a zone file, and any text as a zone's name: a message, or a clock that converts every time by
// the plain rules.

#include "FuzzCheck.h"
#include "FuzzInput.h"
#include "MemoryFile.h"
#include "time/Timezone.h"
#include "time/ZoneFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t headerSize = 44;
constexpr std::size_t longestName = 300;

std::uint64_t bigEndian(std::string_view bytes, std::size_t at) {
    std::uint64_t number = 0;
    for (const char c : bytes.substr(at, 4)) {
        number = number * 256 + static_cast<unsigned char>(c);
    }
    return number;
}

// What is wrong with the file, told from its length and its counts alone; empty when nothing is.
std::string expectedProblem(std::string_view file) {
    if (file.size() < headerSize || file.substr(0, 4) != "TZif") {
        return "Invalid timezone file: ";
    }
    const std::uint64_t typesAt = headerSize + 5 * bigEndian(file, 32);
    const std::uint64_t namesAt = typesAt + 6 * bigEndian(file, 36);
    if (file.size() < typesAt) {
        return "Unable to read timezone data from file: ";
    }
    if (file.size() < namesAt) {
        return "Unable to read timezone type info from file: ";
    }
    const bool hasNames = bigEndian(file, 40) > 1 && file.size() > namesAt && file[namesAt] != '\n';
    return hasNames ? "" : "Unable to read timezone abbreviations from file: ";
}

// The same lookup from the bytes of a file, kept as simple as the rules are.
class PlainClock {
public:
    explicit PlainClock(std::string_view file)
        : file_(file), transitions_(bigEndian(file, 32)), types_(bigEndian(file, 36)) {}

    std::size_t transitionCount() const { return transitions_; }
    std::int64_t transition(std::size_t k) const {
        return static_cast<std::int64_t>(bigEndian(file_, headerSize + 4 * k));
    }

    // From the transition of the last lookup on, or from the first one.
    std::size_t findTransition(std::int64_t utc) {
        if (last_ >= transitions_ || transition(last_) > utc) {
            last_ = 0;
        }
        while (last_ + 1 < transitions_ && !(transition(last_) <= utc && utc < transition(last_ + 1))) {
            ++last_;
        }
        return last_;
    }

    // Nothing for UTC without a name.
    std::optional<std::size_t> typeOf(std::size_t k) const {
        // A signed byte: the upper half lies before the first type.
        const std::size_t index = static_cast<unsigned char>(file_[headerSize + 4 * transitions_ + k]);
        return index < 128 && index < types_ ? std::optional<std::size_t>(index) : std::nullopt;
    }
    std::optional<std::size_t> typeWithoutTransitions() const {
        for (std::size_t type = 0; type < types_; ++type) {
            if (!isDst(type)) {
                return type;
            }
        }
        return types_ > 0 ? std::optional<std::size_t>(0) : std::nullopt;
    }
    std::optional<std::size_t> typeAt(std::int64_t utc) {
        return transitions_ > 0 ? typeOf(findTransition(utc)) : typeWithoutTransitions();
    }

    // Without the sign.
    std::int64_t wideOffset(std::optional<std::size_t> type) const {
        return type ? static_cast<std::int64_t>(bigEndian(file_, placeOf(*type))) : 0;
    }
    // Beside the transition of the last lookup, which was at `utc` and found `offset`.
    std::int64_t foldAt(std::int64_t utc, std::int32_t offset) const {
        std::int64_t fold = 0;
        if (last_ > 0) {
            const std::int64_t back = wideOffset(typeOf(last_ - 1)) - offset;
            fold = back > 0 && Wide{utc} - transition(last_) <= back ? -back : 0;
        }
        if (last_ + 1 < transitions_) {
            const std::int64_t ahead = offset - wideOffset(typeOf(last_ + 1));
            fold = ahead > 0 && transition(last_ + 1) - Wide{utc} <= ahead ? ahead : fold;
        }
        return fold;
    }
    bool isDst(std::optional<std::size_t> type) const { return type && file_[placeOf(*type) + 4] != 0; }
    std::string abbreviation(std::optional<std::size_t> type) const {
        if (!type) {
            return {};
        }
        const std::size_t at = static_cast<unsigned char>(file_[placeOf(*type) + 5]);
        std::string_view block = file_.substr(placeOf(types_), bigEndian(file_, 40) - 1);
        block = block.substr(0, block.find('\n'));
        const std::string_view rest = at < block.size() ? block.substr(at) : std::string_view();
        return std::string(rest.substr(0, rest.find('\0')));
    }

private:
    __extension__ using Wide = __int128; // differences of any two instants

    std::size_t placeOf(std::size_t type) const { return headerSize + 5 * transitions_ + 6 * type; }

    std::string_view file_;
    std::size_t transitions_;
    std::size_t types_;
    std::size_t last_ = 0;
};

bool isSameTime(const std::tm &a, const std::tm &b) {
    return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday &&
           a.tm_hour == b.tm_hour && a.tm_min == b.tm_min && a.tm_sec == b.tm_sec && a.tm_wday == b.tm_wday &&
           a.tm_yday == b.tm_yday;
}

void checkLookup(Timezone &zone, PlainClock &clock, std::int64_t utc) {
    std::tm local{};
    TimezoneInfo info;
    require(zone.localTime(utc, &local, &info) == &local, "a lookup fills its output");
    const auto type = clock.typeAt(utc);
    const auto offset = static_cast<std::int32_t>(clock.wideOffset(type));
    require(info.utcOffset == offset, "the offset is that of the type in force");
    require(info.isDst == (clock.isDst(type) ? 1 : 0) && local.tm_isdst == static_cast<int>(info.isDst),
            "so is the flag of daylight saving");
    require(info.abbreviation == clock.abbreviation(type), "and the abbreviation");
    require(info.fold == clock.foldAt(utc, offset), "and the way to the other instant of this local time");
    std::int64_t seconds = 0;
    std::tm expected{};
    if (!__builtin_add_overflow(utc, std::int64_t{offset}, &seconds) &&
        ::gmtime_r(&seconds, &expected) != nullptr) {
        require(isSameTime(local, expected), "local time is UTC and the offset");
    } else {
        require(isSameTime(local, std::tm{}), "a time whose year does not fit comes back zeroed");
    }
}

// Any fields give an instant, and those of an instant that the clock shows once give it back.
void checkSearch(Timezone &zone, std::tm wanted) {
    std::tm local = wanted;
    TimezoneInfo info;
    const std::int64_t instant = zone.makeTime(local, &info);
    std::tm shown{};
    TimezoneInfo shownInfo;
    zone.localTime(instant, &shown, &shownInfo);
    require(shownInfo.utcOffset == info.utcOffset, "what is told of the instant found is what it shows");
    require(shown.tm_wday == local.tm_wday && shown.tm_yday == local.tm_yday &&
                shown.tm_isdst == local.tm_isdst,
            "the fields written back are those of the instant found");
    require(local.tm_year == wanted.tm_year && local.tm_sec == wanted.tm_sec, "the others are left alone");
    zone.currentAbbreviation();
}

std::vector<std::int64_t> instantsFrom(FuzzInput &input, const PlainClock &clock) {
    std::vector<std::int64_t> instants{0, -1, 1572138000, std::numeric_limits<std::int64_t>::min(),
                                       std::numeric_limits<std::int64_t>::max()};
    for (std::size_t k = 0; k < std::min<std::size_t>(clock.transitionCount(), 40); ++k) {
        for (const std::int64_t beside : {-3601, -1, 0, 1, 1800, 3600}) {
            instants.push_back(clock.transition(k) + beside);
        }
    }
    while (!input.isUsedUp() && instants.size() < 300) {
        instants.push_back(static_cast<std::int64_t>(input.number(input.flag() ? 8 : 4)));
    }
    return instants;
}

void checkZone(std::string_view file, FuzzInput &input) {
    static const MemoryFile stored;
    stored.hold(file);
    const std::string expected = expectedProblem(file);
    std::istringstream stream{std::string(file)};
    try {
        readZoneFile(stream, stored.path());
        require(expected.empty(), "a damaged file gives a message");
    } catch (const Timezone::Error &error) {
        require(!expected.empty() && error.what() == expected + stored.path(),
                "the message says what is missing");
        return;
    }
    Timezone zone(MemoryFile::folder(), stored.name());
    PlainClock clock(file);
    const std::vector<std::int64_t> instants = instantsFrom(input, clock);
    for (const std::int64_t instant : instants) {
        checkLookup(zone, clock, instant);
    }
    for (std::size_t i = 0; i < instants.size(); ++i) {
        std::tm local{};
        zone.localTime(instants[i], &local);
        local.tm_isdst = static_cast<int>(i % 3) - 1;
        local.tm_sec += i % 7 == 0 ? static_cast<int>(instants[i]) / 2 : 0;
        checkSearch(zone, local);
    }
}

bool leadsOut(std::string_view name) {
    const std::string text = '/' + std::string(name) + '/';
    return text.find("/../") != std::string::npos || name.find('\0') != std::string_view::npos;
}

void checkName(const std::string &name) {
    std::string message;
    try {
        const Timezone zone(FVQA_ZONEINFO_DIR, name);
        require(!leadsOut(name) && !name.empty(), "a name leads nowhere but into the folder");
        require(zone.name() == name && zone.isUnknown() == (name == "Unknown"), "a zone keeps its name");
    } catch (const Timezone::Error &error) {
        message = error.what();
        std::string path = std::string(FVQA_ZONEINFO_DIR) + '/' + name;
        path.resize(std::min(path.find('\0'), path.size())); // where the text of an exception ends
        const bool isAboutName = message == "Zero length timezone string" ||
                                 message == "Unable to open file: " + path ||
                                 message == "Invalid timezone file: " + path;
        require(isAboutName, "a name that loads nothing gives its message");
    }
    require(!name.empty() || message == "Zero length timezone string", "no name has its own message");
}

} // namespace

// A first byte that is odd: a name. One that is even: two bytes of a length, a file of that length, and
// instants.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    if (input.flag()) {
        checkName(std::string(input.text(longestName)));
        return 0;
    }
    const std::size_t length = input.number(2);
    const std::string_view file = input.text(length);
    checkZone(file, input);
    return 0;
}
