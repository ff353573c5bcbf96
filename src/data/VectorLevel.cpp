#include "data/VectorLevel.h"

#include "data/RecordKernels.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

namespace {

bool canRun(VectorLevel level) {
#ifdef __x86_64__
    switch (level) {
    case VectorLevel::bits256:
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
               __builtin_cpu_supports("popcnt");
    case VectorLevel::bits128:
        return __builtin_cpu_supports("sse4.1") && __builtin_cpu_supports("popcnt");
    case VectorLevel::plain:
        break;
    }
#endif
    return level == VectorLevel::plain;
}

// Null when the level is not available.
const RecordKernels *kernelsOf(VectorLevel level) {
    if (!canRun(level)) {
        return nullptr;
    }
    switch (level) {
    case VectorLevel::bits256:
        return kernels256();
    case VectorLevel::bits128:
        return kernels128();
    case VectorLevel::plain:
        break;
    }
    return plainKernels();
}

// FVQA_VECTOR_BITS may ask for fewer bits than the processor has, so that the levels can be compared.
VectorLevel highestLevel() {
    const char *const wish = std::getenv("FVQA_VECTOR_BITS"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    const std::string_view bits = wish != nullptr ? wish : "256";
    if (bits == "256" && isAvailable(VectorLevel::bits256)) {
        return VectorLevel::bits256;
    }
    return bits != "0" && isAvailable(VectorLevel::bits128) ? VectorLevel::bits128 : VectorLevel::plain;
}

// Null until the first record asks. Two threads that ask at once choose the same.
constinit std::atomic<const RecordKernels *> chosen = nullptr;

std::atomic<VectorLevel> &level() {
    static std::atomic<VectorLevel> present = highestLevel();
    return present;
}

const RecordKernels *choose() {
    const RecordKernels *const kernels = kernelsOf(level());
    chosen = kernels;
    return kernels;
}

} // namespace

bool isAvailable(VectorLevel level) {
    return kernelsOf(level) != nullptr;
}

VectorLevel vectorLevel() {
    return level();
}

void useVectorLevel(VectorLevel wanted) {
    level() = wanted;
    chosen = kernelsOf(wanted);
}

const RecordKernels &recordKernels() {
    const RecordKernels *const kernels = chosen.load(std::memory_order_relaxed);
    return kernels != nullptr ? *kernels : *choose();
}
