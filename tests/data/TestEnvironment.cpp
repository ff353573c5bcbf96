#include "data/UnitTable.h"
#include "time/Timezone.h"

#include <gtest/gtest.h>

namespace {

class TestEnvironment : public testing::Environment {
public:
    void SetUp() override {
        zoneDirectory = FVQA_ZONEINFO_DIR;
        // As every column set-up does first: a table that is not empty is not seeded any more.
        ensureSeeded();
    }
};

// Owned by the test framework.
[[maybe_unused]] const testing::Environment *const environment =
    testing::AddGlobalTestEnvironment(new TestEnvironment);

} // namespace
