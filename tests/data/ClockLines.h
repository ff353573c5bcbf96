#pragma once

#include "data/FieldReaders.h"
#include "support/HeapText.h"
#include "support/RecordComparison.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

// Lines of seconds, date and time of day, without and with nanoseconds.
inline const std::vector<FieldReader> dateAndTime{{FieldReader::Kind::seconds},
                                                  {FieldReader::Kind::date},
                                                  {FieldReader::Kind::timeOfDay},
                                                  {FieldReader::Kind::nanoseconds}};
inline const std::vector<FieldReader> dateAndTimeOnly{
    {FieldReader::Kind::seconds}, {FieldReader::Kind::date}, {FieldReader::Kind::timeOfDay}};

inline FieldResult readClockLine(const std::vector<FieldReader> &readers, const std::string &line,
                                 Record &record) {
    const HeapText text(line);
    return readFields(readers, 0, text.view(), record);
}

// A blank behind the tab is passed over by the readers, but makes the text none that is taken at once.
inline std::string withBlanks(const std::string &line) {
    std::string text;
    for (const char c : line) {
        text += c;
        text += c == '\t' ? " " : "";
    }
    return text;
}

inline testing::AssertionResult readsAsWithBlanks(const std::string &line) {
    for (const auto *const readers : {&dateAndTime, &dateAndTimeOnly}) {
        Record plain;
        Record blanks;
        const FieldResult result = readClockLine(*readers, line, plain);
        if (result != readClockLine(*readers, withBlanks(line), blanks) ||
            (result == FieldResult::good && !isSameStamp(plain, blanks))) {
            return testing::AssertionFailure() << testing::PrintToString(line);
        }
    }
    return testing::AssertionSuccess();
}
