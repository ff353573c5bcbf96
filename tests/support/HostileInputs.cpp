#include "support/HostileInputs.h"

#include "support/Repeated.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::size_t longestLine = 1048576;

using namespace std::string_literals;

std::string filled(const std::string &text, std::string_view piece, std::size_t length) {
    return text + repeated(piece, (length - text.size()) / piece.size());
}

// `piece(i)` for i = 0, 1, 2, ... behind `begin`, until the size is reached.
HostileInput pieces(std::string name, std::function<std::string()> begin,
                    std::function<std::string(std::size_t)> piece) {
    const auto make = [begin = std::move(begin), piece = std::move(piece)](std::size_t bytes) {
        std::string text = begin();
        for (std::size_t i = 0; text.size() < bytes; ++i) {
            text += piece(i);
        }
        return text;
    };
    return {std::move(name), make};
}

HostileInput pieces(std::string name, std::string begin, std::function<std::string(std::size_t)> piece) {
    return pieces(
        std::move(name), [begin = std::move(begin)] { return begin; }, std::move(piece));
}

HostileInput same(std::string name, std::string begin, std::string piece) {
    return pieces(std::move(name), std::move(begin),
                  [piece = std::move(piece)](std::size_t) { return piece; });
}

// A header line of `columns` columns of their own names, and a record for it.
std::string wideBlock(std::size_t columns, std::string_view prefix, std::string_view suffix) {
    std::string text = "DATAH";
    for (std::size_t i = 0; i < columns; ++i) {
        text.append(1, '\t').append(prefix).append(std::to_string(i)).append(suffix);
    }
    return text + "\nDATA" + repeated("\t1", columns) + '\n';
}

std::string oneRecord(std::size_t seconds) {
    return "DATA\t" + std::to_string(seconds) + "\t1\n";
}

std::string anotherPeriod(std::size_t i) {
    return std::to_string(1000000 + i * 7200 % 4000000000);
}

std::string zoneOf(std::size_t i) {
    constexpr std::array names{"GB", "EST5EDT", "Asia/Gaza", "Africa/Cairo", "America/Nuuk", "Europe/Berlin"};
    return repeated("./", i / names.size() % 50) + names[i % names.size()];
}

std::vector<HostileInput> ofBlocks() {
    return {
        same("nothing but header lines", "", "DATAH\tA\n"),
        same("header lines of a MiB", "", filled("DATAH", "\ta", longestLine) + '\n'),
        same("header lines of a MiB with a record each", "",
             filled("DATAH", "\ta", longestLine) + "\nDATA\t1\n"),
        same("header lines of a MiB of skipped columns", "",
             filled("DATAH", "\t", longestLine) + "\nDATA\tx\n"),
        same("blocks of 10,000 columns", "", wideBlock(10000, "", "")),
        pieces("blocks of 10,000 columns of other names", "",
               [](std::size_t i) { return wideBlock(10000, std::to_string(i % 9) + '_', ""); }),
        pieces("blocks of 10,000 columns with units", "",
               [](std::size_t i) { return wideBlock(10000, std::to_string(i) + '_', "(u)"); }),
        pieces("header lines and records by turns", "",
               [](std::size_t i) { return "DATAH\tSECONDS\tA\n" + oneRecord(1 + i * 2); }),
        pieces("blocks that go back in time", "",
               [](std::size_t i) { return "DATAH\tSECONDS\tA\n" + oneRecord(4000000000 - i * 2); }),
        pieces("header lines and bad records by turns", "",
               [](std::size_t) { return "DATAH\tSECONDS\tA\nDATA\tx\n"s; }),
        pieces("an instrument for each record", "Timezone:\tUTC\n",
               [](std::size_t i) {
                   return "SN:\t" + std::to_string(i) + "\nInstrument:\tI" + std::to_string(i) +
                          "\nDATAH\tSECONDS\tA\n" + oneRecord(1 + i);
               }),
        pieces(
            "variables of their own for each record", "",
            [](std::size_t i) { return "DATAH\tSECONDS\tA" + std::to_string(i) + '\n' + oneRecord(1 + i); }),
        same("names of bits of a MiB before each header line", "",
             filled("DATADIAGH", "\ta", longestLine) + "\nDATAH\tA\nDATA\t1\n"),
        same("names of bits before each header line", "",
             "DATADIAGH" + repeated("\tF", 60) + "\nDATAH\tDIAG\nDATASTATH\tDIAG\nDATA\t1\nDATASTAT\t1\n"),
    };
}

