#pragma once

#include "data/NumberReading.h"
#include "data/Record.h"

// Dates and times of day in the form that analysers write. Each moves the cursor from before the field's tab
// to its end and gives what reading the numbers one by one gives; false, with the cursor and the record as
// they were, for any other text.

// "\t2019-06-01" before a tab.
bool readPlainDate(TextCursor &cursor, RecordStamp &stamp);

// "\t12:30:05" or "\t12:30:05:250" before a tab.
bool readPlainTimeOfDay(TextCursor &cursor, RecordStamp &stamp);
