// SPDX-License-Identifier: MIT

// Tells the thread sanitizer what the mutexes of Qt do.
//
// The Qt of the system is not built with the sanitizer, and its mutexes are made of atomic
// operations, which the sanitizer then does not see: whatever they guard looks like a race. The
// functions here take the place of Qt's own, call them, and report the order that they make.

#include <dlfcn.h>

extern "C" {
void __tsan_acquire(void* address);
void __tsan_release(void* address);

// QMutex::lock(), QMutex::tryLock(int) and QMutex::unlock(), the object first as in every member.
void lockMutex(void* mutex) __asm__("_ZN6QMutex4lockEv");
bool tryLockMutex(void* mutex, int timeout) __asm__("_ZN6QMutex7tryLockEi");
void unlockMutex(void* mutex) __asm__("_ZN6QMutex6unlockEv");
}

namespace {

template <typename Function> Function ofQt(char const* symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

void lockMutex(void* mutex)
{
    static void (*const lock)(void*) = ofQt<void (*)(void*)>("_ZN6QMutex4lockEv");
    lock(mutex);
    __tsan_acquire(mutex);
}

bool tryLockMutex(void* mutex, int timeout)
{
    static bool (*const tryLock)(void*, int) = ofQt<bool (*)(void*, int)>("_ZN6QMutex7tryLockEi");
    bool const isLocked = tryLock(mutex, timeout);
    if (isLocked)
        __tsan_acquire(mutex);
    return isLocked;
}

void unlockMutex(void* mutex)
{
    static void (*const unlock)(void*) = ofQt<void (*)(void*)>("_ZN6QMutex6unlockEv");
    __tsan_release(mutex);
    unlock(mutex);
}