std::vector<HostileInput> ofLongTexts() {
    const auto longName = [] { return filled("Instrument:\t", "Q", longestLine) + '\n'; };
    return {
        pieces("a name of a MiB, then header lines", longName, [](std::size_t) { return "DATAH\tA\n"s; }),
        pieces("a name of a MiB, then blocks", longName,
               [](std::size_t i) { return "DATAH\tSECONDS\tA\n" + oneRecord(1 + i); }),
        pieces("a name of a MiB, then blocks of 10,000 columns", longName,
               [](std::size_t) { return wideBlock(10000, "", ""); }),
        pieces("a name of a MiB, then other keys by turns", longName,
               [](std::size_t i) { return "SN:\t" + std::to_string(i % 10) + "\nDATAH\tA\n"; }),
        pieces(
            "a zone of a MiB that is not there, then header lines",
            [] { return filled("Timezone:\t", "z", longestLine) + '\n'; },
            [](std::size_t) { return "DATAH\tA\n"s; }),
        pieces(
            "a bit of a MiB for thousands of columns",
            [] { return filled("DATADIAGH\t", "b", longestLine) + '\n'; },
            [](std::size_t) {
                return "DATAH" + repeated("\tDIAG", 5000) + "\nDATA" + repeated("\t1", 5000) + '\n';
            }),
        same("lines of a MiB that mean nothing", "", std::string(longestLine, 'x') + '\n'),
        same("records of a MiB", "DATAH\tREMARK\tA\n", filled("DATA\tx\t", "7", longestLine) + '\n'),
        same("records of a MiB of white space", "DATAH\tA\tB\n", filled("DATA\t1", "\t", longestLine) + '\n'),
        same("empty lines", "DATAH\tA\n", "\n"),
    };
}

std::vector<HostileInput> ofTimes() {
    return {
        pieces("zones that change with every header line", "",
               [](std::size_t i) { return "Timezone:\t" + zoneOf(i) + "\nDATAH\tA\n"; }),
        pieces("zones that change with every block", "",
               [](std::size_t i) {
                   return "Timezone:\t" + zoneOf(i) + "\nDATAH\tSECONDS\tA\n" + oneRecord(1 + i);
               }),
        same("header lines in a zone that is not there", "", "Timezone:\tno\nDATAH\tA\n"),
        pieces("records in another period each", "DATAH\tSECONDS\tA\n",
               [](std::size_t i) { return "DATA\t" + anotherPeriod(i) + "\t1\n"; }),
        pieces(
            "records of 10,000 columns in another period each",
            [] { return "DATAH\tSECONDS" + repeated("\tA", 9999) + '\n'; },
            [](std::size_t i) { return "DATA\t" + anotherPeriod(i) + repeated("\t1", 9999) + '\n'; }),
        pieces(
            "words beyond single precision in another period each",
            [] { return "DATAH\tSECONDS" + repeated("\tDIAG", 999) + '\n'; },
            [](std::size_t i) {
                return "DATA\t" + anotherPeriod(i) + repeated("\t9", 998) + "\t4294967295\n";
            }),
        pieces("local times that jump by years", "Timezone:\tEurope/Berlin\nDATAH\tDATE\tTIME\tA\n",
               [](std::size_t i) {
                   return "DATA\t" + std::to_string(1970 + i * 29 % 130) + "-3-31\t2:30:0\t1\n";
               }),
        pieces("seconds that jump by a century", "Timezone:\tEurope/Berlin\nDATAH\tSECONDS\tA\n",
               [](std::size_t i) { return i % 2 == 0 ? "DATA\t1\t1\n"s : "DATA\t4200000000\t1\n"s; }),
    };
}

std::vector<HostileInput> ofBadRecords() {
    return {
        same("bad records", "DATAH\tSECONDS\tA\n", "DATA\tx\n"),
        same("records of wrong checksums", "DATAH\tSECONDS\tA\tCHK\n", "DATA\t1\t1\t1\n"),
        same("records of a header line that was refused", filled("DATAH", "\ta", 100000) + '\n', "DATA\t1\n"),
        same("names of bits by turns", "DATAH\tDIAG\n", "DATADIAGH\tA\tB\n"),
    };
}

} // namespace

std::vector<HostileInput> hostileInputs() {
    std::vector<HostileInput> all;
    for (auto part : {ofBlocks(), ofLongTexts(), ofTimes(), ofBadRecords()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::string blocksOfOneRecord(std::size_t blocks) {
    std::string text;
    for (std::size_t i = 0; i < blocks; ++i) {
        text += "DATAH\tSECONDS\tA\n" + oneRecord(1 + i * 2);
    }
    return text;
}
