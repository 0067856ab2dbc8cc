// SPDX-License-Identifier: MIT
// Part of every program under ThreadSanitizer.
// WORKAROUND: GCC 12's ThreadSanitizer stops following the locks of a thread whose clone() shares
// its memory with the child, as QProcess of Qt 6.4 has it: afterwards it sees races everywhere.
#include <cstdarg>

#include <sched.h>

extern "C" {

// NOLINTNEXTLINE(bugprone-reserved-identifier): the C library has no other name for it
int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...);

int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    va_list rest;
    va_start(rest, argument);
    void* const descriptor = va_arg(rest, void*);  // where the child's is to be put
    va_end(rest);
    return __clone(function, stack, flags & ~CLONE_VM, argument, descriptor);
}
}
