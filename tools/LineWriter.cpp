#include "tools/LineWriter.h"

#include <array>
#include <charconv>
#include <cstring>
#include <numeric>

namespace {

constexpr std::size_t flushAt = 1U << 20U;
constexpr std::size_t numberRoom = 32; // the longest number and its tab

constexpr std::array<double, 9> scales{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};

// Digits of value / 10^decimals.
char *writeScaled(char *to, std::uint64_t value, unsigned decimals) {
    char *const first = to;
    to = std::to_chars(to, to + numberRoom, value).ptr;
    if (decimals == 0) {
        return to;
    }
    const auto digits = static_cast<unsigned>(to - first);
    if (digits <= decimals) {
        const unsigned padding = decimals + 1 - digits;
        std::memmove(first + padding, first, digits);
        std::memset(first, '0', padding);
        to += padding;
    }
    std::memmove(to - decimals + 1, to - decimals, decimals);
    *(to - decimals) = '.';
    return to + 1;
}

} // namespace

LineWriter::LineWriter(ByteSink &sink) : sink_(sink), block_(flushAt + (1U << 16U)) {}

void LineWriter::begin(std::string_view tag) {
    if (used_ >= flushAt) {
        flush();
    }
    lineStart_ = used_;
    append(tag);
}

void LineWriter::text(std::string_view field) {
    append("\t");
    append(field);
}

void LineWriter::integer(std::int64_t value) {
    makeRoom(numberRoom);
    char *to = at(used_);
    *to++ = '\t';
    advanceTo(std::to_chars(to, to + numberRoom - 1, value).ptr);
}

void LineWriter::fixed(double value, unsigned decimals) {
    makeRoom(numberRoom);
    char *to = at(used_);
    *to++ = '\t';
    const double scaled = value * scales[decimals];
    const bool negative = scaled <= -0.5; // never "-0.00"
    const double magnitude = scaled < 0 ? -scaled : scaled;
    auto rounded = static_cast<std::uint64_t>(magnitude);
    if (magnitude - static_cast<double>(rounded) >= 0.5) {
        ++rounded;
    }
    if (negative) {
        *to++ = '-';
    }
    advanceTo(writeScaled(to, rounded, decimals));
}

void LineWriter::textWithMilliseconds(std::string_view first, unsigned milliseconds) {
    text(first);
    makeRoom(3);
    char *to = at(used_);
    *to++ = static_cast<char>('0' + milliseconds / 100);
    *to++ = static_cast<char>('0' + milliseconds / 10 % 10);
    *to++ = static_cast<char>('0' + milliseconds % 10);
    advanceTo(to);
}

void LineWriter::end() {
    append("\n");
}

void LineWriter::endWithChecksum(bool damaged) {
    append("\t");
    const auto sum = std::accumulate(at(lineStart_), at(used_), 0U, [](unsigned total, char byte) {
        return total + static_cast<unsigned char>(byte);
    });
    makeRoom(numberRoom);
    char *to = at(used_);
    to = std::to_chars(to, to + numberRoom, (sum + (damaged ? 128 : 0)) & 0xffU).ptr;
    *to++ = '\n';
    advanceTo(to);
}

void LineWriter::line(std::string_view tag, std::string_view rest) {
    begin(tag);
    text(rest);
    end();
}

void LineWriter::flush() {
    sink_.write({block_.data(), used_});
    handedOver_ += used_;
    used_ = 0;
}

void LineWriter::append(std::string_view bytes) {
    makeRoom(bytes.size());
    std::memcpy(at(used_), bytes.data(), bytes.size());
    used_ += bytes.size();
}

void LineWriter::makeRoom(std::size_t count) {
    if (block_.size() - used_ < count) {
        block_.resize(used_ + count);
    }
}
