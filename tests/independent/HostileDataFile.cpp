#include "independent/HostileDataFile.h"

#include <cstdio>
#include <string_view>

namespace {

using Texts = std::vector<std::string>;

const std::array<std::string, 3> tags{"DATA", "DATASTAT", "DATABIO"};

const Texts zones{
    "Unknown",         "UTC",           "Europe/Berlin",       "America/Denver", "Asia/Kolkata",
    "Asia/Kathmandu",  "Etc/GMT+5",     "Australia/Lord_Howe", "Pacific/Apia",   "America/Sao_Paulo",
    "Africa/Monrovia", "Europe/Dublin", "Pacific/Kiritimati"};

const std::array<Texts, 9> clocks{Texts{"SECONDS", "NANOSECONDS"},
                                  Texts{"SECONDS", "NANOSECONDS", "DATE", "TIME"},
                                  Texts{"SECONDS", "NANOSECONDS", "DATE", "TIME"},
                                  Texts{"DATE", "TIME"},
                                  Texts{"TIME", "DATE", "SECONDS"},
                                  Texts{"SECONDS", "TIME"},
                                  Texts{"SECONDS", "DATE"},
                                  Texts{"DATE", "TIME", "NANOSECONDS", "SECONDS"},
                                  Texts{}};

const Texts valueColumns{"CH4",
                         "CH4D",
                         "DIAG",
                         "DIAG",
                         "CO2 (mmol/m^3)",
                         "H2O dry (umol/mol)",
                         "2ndTemp",
                         "X(",
                         "X(abc",
                         "A (b) (c)",
                         "A very long name of a column",
                         "CH4",
                         "REMARK",
                         "FILENAME",
                         "",
                         "CHK",
                         "a\"b",
                         "\xc3\xa9t\xc3\xa9 (\xc2\xb0\x43)",
                         "DATA",
                         "seconds",
                         "MSEC"};

const Texts numbers{"nan",      "-nan",      "NAN(12)",  "inf",   "-INFINITY", "1e99",       "-1e99",
                    "1e-99",    "1e-44",     "-0",       "+5",    "0x1.8p3",   "0x",         ".5",
                    "5.",       "1e",        "1e+",      "--5",   "+-5",       "16777217",   "3.4028236e38",
                    "1.5abc",   "7,5",       "",         " 4",    " \v\f8",    "0.1234567",  "999999.5",
                    "9999995",  "0.0001",    "0.00001",  "1e15",  "123456789", "0000012.50", "1e-45",
                    "99999995", "5.9999995", "infinity", "nanny", "1d5",       "1_000",      "\xff"};

const Texts integers{"-1",
                     "9223372036854775807",
                     "9223372036854775808",
                     "-9223372036854775809",
                     "4294967296",
                     "65535",
                     "99999999999999999999",
                     "+12",
                     "0x1F",
                     "7.9",
                     "",
                     "abc",
                     " 33",
                     "2147483648",
                     "\t5"};

const Texts bitNames{"NOSIGNAL",    "MOTORSPINNING",  "PUMPON", "TOPHEATERON", "BOTTOMHEATERON",
                     "CALIBRATING", "BOXCONNECTED",   "",       "A B",         "PUMPON",
                     "nosignal",    "BOTTOMHEATERON", "LOW (V)"};

std::string padded(std::int64_t number, int digits) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%0*lld", digits, static_cast<long long>(number));
    return text.data();
}

std::string joined(const Texts &texts) {
    std::string line;
    for (const std::string &text : texts) {
        line += '\t' + text;
    }
    return line;
}

// Half a day before a clock goes back in many zones, or any time.
std::int64_t drawStart(RandomNumbers &random) {
    static constexpr std::array<std::int64_t, 7> changes{1572137000, 1572767000, 1553990000, 1541310000,
                                                         1554561000, 1325239000, 100};
    return random.oneIn(4) ? random.between(86400, 4200000000)
                           : random.pick(changes) + random.between(0, 9000);
}

} // namespace

HostileDataFile::HostileDataFile(std::uint64_t seed, const std::string &zoneDirectory)
    : random_(seed),
      zoneName_(random_.pick(zones)),
      wall_(zoneDirectory, zoneName_),
      isDirty_(random_.oneIn(2)),
      usualStep_(random_.oneIn(3)   ? 900
                 : random_.oneIn(2) ? 20
                                    : 2),
      seconds_(drawStart(random_)) {}

