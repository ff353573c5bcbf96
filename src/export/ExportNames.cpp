#include "export/ExportNames.h"

#include "export/DecimalText.h"

#include <QString>

#include <array>

namespace {

constexpr std::int32_t secondsPerDay = 86400;

std::string joined(const TargetParts &parts, std::string_view between) {
    std::string name(parts.stem);
    return name.append(between).append(parts.extension);
}

// The folder of a path with the separator behind it. One that stands in the first two places is taken for no
// folder: names have always been proposed so.
std::string_view folderOf(std::string_view path) {
    auto separator = path.rfind('/');
    if (separator == std::string_view::npos) {
        separator = path.rfind('\\');
    }
    const bool hasFolder = separator != std::string_view::npos && separator >= 2;
    return hasFolder ? path.substr(0, separator + 1) : std::string_view();
}

} // namespace

std::string withExtension(std::string name, std::string_view extension) {
    if (!name.ends_with(extension)) {
        name += extension;
    }
    return name;
}

std::string withExtensionChanged(std::string name, std::string_view before, std::string_view after) {
    if (name.ends_with(before)) {
        name.resize(name.size() - before.size());
    }
    return withExtension(std::move(name), after);
}

std::string proposedName(std::string_view item, std::string_view currentName, std::string_view extension) {
    const QString text = QString::fromUtf8(item.data(), static_cast<int>(item.size()));
    const std::string name = text.toLower().replace(QLatin1Char(':'), QLatin1Char('-')).toStdString();
    return withExtension(std::string(folderOf(currentName)) + name, extension);
}

TargetParts splitTarget(std::string_view target) {
    const auto point = target.rfind('.');
    return point == std::string_view::npos ? TargetParts{target, {}}
                                           : TargetParts{target.substr(0, point), target.substr(point)};
}

std::string pieceName(std::string_view target, const RecordStamp &first, std::int32_t splitPeriod) {
    std::array<char, 80> text{};
    char *out = text.data();
    *out++ = '-';
    out = writeDecimal(out, first.year, 4);
    *out++ = '-';
    out = writeDecimal(out, first.month, 2);
    *out++ = '-';
    out = writeDecimal(out, first.day, 2);
    if (splitPeriod < secondsPerDay) {
        *out++ = 'T';
        out = writeDecimal(out, first.hour, 2);
        out = writeDecimal(out, first.minute, 2);
    }
    return joined(splitTarget(target), {text.data(), static_cast<std::size_t>(out - text.data())});
}

std::string numberedName(std::string_view name, unsigned number) {
    return number < 2 ? std::string(name) : joined(splitTarget(name), '-' + std::to_string(number));
}

std::uint64_t pieceEnd(std::uint32_t utcSeconds, std::int32_t splitPeriod) {
    // Wider than a time, so that the last piece of the range does not wrap round.
    const auto period = static_cast<std::uint64_t>(splitPeriod);
    return (utcSeconds / period + 1) * period;
}
