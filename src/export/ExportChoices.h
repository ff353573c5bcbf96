#pragma once

#include "export/ExportRequest.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

// What there is to choose from when exporting, for the viewer's dialog and the companion's options.

struct FileTypeChoice {
    std::string_view label;
    std::string_view extension;
    ExportFormat format;
    int number; // by which the dialog hands the type on
};

inline constexpr std::array<FileTypeChoice, 3> fileTypeChoices{{
    {"TOB1 (.tob1)", ".tob1", ExportFormat::tob1, 1},
    {"Text (.txt)", ".txt", ExportFormat::text, 0},
    {"Diagnostics (.txt)", ".txt", ExportFormat::diagnostics, 2},
}};

// Any number that is no file type's means text.
ExportFormat exportFormatOf(int fileTypeNumber);

struct SplitChoice {
    std::string_view label;
    std::int32_t period; // s; 0 for no split
};

inline constexpr std::array<SplitChoice, 6> splitChoices{{
    {"None", 0},
    {"Half Hour", 1800},
    {"One Hour", 3600},
    {"Two Hours", 7200},
    {"Four Hours", 14400},
    {"Daily", 86400},
}};

bool isSplitPeriod(std::int64_t seconds);

struct TimeColumnChoice {
    std::string_view label;
    std::string_view option; // its name on a command line
    std::uint32_t flag;
};

inline constexpr std::array<TimeColumnChoice, 6> timeColumnChoices{{
    {"Seconds", "seconds", TimeColumns::seconds},
    {"Nanoseconds", "nanoseconds", TimeColumns::nanoseconds},
    {"Date", "date", TimeColumns::date},
    {"Time", "time", TimeColumns::time},
    {"Timestamp", "timestamp", TimeColumns::timestamp},
    {"Timestamp with UTC offset", "offset", TimeColumns::offset},
}};

// The flags of a comma list of options ("date,time"), or of one number ("12"); nothing for any other text.
std::optional<std::uint32_t> timeColumnsFrom(std::string_view text);
