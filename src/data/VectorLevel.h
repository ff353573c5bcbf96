#pragma once

#include <cstdint>

// How wide the vectors are that the reading of records and the writing of numbers work with. All levels give
// the same results, bit for bit; they differ in speed only.
enum class VectorLevel : std::uint8_t { plain, bits128, bits256, bits512 };

// Whether this processor, and this build, can work at `level`.
bool isAvailable(VectorLevel level);

// The highest level available, unless another one was asked for, by useVectorLevel() or by the environment
// variable FVQA_VECTOR_BITS (0, 128, 256 or 512; anything else asks for 0).
VectorLevel vectorLevel();

// For tests and benchmarks: works at `level`, which is available, in the whole process from now on.
void useVectorLevel(VectorLevel level);
