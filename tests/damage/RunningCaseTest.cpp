// A case of a random test that kills the process is told, so that it can be run again.

#include "support/RunningCase.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

namespace {

constexpr const char *told = "It died in the case FVQA_DAMAGE_SEED=351\n";

template <typename Death>
void die(Death death) {
    const RunningCase running("FVQA_DAMAGE_SEED=351");
    death();
}

} // namespace

TEST(RunningCase, IsToldWhenItAborts) {
    EXPECT_DEATH(die([] { std::abort(); }), told);
}

TEST(RunningCase, IsToldWhenASignalKillsIt) {
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
        EXPECT_DEATH(die([signal] { std::raise(signal); }), told) << signal;
    }
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
TEST(RunningCase, IsToldWhenTheAddressSanitizerEndsIt) {
    // The compiler does not know the size.
    const auto readBehind = [] {
        const volatile std::size_t size = 16;
        const std::unique_ptr<volatile char[]> block(new volatile char[size]());
        std::exit(block[size]);
    };
    EXPECT_DEATH(die(readBehind), told);
}
#endif
#endif

TEST(RunningCase, IsNoLongerToldOnceItHasEnded) {
    const auto dieLater = [] {
        die([] {});
        std::abort();
    };
    // The whole of what is said.
    EXPECT_EXIT(dieLater(), testing::KilledBySignal(SIGABRT), "^$");
}
