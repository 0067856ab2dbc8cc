// SPDX-License-Identifier: MIT
#include "audio/tests/StalledFile.h"

#include <QFile>
#include <QFileInfo>

#include <condition_variable>
#include <mutex>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Gate {
    std::mutex mutex;
    std::condition_variable opened;
    bool isShut = false;
    ino_t file = 0;
    int waiting = 0;

    void pass(int descriptor) {
        std::unique_lock lock(mutex);
        struct stat status {};
        if (!isShut || ::fstat(descriptor, &status) != 0 || status.st_ino != file)
            return;
        ++waiting;
        opened.wait(lock, [this] { return !isShut; });
        --waiting;
    }
};

Gate& gate() {
    static Gate theGate;
    return theGate;
}

}  // namespace

extern "C" ssize_t write(int descriptor, const void* data, size_t size) {
    gate().pass(descriptor);
    return ::syscall(SYS_write, descriptor, data, size);
}

namespace sayloft::test {

StalledFile::StalledFile(const QString& path) {
    struct stat status {};
    ::stat(QFile::encodeName(path).constData(), &status);
    const std::lock_guard lock(gate().mutex);
    gate().file = status.st_ino;
    gate().isShut = true;
}

StalledFile::~StalledFile() {
    const std::lock_guard lock(gate().mutex);
    gate().isShut = false;
    gate().opened.notify_all();
}

bool StalledFile::holdsUpAWriter() const {
    const std::lock_guard lock(gate().mutex);
    return gate().waiting > 0;
}

}  // namespace sayloft::test
