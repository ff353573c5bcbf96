#include "cli/SampleFiles.h"

#include <QString>
#include <quazip.h>
#include <quazipfile.h>

#include <stdexcept>

std::string sampleHeader(const std::string &name) {
    return "Instrument:\t" + name +
           "\nSerial Number:\tSN-1\nSoftware Version:\t1.2.3\nTimezone:\tUTC\n"
           "DATAH\tSECONDS\tNANOSECONDS\tCH4D\tTEMP\n";
}

std::string sampleRecord(std::uint32_t seconds, const std::string &methane, const std::string &temperature) {
    return "DATA\t" + std::to_string(seconds) + "\t0\t" + methane + '\t' + temperature + '\n';
}

std::string sampleData(const std::string &name, std::uint32_t firstSecond, std::uint32_t records) {
    std::string text = sampleHeader(name);
    for (std::uint32_t i = 0; i < records; ++i) {
        text += sampleRecord(firstSecond + i, std::to_string(i));
    }
    return text;
}

std::string sampleWithBadChecksum() {
    // The sum is that of the line plus one.
    const std::string line = "DATA\t5\t0\t1.5\t";
    unsigned sum = 0;
    for (const char character : line) {
        sum += static_cast<unsigned char>(character);
    }
    return "DATAH\tSECONDS\tNANOSECONDS\tCH4D\tCHK\n" + line + std::to_string((sum + 1) % 256) + "\n";
}

std::string sampleWithUnknownZone() {
    return "Timezone:\tNo/Such\nDATAH\tSECONDS\tNANOSECONDS\tCH4D\n";
}

void writeArchive(const std::string &path, const std::vector<std::pair<std::string, std::string>> &members) {
    QuaZip archive(QString::fromStdString(path));
    if (!archive.open(QuaZip::mdCreate)) {
        throw std::runtime_error("cannot write " + path);
    }
    for (const auto &[name, content] : members) {
        QuaZipFile member(&archive);
        member.open(QIODevice::WriteOnly, QuaZipNewInfo(QString::fromStdString(name)));
        member.write(content.data(), static_cast<qint64>(content.size()));
        member.close();
    }
    archive.close();
}
