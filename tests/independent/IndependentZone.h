#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A zone's rules, read from its compiled file byte by byte, to hold the programs' own reading against. Shares
// no code with it; the calendar is that of the C library.
class IndependentZone {
public:
    // Year, month from 1, day, hour, minute, second.
    using Fields = std::array<std::int64_t, 6>;
    struct Local {
        Fields fields{};
        std::int32_t offset = 0; // seconds east of UTC
    };

    // Throws std::runtime_error when `directory` has no such zone.
    IndependentZone(const std::string &directory, const std::string &name);

    Local localTime(std::int64_t utc);
    // UTC seconds of a local time; `offset` is set to the one that was found.
    std::int64_t utcOf(const Fields &local, std::int32_t &offset);
    bool isUnknown() const { return isUnknown_; }

private:
    struct Type {
        std::int32_t offset = 0;
        bool isSummer = false;
    };

    const Type &typeAt(std::int64_t utc);
    bool holds(std::size_t transition, std::int64_t utc) const;
    int compare(const Fields &local, std::int64_t utc, std::int32_t &offset);

    bool isUnknown_ = false;
    std::vector<std::int64_t> transitions_;
    std::vector<Type> types_;         // of each transition
    std::vector<Type> declaredTypes_; // as the file lists them
    Type none_;
    std::size_t last_ = 0;        // the transition found last
    std::int64_t correction_ = 0; // of the first guess
};
