#include "time/Timezone.h"

#include "time/CalendarTime.h"
#include "time/InstantSearch.h"
#include "time/ZoneFile.h"

#include <limits>
#include <utility>

std::string zoneDirectory = "/usr/share/zoneinfo";

namespace {

// Restores the sign that was lost when the offset was widened.
std::int32_t signedOffset(const TimezoneType &type) {
    return static_cast<std::int32_t>(type.utcOffset);
}

// Local seconds of an instant; at the ends of the number range, where no year fits anyway, the range's end.
std::int64_t addOffset(std::int64_t utcSeconds, std::int32_t offset) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (offset > 0 && utcSeconds > Limits::max() - offset) {
        return Limits::max();
    }
    if (offset < 0 && utcSeconds < Limits::min() - offset) {
        return Limits::min();
    }
    return utcSeconds + offset;
}

void clearCalendarFields(std::tm &calendar) {
    calendar.tm_sec = calendar.tm_min = calendar.tm_hour = 0;
    calendar.tm_mday = calendar.tm_mon = calendar.tm_year = 0;
    calendar.tm_wday = calendar.tm_yday = 0;
}

// Rough on purpose: it is off by days, but by nearly the same amount for neighbouring times, so that the
// difference to the last result takes the next search close. Wraps at 32 bits.
std::int64_t naiveEstimate(const std::tm &local) {
    constexpr std::uint32_t secondsPerYear = 31557600; // 365.25 days
    constexpr std::uint32_t secondsPerMonth = 2628000; // a twelfth of 365 days
    const auto field = [](int value) { return static_cast<std::uint32_t>(value); };
    const std::uint32_t estimate = (field(local.tm_year) - 70) * secondsPerYear +
                                   field(local.tm_mon) * secondsPerMonth +
                                   (field(local.tm_mday) - 1) * 86400 + field(local.tm_hour) * 3600 +
                                   field(local.tm_min) * 60 + field(local.tm_sec);
    return static_cast<std::int32_t>(estimate);
}

} // namespace

Timezone::Timezone(std::string directory, const std::string &name)
    : directory_(std::move(directory)),
      name_(name),
      isUnknown_(name == "Unknown"),
      rules_(std::make_shared<const ZoneRules>(loadZone(directory_, name))) {}

Timezone::Timezone(const std::string &name) : Timezone(zoneDirectory, name) {}

std::tm *Timezone::localTime(std::int64_t utcSeconds, std::tm *local, TimezoneInfo *info) {
    if (local == nullptr) {
        return nullptr;
    }
    const TimezoneType &type = findType(utcSeconds);
    const std::int32_t offset = signedOffset(type);
    if (!breakDownUtc(addOffset(utcSeconds, offset), *local)) {
        clearCalendarFields(*local);
    }
    local->tm_isdst = type.isDst ? 1 : 0;
    if (info != nullptr) {
        info->isDst = type.isDst ? 1 : 0;
        info->utcOffset = offset;
        info->abbreviation = type.abbreviation.c_str();
        info->fold = foldAt(utcSeconds, offset);
    }
    return local;
}

std::int64_t Timezone::makeTime(std::tm &local, TimezoneInfo *info) {
    const std::int64_t estimate = naiveEstimate(local);
    InstantSearch search(*this, local);
    search.run(estimate - cachedOffset_);

    std::int64_t result = search.instant();
    std::tm found = search.calendar();
    TimezoneInfo details = search.info();
    if (details.fold != 0 && local.tm_isdst != -1 && local.tm_isdst != found.tm_isdst) {
        result += details.fold;
        localTime(result, &found, &details);
    }
    local.tm_isdst = found.tm_isdst;
    local.tm_wday = found.tm_wday;
    local.tm_yday = found.tm_yday;
    cachedOffset_ = estimate - result;
    if (info != nullptr) {
        *info = details;
    }
    return result;
}

std::string Timezone::currentAbbreviation() const {
    if (rules_->transitions.empty()) {
        return rules_->types.empty() ? std::string() : rules_->types.front().abbreviation;
    }
    return cachedIndex_ < rules_->transitions.size() ? rules_->typeAt(cachedIndex_).abbreviation
                                                     : std::string();
}

Timezone Timezone::fresh() const {
    Timezone copy = *this;
    copy.cachedIndex_ = 0;
    copy.cachedOffset_ = 0;
    return copy;
}

// Walks forward from the transition of the last lookup, or from the first one when time went back. The walk
// ends at the last transition when none fits, so a time before the first transition gets the last one's type:
// kept, for zones whose transitions all lie before 1970, such as Asia/Kolkata, get their present time that
// way.
const TimezoneType &Timezone::findType(std::int64_t utcSeconds) {
    const std::vector<std::int64_t> &transitions = rules_->transitions;
    const std::size_t count = transitions.size();
    if (count == 0) {
        return rules_->typeWithoutTransitions();
    }
    std::size_t k = cachedIndex_;
    if (k >= count || transitions[k] > utcSeconds) {
        k = 0;
    }
    while (k + 1 < count && !(transitions[k] <= utcSeconds && utcSeconds < transitions[k + 1])) {
        ++k;
    }
    cachedIndex_ = static_cast<std::uint32_t>(k);
    return rules_->typeAt(k);
}

// A neighbouring offset enters with its full width, not with its sign restored: beside a western offset the
// result says nothing. Kept, so that local times convert as they always have.
std::int64_t Timezone::foldAt(std::int64_t utcSeconds, std::int32_t offset) const {
    const std::vector<std::int64_t> &transitions = rules_->transitions;
    const std::size_t k = cachedIndex_;
    std::int64_t fold = 0;
    if (k > 0) {
        const std::int64_t back = rules_->typeAt(k - 1).utcOffset - offset;
        if (back > 0 && utcSeconds <= transitions[k] + back) {
            fold = -back;
        }
    }
    if (k + 1 < transitions.size()) {
        const std::int64_t ahead = offset - rules_->typeAt(k + 1).utcOffset;
        if (ahead > 0 && utcSeconds >= transitions[k + 1] - ahead) {
            fold = ahead;
        }
    }
    return fold;
}
