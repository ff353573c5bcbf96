#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Text of data files.

inline std::string keyLines(std::string_view instrument, std::string_view zone = "UTC") {
    return "Instrument:\t" + std::string(instrument) + "\nTimezone:\t" + std::string(zone) + '\n';
}

inline std::string headerLine() {
    return "DATAH\tSECONDS\tNANOSECONDS\tCH4\n";
}

// One record a second, whose value is its place in the file.
inline std::string recordLines(std::uint32_t firstSecond, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "DATA\t" + std::to_string(firstSecond + static_cast<std::uint32_t>(i)) + "\t0\t" +
                std::to_string(i) + '\n';
    }
    return text;
}

// A file that is large by a few records: each has a remark of a kilobyte, and its place as its value.
inline std::string largeDataText(std::string_view instrument, std::uint32_t firstSecond, int records) {
    std::string text = keyLines(instrument) + "DATAH\tSECONDS\tREMARK\tCH4\n";
    const std::string remark = '\t' + std::string(1024, 'x') + '\t';
    for (int i = 0; i < records; ++i) {
        text += "DATA\t" + std::to_string(firstSecond + static_cast<std::uint32_t>(i)) + remark +
                std::to_string(i) + '\n';
    }
    return text;
}

inline std::string dataText(std::string_view instrument, std::uint32_t firstSecond, int records) {
    return keyLines(instrument) + headerLine() + recordLines(firstSecond, records);
}
