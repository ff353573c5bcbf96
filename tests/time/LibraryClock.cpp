#include "time/LibraryClock.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

std::int32_t signedNumberAt(const std::string &bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i) {
        number = number * 256 + static_cast<unsigned char>(bytes.at(i));
    }
    return static_cast<std::int32_t>(number);
}

} // namespace

LibraryClock::LibraryClock(const std::string &zoneFile) {
    std::ifstream file(zoneFile, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    const std::string bytes = content.str();
    const std::int32_t count = signedNumberAt(bytes, 32);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t instant = signedNumberAt(bytes, 44 + 4 * static_cast<std::size_t>(i));
        if (instant >= 0) {
            transitions_.push_back(instant);
        }
    }
    if (const char *const zone = std::getenv("TZ")) {
        previousZone_ = zone;
    }
    setenv("TZ", (":" + zoneFile).c_str(), 1);
    tzset();
}

LibraryClock::~LibraryClock() {
    if (previousZone_) {
        setenv("TZ", previousZone_->c_str(), 1);
    } else {
        unsetenv("TZ");
    }
    tzset();
}

std::tm LibraryClock::localTime(std::int64_t utcSeconds) const {
    const std::time_t instant = utcSeconds;
    std::tm fields{};
    if (localtime_r(&instant, &fields) == nullptr) {
        throw std::runtime_error("the C library cannot convert " + std::to_string(utcSeconds));
    }
    return fields;
}
