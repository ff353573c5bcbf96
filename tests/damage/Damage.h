#pragma once

#include "support/RandomNumbers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What befalls files in the field. Equal seeds do equal damage.

// About one byte in `bytesPerChange` changed, to any other or to one that means something in a data file.
std::string withChangedBytes(std::string bytes, RandomNumbers &random, std::uint64_t bytesPerChange = 100);

// The begin of one file up to some place, and another from some place on.
std::string joined(std::string_view first, std::string_view second, RandomNumbers &random);

// The number of seeds of the everyday suite: so many that some files are left readable.
inline constexpr std::uint64_t fewSeeds = 8;

// Which seeds a test runs through: a few, or as many as the environment's FVQA_DAMAGE_SEEDS says, or only
// FVQA_DAMAGE_SEED, to see one case again.
std::vector<std::uint64_t> damageSeeds();

// True when every case is to be run, not a few.
bool isThoroughRun();
