#pragma once

#include <QReadWriteLock>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define FVQA_THREAD_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define FVQA_THREAD_SANITIZER 1
#endif

#ifdef FVQA_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

// Guards for a QReadWriteLock that also tell the thread sanitizer, which cannot look into Qt, what they lock.

class ReadGuard {
public:
    explicit ReadGuard(QReadWriteLock &lock) : lock_(lock) {
#ifdef FVQA_THREAD_SANITIZER
        __tsan_mutex_pre_lock(&lock_, __tsan_mutex_read_lock);
        lock_.lockForRead();
        __tsan_mutex_post_lock(&lock_, __tsan_mutex_read_lock, 0);
#else
        lock_.lockForRead();
#endif
    }
    ~ReadGuard() {
#ifdef FVQA_THREAD_SANITIZER
        __tsan_mutex_pre_unlock(&lock_, __tsan_mutex_read_lock);
        lock_.unlock();
        __tsan_mutex_post_unlock(&lock_, __tsan_mutex_read_lock);
#else
        lock_.unlock();
#endif
    }
    ReadGuard(const ReadGuard &) = delete;
    ReadGuard &operator=(const ReadGuard &) = delete;

private:
    QReadWriteLock &lock_;
};

class WriteGuard {
public:
    explicit WriteGuard(QReadWriteLock &lock) : lock_(lock) {
#ifdef FVQA_THREAD_SANITIZER
        __tsan_mutex_pre_lock(&lock_, 0);
        lock_.lockForWrite();
        __tsan_mutex_post_lock(&lock_, 0, 0);
#else
        lock_.lockForWrite();
#endif
    }
    ~WriteGuard() {
#ifdef FVQA_THREAD_SANITIZER
        __tsan_mutex_pre_unlock(&lock_, 0);
        lock_.unlock();
        __tsan_mutex_post_unlock(&lock_, 0);
#else
        lock_.unlock();
#endif
    }
    WriteGuard(const WriteGuard &) = delete;
    WriteGuard &operator=(const WriteGuard &) = delete;

private:
    QReadWriteLock &lock_;
};

// What the end of a thread and the wait for it tell the thread sanitizer: all that the thread did came
// before.
inline void announceThreadEnd([[maybe_unused]] void *thread) {
#ifdef FVQA_THREAD_SANITIZER
    __tsan_release(thread);
#endif
}
inline void acceptThreadEnd([[maybe_unused]] void *thread) {
#ifdef FVQA_THREAD_SANITIZER
    __tsan_acquire(thread);
#endif
}
