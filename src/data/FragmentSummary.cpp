#include "data/FragmentSummary.h"

#include "data/DataSet.h"

#include <ostream>

void writeSummary(const DataFragment &fragment, std::ostream &stream) {
    const SourceHeader &header = fragment.header();
    stream << "Filename: " << header.fileName;
    stream << "\nSubFilename: " << header.subFileName;
    stream << "\nTag: " << fragment.tag();
    stream << "\nInstrument: " << header.instrument;
    stream << "\nSerial Number: " << header.serialNumber;
    stream << "\nVersion: " << header.softwareVersion;
    stream << "\nTimezone: " << fragment.timezone().name();
    stream << "\nBegin: " << fragment.firstOffset();
    stream << "\nEnd: " << fragment.endOffset();
    stream << "\nBegin Time: " << fragment.firstTime();
    stream << "\nEnd Time: " << fragment.lastTime();
    stream << '\n' << std::endl; // NOLINT(performance-avoid-endl): each block reaches its reader at once
}

void writeSummary(const DataSet &dataSet, std::ostream &stream) {
    for (const auto &fragment : dataSet.fragments()) {
        writeSummary(*fragment, stream);
    }
}
