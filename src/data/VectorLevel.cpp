#include "data/VectorLevel.h"

#include "data/RecordKernels.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace {

bool canRun(VectorLevel level) {
#ifdef __x86_64__
    switch (level) {
    case VectorLevel::bits512:
        return canRun(VectorLevel::bits256) && __builtin_cpu_supports("avx512f") &&
               __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi2");
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
    case VectorLevel::bits512:
        return kernels512();
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
    constexpr std::array<std::pair<std::string_view, VectorLevel>, 4> levels{{{"512", VectorLevel::bits512},
                                                                              {"256", VectorLevel::bits256},
                                                                              {"128", VectorLevel::bits128},
                                                                              {"0", VectorLevel::plain}}};
    const char *const wish = std::getenv("FVQA_VECTOR_BITS"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    bool mayTake = wish == nullptr;
    for (const auto &[bits, level] : levels) {
        mayTake = mayTake || bits == wish;
        if (mayTake && isAvailable(level)) {
            return level;
        }
    }
    return VectorLevel::plain;
}

// Null until the first record asks. Two threads that ask at once choose the same.
constinit std::atomic<const RecordKernels *> chosen = nullptr;

std::atomic<VectorLevel> &level() {
    static std::atomic<VectorLevel> present = highestLevel();
    return present;
}

const RecordKernels *choose() {
    const RecordKernels *const available = kernelsOf(level());
    const RecordKernels *const wanted = available != nullptr ? available : plainKernels();
    // Unless another level has come into use meanwhile.
    const RecordKernels *present = nullptr;
    return chosen.compare_exchange_strong(present, wanted) ? wanted : present;
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
