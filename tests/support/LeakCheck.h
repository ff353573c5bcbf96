#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define FVQA_LEAK_CHECK 1
#endif
#endif

// Whether there is memory by now that nothing points to. The address sanitizer, which reports it, looks at
// the program's end, too: but when plugins are unloaded then, theirs cannot be told from ours. False without
// it.
inline bool isMemoryLeaked() {
#ifdef FVQA_LEAK_CHECK
    return __lsan_do_recoverable_leak_check() != 0;
#else
    return false;
#endif
}
