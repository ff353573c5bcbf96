#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define FVQA_SANITIZER_BUILD 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define FVQA_SANITIZER_BUILD 1
#endif
#endif

#ifdef FVQA_SANITIZER_BUILD
inline constexpr bool isSanitizerBuild = true;
#else
inline constexpr bool isSanitizerBuild = false;
#endif

// How often a random test repeats itself: sanitizers make every round many times slower.
constexpr std::size_t scaledDown(std::size_t rounds) {
    return isSanitizerBuild ? (rounds + 19) / 20 : rounds;
}
