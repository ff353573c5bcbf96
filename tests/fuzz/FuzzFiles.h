#pragma once

#include "data/UnitTable.h"
#include "time/Timezone.h"

// What the programs do before the first data file is loaded.
inline void prepareForFiles() {
    static const bool isReady = [] {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        ensureSeeded();
        return true;
    }();
    static_cast<void>(isReady);
}