std::string HostileDataFile::source(int lines) {
    text_.clear();
    if (!random_.oneIn(6)) {
        addLine("Instrument:\t" + std::string(random_.oneIn(3) ? "AIU 0412:b" : "QA330"));
        addLine("Timezone:\t" + zoneName_);
    }
    for (int line = 0; line < lines; ++line) {
        const std::uint64_t kind = random_.below(300);
        if ((line == 0 && !random_.oneIn(10)) || kind < 5) {
            addHeader();
        } else if (kind < 8) {
            addKey();
        } else if (kind < 10) {
            addDiagnosticNames();
        } else if (kind < 15) {
            addNoise();
        } else {
            addRecord();
        }
    }
    if (random_.oneIn(3)) {
        text_.pop_back(); // cut in the last line end
    }
    return text_;
}

void HostileDataFile::addLine(std::string line) {
    for (char &c : line) {
        c = c == '\n' ? ' ' : c;
    }
    text_ += line + (random_.oneIn(4) ? "\r\n" : "\n");
}

void HostileDataFile::addKey() {
    static const Texts keys{"Instrument:\tQA330",
                            "Instrument:\t",
                            "Instrument:\t ",
                            "DATAEVENT\tNAME\tQA 34:x\ty",
                            "DATAEVENT\tSN\t5",
                            "SN:\t4",
                            "Serial Number:\t3",
                            "Software Version:\t1.0.4",
                            "Software Version:\tv\"2\", beta",
                            "Software Version:\t",
                            "Timezone:\tNo/Such",
                            "Timezone:\t../UTC",
                            "Timezone:\tEurope",
                            "Timezone:\tUnknown",
                            "Timezone:\tAsia/Kolkata"};
    addLine(random_.pick(keys));
    if (random_.oneIn(2)) {
        addHeader();
    }
    if (random_.oneIn(2)) {
        addLine("Timezone:\t" + zoneName_);
    }
}

void HostileDataFile::addHeader() {
    const std::size_t tag = random_.oneIn(2) ? 0 : random_.below(tags.size());
    columns_[tag] = drawColumns();
    addLine(tags[tag] + 'H' + joined(columns_[tag]) + (random_.oneIn(8) ? "\t" : ""));
}

std::vector<std::string> HostileDataFile::drawColumns() {
    Texts columns = random_.pick(clocks);
    for (auto count = random_.below(9); count > 0; --count) {
        const bool isInFront = random_.oneIn(8);
        columns.insert(isInFront ? columns.begin() : columns.end(), random_.pick(valueColumns));
    }
    if (random_.oneIn(3)) {
        columns.emplace_back("CHK");
    }
    return columns;
}

void HostileDataFile::addDiagnosticNames() {
    Texts names;
    for (auto count = random_.below(random_.oneIn(5) ? 40 : 14); count > 0; --count) {
        names.push_back(random_.pick(bitNames));
    }
    addLine("DATADIAGH" + joined(names));
}

void HostileDataFile::addNoise() {
    static const Texts noise{
        "",           "DATA",           "\x01\x02\xff", "DATAX\t1\t2",     "# remark",
        "DATA\t",     "DATASTAT\t\t\t", "DATAH\t",      "DATADIAGH\t",     " DATA\t1\t2",
        "data\t1\t2", "DATABIOH",       "\r",           "DATASTATH\t\t\t", "DATABIO\t0\t0\t0"};
    if (random_.oneIn(400)) {
        // At the limit of what a line may have, or above it, which ends the source.
        addLine("DATA\t" + std::string(1048571 + random_.below(2), '1'));
    } else {
        addLine(random_.pick(noise));
    }
}

void HostileDataFile::stepClock() {
    seconds_ += random_.between(0, static_cast<std::int64_t>(usualStep_));
    nanoseconds_ = random_.oneIn(4) ? 0 : static_cast<std::uint32_t>(random_.below(1000000000));
    if (random_.oneIn(300)) {
        seconds_ += random_.between(-9000, 30000);
    } else if (random_.oneIn(2000)) {
        seconds_ += random_.between(-50000000, 50000000);
    }
    seconds_ = seconds_ < 0 ? random_.between(0, 5) : seconds_ > 4294967295 ? 4294960000 : seconds_;
}

void HostileDataFile::addRecord() {
    const std::size_t tag = random_.oneIn(2) ? 0 : random_.below(tags.size());
    stepClock();
    std::string fields;
    for (const std::string &column : columns_[tag]) {
        fields += (fields.empty() ? "" : random_.oneIn(isDirty_ ? 60 : 2000) ? "  \t" : "\t");
        fields += field(column, fields, tags[tag]);
    }
    damage(fields);
    addLine(tags[tag] + '\t' + fields);
}

