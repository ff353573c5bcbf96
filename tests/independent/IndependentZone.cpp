#include "independent/IndependentZone.h"

#include "independent/IndependentBytes.h"

#include <ctime>
#include <filesystem>
#include <stdexcept>

namespace {

std::uint32_t bigEndian(const std::string &bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number * 256 + static_cast<unsigned char>(bytes.at(at + i));
    }
    return number;
}

std::string zoneFile(const std::string &directory, const std::string &name) {
    const std::filesystem::path path = directory + '/' + (name == "Unknown" ? "UTC" : name);
    for (const auto &part : std::filesystem::path(name)) {
        if (part == "..") {
            throw std::runtime_error("a zone outside the folder");
        }
    }
    if (name.empty() || name.find('\0') != std::string::npos || !std::filesystem::is_regular_file(path)) {
        throw std::runtime_error("no zone " + name);
    }
    return bytesOfFile(path);
}

} // namespace

IndependentZone::IndependentZone(const std::string &directory, const std::string &name) {
    const std::string bytes = zoneFile(directory, name);
    if (bytes.size() < 44 || bytes.compare(0, 4, "TZif") != 0) {
        throw std::runtime_error("not a zone " + name);
    }
    const std::size_t transitions = bigEndian(bytes, 32);
    const std::size_t types = bigEndian(bytes, 36);
    const std::size_t typesAt = 44 + 5 * transitions;
    for (std::size_t i = 0; i < types; ++i) {
        const std::size_t at = typesAt + 6 * i;
        declaredTypes_.push_back({static_cast<std::int32_t>(bigEndian(bytes, at)), bytes.at(at + 4) != '\0'});
    }
    for (std::size_t i = 0; i < transitions; ++i) {
        transitions_.push_back(bigEndian(bytes, 44 + 4 * i)); // without a sign
        const auto type = static_cast<unsigned char>(bytes.at(44 + 4 * transitions + i));
        types_.push_back(type < types ? declaredTypes_[type] : Type());
    }
    isUnknown_ = name == "Unknown";
}

bool IndependentZone::holds(std::size_t transition, std::int64_t utc) const {
    const std::size_t next = transition + 1;
    return transitions_[transition] <= utc && (next == transitions_.size() || utc < transitions_[next]);
}

const IndependentZone::Type &IndependentZone::typeAt(std::int64_t utc) {
    if (transitions_.empty()) {
        for (const Type &type : declaredTypes_) {
            if (!type.isSummer) {
                return type;
            }
        }
        return declaredTypes_.empty() ? none_ : declaredTypes_.front();
    }
    // Transitions are not sorted, as their sign is lost: which one is found depends on where the search
    // begins.
    if (transitions_[last_] > utc) {
        last_ = 0;
    }
    while (last_ + 1 < transitions_.size() && !holds(last_, utc)) {
        ++last_;
    }
    return types_[last_];
}

IndependentZone::Local IndependentZone::localTime(std::int64_t utc) {
    Local local;
    local.offset = typeAt(utc).offset;
    const std::time_t seconds = utc + local.offset;
    std::tm calendar{};
    if (gmtime_r(&seconds, &calendar) == nullptr) {
        calendar = {};
    }
    local.fields = {calendar.tm_year + 1900, calendar.tm_mon + 1, calendar.tm_mday,
                    calendar.tm_hour,        calendar.tm_min,     calendar.tm_sec};
    return local;
}

int IndependentZone::compare(const Fields &local, std::int64_t utc, std::int32_t &offset) {
    const Local found = localTime(utc);
    offset = found.offset;
    return local < found.fields ? -1 : local == found.fields ? 0 : 1;
}

std::int64_t IndependentZone::utcOf(const Fields &local, std::int32_t &offset) {
    const auto [year, month, day, hour, minute, second] = local;
    const auto estimate = static_cast<std::int32_t>(
        static_cast<std::uint32_t>((year - 1970) * 31557600 + (month - 1) * 2628000 + (day - 1) * 86400 +
                                   hour * 3600 + minute * 60 + second));
    std::int64_t low = estimate - correction_;
    std::int64_t found = low;
    const int first = compare(local, low, offset);
    if (first != 0) {
        // Widen [low, high] until the local time lies in it, then halve it.
        std::int64_t high = low + (first > 0 ? 3600 : 0);
        low -= first < 0 ? 3600 : 0;
        std::int64_t &moving = first < 0 ? low : high;
        std::int64_t &following = first < 0 ? high : low;
        int order = compare(local, moving, offset);
        for (std::int64_t step = 7200; order == first; step *= 2) {
            following = moving;
            moving += first * step;
            order = compare(local, moving, offset);
        }
        found = moving;
        while (order != 0 && high - low >= 2) {
            found = low + (high - low) / 2;
            order = compare(local, found, offset);
            (order < 0 ? high : low) = found;
        }
    }
    correction_ = estimate - found;
    return found;
}
