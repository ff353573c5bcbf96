#pragma once

#include <cstddef>
#include <span>

// Room that writeGeneral needs; more than the longest number takes.
inline constexpr std::size_t generalNumberRoom = 24;

// Writes `value` as a stream in its default format and the classic locale does (six significant digits, fixed
// or exponent notation), but "nan" whatever the sign, and returns the end. Numbers that once were in single
// precision are written several times faster than others.
char *writeGeneral(char *out, double value);

// Writes each value as writeGeneral() does and a tab behind it, eight at a time where the processor has
// vectors of 256 bits and vectorLevel() allows it. Returns the end; needs generalNumberRoom for each value.
char *writeGeneralFields(char *out, std::span<const double> values);
