#pragma once

#include "data/NumberReading.h"

#include <cstdint>

// Reads `count` numbers one behind the other into `values`. Moves the cursor, fails and gives exactly what
// readFloat() does when it is called for each of them; `begin` is where the line's text begins. Decimals
// alone in their fields, as nearly all are, are taken many at a time.
bool readFloats(TextCursor &cursor, const char *begin, std::uint32_t count, double *values);
