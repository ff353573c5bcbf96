#include "export/ExportChoices.h"

#include <algorithm>
#include <charconv>

namespace {

std::optional<std::uint32_t> numberFrom(std::string_view text) {
    std::uint32_t number = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number > TimeColumns::all) {
        return std::nullopt;
    }
    return number;
}

std::uint32_t flagOf(std::string_view option) {
    const auto *const found =
        std::find_if(timeColumnChoices.begin(), timeColumnChoices.end(),
                     [option](const TimeColumnChoice &choice) { return choice.option == option; });
    return found == timeColumnChoices.end() ? 0 : found->flag;
}

} // namespace

ExportFormat exportFormatOf(int fileTypeNumber) {
    const auto *const found =
        std::find_if(fileTypeChoices.begin(), fileTypeChoices.end(),
                     [fileTypeNumber](const FileTypeChoice &type) { return type.number == fileTypeNumber; });
    return found == fileTypeChoices.end() ? ExportFormat::text : found->format;
}

bool isSplitPeriod(std::int64_t seconds) {
    return std::any_of(splitChoices.begin(), splitChoices.end(),
                       [seconds](const SplitChoice &choice) { return choice.period == seconds; });
}

std::optional<std::uint32_t> timeColumnsFrom(std::string_view text) {
    if (const auto number = numberFrom(text)) {
        return number;
    }
    std::uint32_t flags = 0;
    for (bool isLast = false; !isLast;) {
        const auto comma = text.find(',');
        isLast = comma == std::string_view::npos;
        const std::uint32_t flag = flagOf(text.substr(0, comma));
        if (flag == 0) {
            return std::nullopt;
        }
        flags |= flag;
        text.remove_prefix(isLast ? text.size() : comma + 1);
    }
    return flags;
}
