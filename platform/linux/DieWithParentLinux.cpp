// SPDX-License-Identifier: MIT
#include "platform/DieWithParent.h"

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

namespace sayloft {

std::function<void()> dieWithParent() {
    return [parent = ::getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        // A parent that ended before the line above is not noticed by it.
        if (::getppid() != parent)
            ::_exit(1);
    };
}

}  // namespace sayloft
