#pragma once

#include "data/DataSet.h"

#include <string>

// The name that source `number` has.
inline std::string halfHourName(int number) {
    return "file-" + std::to_string(number) + ".data";
}

// A half hour's data set with the layout of real files and few records: merging does not look at records.
inline DataSet makeHalfHourSource(int number) {
    constexpr int columns = 45;
    constexpr int firstSecond = 1600000000;
    constexpr int halfHour = 1800;
    DataSet source(halfHourName(number));
    std::string header = "DATAH\tSECONDS";
    std::string values;
    for (int i = 0; i < columns; ++i) {
        header += "\tCOLUMN" + std::to_string(i);
        values += "\t" + std::to_string(i);
    }
    source.parseLine(0, "Instrument:\tQA3401");
    source.parseLine(20, header);
    source.parseLine(1000, "DATA\t" + std::to_string(firstSecond + number * halfHour) + values);
    source.finishLoading();
    return source;
}
