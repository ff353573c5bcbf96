#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

// Looks at generated text in the plainest way: what is right here is not computed by the code under test.

inline std::vector<std::string_view> splitAt(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

inline std::vector<std::string_view> linesWith(std::string_view text, std::string_view prefix) {
    std::vector<std::string_view> lines;
    for (const std::string_view line : splitAt(text, '\n')) {
        if (line.starts_with(prefix)) {
            lines.push_back(line);
        }
    }
    return lines;
}

// Whether the line's last field is the low byte of the sum of all bytes before it.
inline bool hasRightChecksum(std::string_view line) {
    const std::size_t digits = line.rfind('\t') + 1;
    unsigned sum = 0;
    for (const char byte : line.substr(0, digits)) {
        sum += static_cast<unsigned char>(byte);
    }
    return line.substr(digits) == std::to_string(sum % 256);
}

inline std::size_t wrongChecksums(const std::vector<std::string_view> &lines) {
    return static_cast<std::size_t>(std::count_if(
        lines.begin(), lines.end(), [](std::string_view line) { return !hasRightChecksum(line); }));
}

// The fields of one column, by the last header line of the tag.
inline std::vector<std::string_view> column(std::string_view text, const std::string &tag,
                                            std::string_view name) {
    const std::vector<std::string_view> headers = linesWith(text, tag + "H\t");
    std::vector<std::string_view> values;
    if (headers.empty()) {
        return values;
    }
    const std::vector<std::string_view> names = splitAt(headers.back(), '\t');
    const auto index = static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
    for (const std::string_view line : linesWith(text, tag + "\t")) {
        values.push_back(splitAt(line, '\t').at(index));
    }
    return values;
}

inline std::vector<long> integers(const std::vector<std::string_view> &fields) {
    std::vector<long> numbers;
    numbers.reserve(fields.size());
    for (const std::string_view field : fields) {
        numbers.push_back(std::atol(std::string(field).c_str()));
    }
    return numbers;
}
