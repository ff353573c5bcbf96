#pragma once

#include "data/Record.h"

// Writes records in one format, into the output that it was made for. One for each file.
class RecordWriter {
public:
    virtual ~RecordWriter() = default;

    virtual void write(const Record &record) = 0;
};
