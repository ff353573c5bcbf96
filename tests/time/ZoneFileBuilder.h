#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Puts the bytes of a compiled zone file together, right or wrong.
class ZoneFileBuilder {
public:
    // From `instant` (its low 32 bits are written) on, the zone keeps the type of that index.
    ZoneFileBuilder &transition(std::int64_t instant, int type) {
        appendBigEndian(instants_, static_cast<std::uint32_t>(instant));
        typeIndexes_ += static_cast<char>(type);
        return *this;
    }

    ZoneFileBuilder &type(std::int32_t utcOffset, bool isDst, int abbreviationIndex) {
        appendBigEndian(types_, static_cast<std::uint32_t>(utcOffset));
        types_ += isDst ? '\1' : '\0';
        types_ += static_cast<char>(abbreviationIndex);
        return *this;
    }

    ZoneFileBuilder &abbreviations(std::string block) {
        abbreviations_ = std::move(block);
        return *this;
    }

    // What the header says instead of the true counts.
    ZoneFileBuilder &claimTransitions(std::uint32_t count) {
        claimedTransitions_ = count;
        return *this;
    }
    ZoneFileBuilder &claimTypes(std::uint32_t count) {
        claimedTypes_ = count;
        return *this;
    }
    ZoneFileBuilder &claimAbbreviationBytes(std::uint32_t count) {
        claimedAbbreviationBytes_ = count;
        return *this;
    }

    std::string bytes() const {
        std::string file = "TZif2" + std::string(27, '\0');
        appendBigEndian(file, claimed(claimedTransitions_, typeIndexes_.size()));
        appendBigEndian(file, claimed(claimedTypes_, types_.size() / 6));
        appendBigEndian(file, claimed(claimedAbbreviationBytes_, abbreviations_.size()));
        return file + instants_ + typeIndexes_ + types_ + abbreviations_;
    }

private:
    static void appendBigEndian(std::string &bytes, std::uint32_t number) {
        for (const unsigned shift : {24U, 16U, 8U, 0U}) {
            bytes += static_cast<char>(number >> shift & 0xFFU);
        }
    }

    static std::uint32_t claimed(std::int64_t claim, std::size_t count) {
        return claim >= 0 ? static_cast<std::uint32_t>(claim) : static_cast<std::uint32_t>(count);
    }

    std::string instants_;
    std::string typeIndexes_;
    std::string types_;
    std::string abbreviations_;
    std::int64_t claimedTransitions_ = -1;
    std::int64_t claimedTypes_ = -1;
    std::int64_t claimedAbbreviationBytes_ = -1;
};
