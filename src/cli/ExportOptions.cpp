#include "cli/ExportOptions.h"

#include "cli/OptionValues.h"
#include "export/ExportChoices.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::array<std::pair<std::string_view, ExportFormat>, 3> formats{{
    {"text", ExportFormat::text},
    {"tob1", ExportFormat::tob1},
    {"diagnostics", ExportFormat::diagnostics},
}};

[[noreturn]] void refuse(std::string_view takes, std::string_view value) {
    throw UsageError(std::string(takes) + ", not " + quoted(value));
}

} // namespace

void setExportData(ExportWish &wish, std::string_view value) {
    if (!wish.instrument.empty() || !wish.tag.empty()) {
        throw UsageError("--data may be given only once");
    }
    const auto colon = value.find(':');
    if (colon == std::string_view::npos || value.size() == 1) {
        refuse("--data takes INSTRUMENT:TAG", value);
    }
    wish.instrument = value.substr(0, colon);
    wish.tag = value.substr(colon + 1);
}

void setExportFormat(ExportWish &wish, std::string_view value) {
    const auto *const found =
        std::find_if(formats.begin(), formats.end(), [value](const auto &row) { return row.first == value; });
    if (found == formats.end()) {
        refuse("--format takes text, tob1 or diagnostics", value);
    }
    wish.format = found->second;
    wish.request.format = found->second;
}

void setExportOutput(ExportWish &wish, std::string_view value) {
    if (value.empty()) {
        throw UsageError("--output takes a path, not an empty text");
    }
    wish.request.targetName = value;
}

void setExportTimeColumns(ExportWish &wish, std::string_view value) {
    const auto columns = timeColumnsFrom(value);
    if (!columns) {
        refuse("--time-columns takes a number from 0 to 63, or a comma list of seconds, nanoseconds, date, "
               "time, timestamp, offset",
               value);
    }
    wish.request.timeColumns = *columns;
}

void setExportSplit(ExportWish &wish, std::string_view value) {
    const auto period = numberFrom<std::int32_t>(value);
    if (!period || !isSplitPeriod(*period)) {
        refuse("--split takes 0, 1800, 3600, 7200, 14400 or 86400", value);
    }
    wish.request.splitPeriod = *period;
}

void requireWholeExport(const ExportWish &wish) {
    if (wish.instrument.empty() && wish.tag.empty()) {
        throw UsageError("export needs --data INSTRUMENT:TAG");
    }
    if (!wish.format) {
        throw UsageError("export needs --format text, tob1 or diagnostics");
    }
    if (wish.request.targetName.empty()) {
        throw UsageError("export needs --output PATH");
    }
}
