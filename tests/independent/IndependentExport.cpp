#include "independent/IndependentExport.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <locale.h>
#include <stdexcept>

namespace {

using Texts = std::vector<std::string>;
using Records = std::vector<const IndependentRecord *>;

// printf as in the C locale, whatever the program's.
template <typename... Values>
std::string print(const char *format, Values... values) {
    static locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    std::array<char, 400> text{};
    const locale_t before = uselocale(plain);
    const int length = std::snprintf(text.data(), text.size(), format, values...);
    uselocale(before);
    if (length < 0 || static_cast<std::size_t>(length) >= text.size()) {
        throw std::runtime_error("a text that is too long");
    }
    return text.data();
}

// Of the first block that matches.
struct Headings {
    Texts names;
    Texts units;
    Texts diagnosticNames;
    std::string version = "Unknown";
};

Headings headingsOf(const IndependentBlocks &blocks, const IndependentRequest &request) {
    Headings headings;
    bool hasVersion = false;
    for (const auto &block : blocks) {
        if (block->instrument != request.instrument) {
            continue;
        }
        headings.version = hasVersion ? headings.version : block->softwareVersion;
        hasVersion = true;
        if (block->tag == request.tag) {
            headings.names = block->valueNames;
            headings.units = block->units;
            headings.diagnosticNames = block->diagnosticNames;
            break;
        }
    }
    return headings;
}

Records recordsOf(const IndependentBlocks &blocks, const IndependentRequest &request) {
    Records records;
    for (const auto &block : blocks) {
        if (block->instrument != request.instrument || block->tag != request.tag ||
            block->valueNames.empty()) {
            continue;
        }
        for (const IndependentRecord &record : block->records) {
            records.push_back(&record);
        }
    }
    return records;
}

std::string pieceName(const IndependentRequest &request, const IndependentRecord &first, int number) {
    const std::size_t point = std::min(request.target.rfind('.'), request.target.size());
    std::string name = request.target.substr(0, point) + print("-%04u-%02u-%02u", unsigned{first.year},
                                                               unsigned{first.month}, unsigned{first.day});
    if (request.split < 86400) {
        name += print("T%02u%02u", unsigned{first.hour}, unsigned{first.minute});
    }
    return name + (number == 1 ? "" : '-' + std::to_string(number)) + request.target.substr(point);
}

// One file of all records, or one of each period, as `contentOf` writes them.
ExportedFiles cut(const Records &records, const IndependentRequest &request,
                  const std::function<std::string(const Records &)> &contentOf) {
    if (request.split == 0) {
        return {{request.target, records.empty() ? "" : contentOf(records)}};
    }
    ExportedFiles files;
    for (std::size_t begin = 0; begin < records.size();) {
        const std::int64_t end = (records[begin]->seconds / request.split + 1) * request.split;
        Records piece;
        for (; begin < records.size() && records[begin]->seconds < end; ++begin) {
            piece.push_back(records[begin]);
        }
        int number = 1;
        while (files.contains(pieceName(request, *piece.front(), number))) {
            ++number;
        }
        files[pieceName(request, *piece.front(), number)] = contentOf(piece);
    }
    return files;
}

std::string joined(const Texts &texts, const std::string &separator) {
    std::string line;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        line += (i == 0 ? "" : separator) + texts[i];
    }
    return line;
}

std::string valueText(double value) {
    return std::isnan(value) ? "nan" : print("%g", value);
}

std::string textLine(const IndependentRecord &record, unsigned columns) {
    const std::string date =
        print("%04u-%02u-%02u", unsigned{record.year}, unsigned{record.month}, unsigned{record.day});
    const std::string time =
        print("%02u:%02u:%02u", unsigned{record.hour}, unsigned{record.minute}, unsigned{record.second});
    Texts fields;
    if ((columns & 1U) != 0) {
        fields.push_back(std::to_string(record.seconds));
    }
    if ((columns & 2U) != 0) {
        fields.push_back(std::to_string(record.nanoseconds));
    }
    if ((columns & 4U) != 0) {
        fields.push_back(date);
    }
    if ((columns & 8U) != 0) {
        fields.push_back(time);
    }
    if ((columns & 16U) != 0) {
        fields.push_back(date + 'T' + time + ((columns & 32U) != 0 ? print("%+d", record.offset) : ""));
    }
    for (const double value : record.values) {
        fields.push_back(valueText(value));
    }
    return joined(fields, "\t") + '\n';
}

std::string textHeader(const Headings &headings, unsigned columns, std::size_t values) {
    static const Texts timeNames{"SECONDS", "NANOSECONDS", "DATE", "TIME", "TIMESTAMP"};
    Texts names;
    for (std::size_t i = 0; i < timeNames.size(); ++i) {
        if ((columns >> i) % 2 == 1) {
            names.push_back(timeNames[i]);
        }
    }
    names.insert(names.end(), headings.names.begin(), headings.names.end());
    names.resize(values + 2);
    for (std::string &name : names) {
        name = name.find(' ') == std::string::npos ? name : '"' + name + '"';
    }
    return joined(names, "\t") + '\n';
}

