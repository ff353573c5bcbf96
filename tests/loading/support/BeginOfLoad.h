#pragma once

#include "data/DataSet.h"

#include <gtest/gtest.h>

// Whether the blocks of `loaded` hold the first records of those blocks of `whole`, and nothing else: what is
// left of a load that ended early.
testing::AssertionResult isBeginOf(const DataSet &loaded, const DataSet &whole);
