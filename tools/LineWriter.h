#pragma once

#include "tools/ByteSink.h"

#include <cstdint>
#include <string_view>
#include <vector>

// Builds tab-separated lines in one block of memory and hands the block on when it is full.
//
// A line is begin(tag), then fields, then end() or endWithChecksum(). Every field is preceded by its tab.
class LineWriter {
public:
    explicit LineWriter(ByteSink &sink);

    void begin(std::string_view tag);
    void text(std::string_view field);
    void integer(std::int64_t value);
    // Rounded half away from zero to `decimals` (0 to 8) places, without exponent. The rounded number must
    // fit 18 digits.
    void fixed(double value, unsigned decimals);
    // A field of `first` and three digits of `milliseconds`.
    void textWithMilliseconds(std::string_view first, unsigned milliseconds);
    void end();
    // The analyser's checksum as the last field: the low byte of the sum of all bytes of the line before it.
    // A damaged one fits neither that sum nor the sum without the last tab.
    void endWithChecksum(bool damaged);

    // A line of its own, as it stands.
    void line(std::string_view tag, std::string_view rest);

    // Bytes of all finished and begun lines.
    std::uint64_t bytes() const { return handedOver_ + used_; }
    void flush();

private:
    void append(std::string_view bytes);
    void makeRoom(std::size_t count);
    char *at(std::size_t offset) { return block_.data() + offset; }
    void advanceTo(const char *position) { used_ = static_cast<std::size_t>(position - block_.data()); }

    ByteSink &sink_;
    std::vector<char> block_;
    std::size_t used_ = 0;
    std::size_t lineStart_ = 0;
    std::uint64_t handedOver_ = 0;
};