void HostileDataFile::damage(std::string &line) {
    if (line.empty() || !random_.oneIn(isDirty_ ? 20 : 400)) {
        return;
    }
    if (random_.oneIn(3)) {
        line.resize(random_.below(line.size()));
    } else if (random_.oneIn(2)) {
        line += "\t12\t13";
    } else {
        line[random_.below(line.size())] = static_cast<char>(random_.below(256));
    }
}

std::string HostileDataFile::field(const std::string &column, const std::string &fieldsSoFar,
                                   const std::string &tag) {
    if (column == "SECONDS" || column == "NANOSECONDS" || column == "DATE" || column == "TIME") {
        return clockField(column);
    }
    if (column == "CHK") {
        return checksum(fieldsSoFar, tag);
    }
    if (column == "DIAG") {
        return random_.oneIn(isDirty_ ? 20 : 500)
                   ? random_.pick(integers)
                   : std::to_string(random_.below(random_.oneIn(9) ? 70000 : 1024));
    }
    if (column.empty() || column == "REMARK" || column == "FILENAME") {
        return random_.oneIn(20) ? "" : random_.oneIn(2) ? "washing: on" : " x";
    }
    return number();
}

std::string HostileDataFile::clockField(const std::string &column) {
    if (random_.oneIn(isDirty_ ? 150 : 5000)) {
        return random_.pick(integers);
    }
    if (column == "SECONDS") {
        return random_.oneIn(isDirty_ ? 5 : 100) ? "0" : std::to_string(seconds_);
    }
    if (column == "NANOSECONDS") {
        return std::to_string(nanoseconds_);
    }
    return column == "DATE" ? dateField() : timeField();
}

std::string HostileDataFile::dateField() {
    static const Texts odd{"2019/06/01", "2019 06 01", "19-6-1",      "2019-13-45", "65535-1-1", "0-0-0",
                           "70000-1-1",  "2019-06",    "2019--06-01", "1850-01-01", "2100-12-31"};
    if (random_.oneIn(isDirty_ ? 100 : 2000)) {
        return random_.pick(odd);
    }
    const IndependentZone::Fields local = wall_.localTime(seconds_).fields;
    return padded(local[0], 4) + '-' + padded(local[1], 2) + '-' + padded(local[2], 2);
}

std::string HostileDataFile::timeField() {
    static const Texts odd{
        "25:61:99",      "12.30.05",     "12:30",        "12:30:05:",      "12:30:05.",
        "12:30:05:1500", "12:30:05.5e1", "12:30:05:-20", "12:30:05.25abc", "-1:-1:-1",
        "12:30:05.5e9",  "255:255:255",  "256:0:0",      "12:30:05.x",     "12:30:05.999999999"};
    if (random_.oneIn(isDirty_ ? 100 : 2000)) {
        return random_.pick(odd);
    }
    const IndependentZone::Fields local = wall_.localTime(seconds_).fields;
    const std::string time = padded(local[3], 2) + ':' + padded(local[4], 2) + ':' + padded(local[5], 2);
    switch (random_.below(4)) {
    case 0:
        return time;
    case 1:
        return time + '.' + padded(nanoseconds_ / 1000000, 3);
    default:
        return time + ':' + std::to_string(nanoseconds_ / 1000000);
    }
}

std::string HostileDataFile::number() {
    if (random_.oneIn(isDirty_ ? 25 : 400)) {
        return random_.pick(numbers);
    }
    std::string text = std::to_string(random_.between(-99999, 99999));
    if (!random_.oneIn(4)) {
        text += '.' + std::to_string(random_.bits()).substr(0, 1 + random_.below(random_.oneIn(9) ? 18 : 6));
    }
    return random_.oneIn(30) ? text + 'e' + std::to_string(random_.between(-12, 12)) : text;
}

std::string HostileDataFile::checksum(const std::string &fieldsSoFar, const std::string &tag) {
    unsigned sum = '\t';
    for (const char c : tag + fieldsSoFar) {
        sum += static_cast<unsigned char>(c);
    }
    if (random_.oneIn(4)) {
        sum -= '\t'; // without the tab before it
    }
    if (random_.oneIn(isDirty_ ? 20 : 300)) {
        sum += static_cast<unsigned>(random_.below(256));
    }
    return random_.oneIn(20) ? std::to_string(sum) : std::to_string(sum % 256);
}
