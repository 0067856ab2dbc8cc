// SPDX-License-Identifier: MIT
// Part of every program under ThreadSanitizer.
// WORKAROUND: GCC 12's ThreadSanitizer stops following the locks of a thread whose clone() shares
// its memory with the child, as QProcess of Qt 6.4 has it: afterwards it sees races everywhere. Nor
// does it know that a clone() forks: the child would wait forever for one of its own locks that
// another thread has just held.
#include <cstdarg>

#include <sched.h>

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): they have no other names
int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...);
/// Of ThreadSanitizer: takes its locks, and gives them back; `child` is what fork() has returned.
void __sanitizer_syscall_pre_impl_fork();
void __sanitizer_syscall_post_impl_fork(long child);
// NOLINTEND(bugprone-reserved-identifier)

struct Beginning {
    int (*function)(void*);
    void* argument;
};

static int beginChild(void* beginning) {
    __sanitizer_syscall_post_impl_fork(0);
    const auto* child = static_cast<const Beginning*>(beginning);
    return child->function(child->argument);
}

int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    va_list rest;
    va_start(rest, argument);
    void* const descriptor = va_arg(rest, void*);  // where the child's is to be put
    va_end(rest);
    Beginning beginning{function, argument};
    __sanitizer_syscall_pre_impl_fork();
    const int child = __clone(&beginChild, stack, flags & ~CLONE_VM, &beginning, descriptor);
    __sanitizer_syscall_post_impl_fork(child);
    return child;
}
}
