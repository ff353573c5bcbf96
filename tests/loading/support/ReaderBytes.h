#pragma once

#include "loading/lines/ChunkLineReader.h"
#include "loading/support/PiecewiseDevice.h"

#include <memory>
#include <random>
#include <string>
#include <string_view>

// Bytes for a line reader, and their opening.

inline constexpr std::size_t piece = 8'388'608; // read at a time
inline constexpr std::size_t limit = 1'048'576; // of a line

inline const PiecewiseDevice::Behaviour randomAccess{};
inline const PiecewiseDevice::Behaviour sequential{.isSequential = true};

inline bool openBytes(ChunkLineReader &reader, std::string_view bytes,
                      PiecewiseDevice::Behaviour behaviour = {}, std::size_t startOffset = 0) {
    return reader.openDevice(std::make_unique<PiecewiseDevice>(bytes, behaviour),
                             static_cast<qint64>(startOffset));
}

// Lines of `length` bytes, the line feed included, until there are `total` bytes; the last may be longer.
inline std::string filler(std::size_t total, std::size_t length = 1000) {
    std::string text;
    text.reserve(total + length);
    while (text.size() + 2 * length <= total) {
        text.append(length - 1, static_cast<char>('a' + text.size() / length % 26)).push_back('\n');
    }
    if (text.size() < total) {
        text.append(total - text.size() - 1, 'z').push_back('\n');
    }
    return text;
}

// Lines of many lengths up to some MiB, whose ends lie thick round the ends of the pieces that are read.
std::string clusteredLines(std::mt19937 &random);