// Only letters, digits and "_", no digit in front, 16 characters at most.
std::string loggerName(const std::string &text) {
    static const std::string digits = "0123456789";
    static const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
    std::string name;
    for (const char c : text) {
        if (name.size() > 15) {
            break;
        }
        if (digits.find(c) != std::string::npos) {
            name += name.empty() ? "n" : "";
            name += c;
        } else if (letters.find(c) != std::string::npos) {
            name += c;
        }
    }
    return name;
}

std::string quotedLine(const Texts &texts) {
    return '"' + joined(texts, "\",\"") + "\"\r\n";
}

std::string tob1Header(const Headings &headings, const std::string &tag, std::size_t values) {
    Texts names{"SECONDS", "NANOSECONDS", "RECORD"};
    Texts units{"SECONDS", "NANOSECONDS", "RN"};
    Texts processing{"", "", ""};
    Texts types{"UINT4", "UINT4", "UINT4"};
    for (const std::string &name : headings.names) {
        names.push_back(loggerName(name));
    }
    for (const std::string &unit : headings.units) {
        units.push_back(loggerName(unit));
    }
    names.resize(values + 3);
    units.resize(values + 3);
    processing.resize(values + 3, "Smp");
    types.resize(values + 3, "IEEE4");
    return quotedLine({"TOB1", "QA330", "QA330", "", headings.version, "QA330", "QA330", tag}) +
           quotedLine(names) + quotedLine(units) + quotedLine(processing) + quotedLine(types);
}

std::string word(std::uint32_t number) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(number % 256);
        number /= 256;
    }
    return bytes;
}

std::string floatWord(double value) {
    const auto number = static_cast<float>(value);
    std::uint32_t bits = 0;
    static_assert(sizeof bits == sizeof number);
    std::copy_n(reinterpret_cast<const char *>(&number), sizeof bits, reinterpret_cast<char *>(&bits));
    return word(bits);
}

// Where the flag `name` stands in the word; the first bit when the file does not name it.
std::size_t positionOf(const Texts &names, const std::string &name) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] == name) {
            return i;
        }
    }
    return 0;
}

std::string utcText(const IndependentRecord &record) {
    const std::time_t seconds = record.seconds;
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    return print("%04d-%02d-%02d %02d:%02d:%02d.%u", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                 utc.tm_hour, utc.tm_min, utc.tm_sec, record.nanoseconds / 100000000);
}

std::string elapsedText(const IndependentRecord &first, const IndependentRecord &record) {
    const std::int64_t nanoseconds =
        (std::int64_t{record.seconds} - first.seconds) * 1000000000 + record.nanoseconds - first.nanoseconds;
    const std::int64_t size = std::abs(nanoseconds);
    return (nanoseconds < 0 ? "-" : "") + std::to_string(size / 1000000000) +
           print(".%09lld", static_cast<long long>(size % 1000000000));
}

} // namespace

ExportedFiles independentText(const IndependentBlocks &blocks, const IndependentRequest &request) {
    const Headings headings = headingsOf(blocks, request);
    return cut(recordsOf(blocks, request), request, [&](const Records &records) {
        std::string text = textHeader(headings, request.timeColumns, records.front()->values.size());
        for (const IndependentRecord *record : records) {
            text += textLine(*record, request.timeColumns);
        }
        return text;
    });
}

ExportedFiles independentTob1(const IndependentBlocks &blocks, const IndependentRequest &request) {
    const Headings headings = headingsOf(blocks, request);
    return cut(recordsOf(blocks, request), request, [&](const Records &records) {
        const IndependentRecord &first = *records.front();
        std::string bytes = tob1Header(headings, request.tag, first.values.size());
        std::uint32_t number = 0;
        for (const IndependentRecord *record : records) {
            bytes += word(record->seconds + static_cast<std::uint32_t>(first.offset) - 631152000U);
            bytes += word(record->nanoseconds) + word(number++);
            for (const double value : record->values) {
                bytes += floatWord(value);
            }
        }
        return bytes;
    });
}

ExportedFiles independentDiagnostics(const IndependentBlocks &blocks, const IndependentRequest &request) {
    static const Texts flags{"NOSIGNAL", "MOTORSPINNING", "PUMPON", "TOPHEATERON", "BOTTOMHEATERON"};
    const Headings headings = headingsOf(blocks, request);
    const Records records = recordsOf(blocks, request);
    std::string text = "TIMESTAMP\tSECONDS\tDIAG\tNOSIGNAL\tMOTOR\tPUMP\tTOPHEATER\tBOTTOMHEATER\r\n";
    Texts before(flags.size(), "0");
    for (const IndependentRecord *record : records) {
        Texts states;
        for (const std::string &flag : flags) {
            const std::size_t position = positionOf(headings.diagnosticNames, flag);
            states.emplace_back(position < 16 && (record->diagnostics >> position) % 2 == 1 ? "1" : "0");
        }
        if (states != before) {
            text += utcText(*record) + '\t' + elapsedText(*records.front(), *record) + '\t' +
                    std::to_string(record->diagnostics) + '\t' + joined(states, "\t") + "\r\n";
            before = states;
        }
    }
    return {{request.target, text}};
}
