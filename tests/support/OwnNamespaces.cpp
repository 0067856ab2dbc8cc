// SPDX-License-Identifier: MIT
#include "tests/support/OwnNamespaces.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sayloft::test {
namespace {

void check(bool succeeded, const char* what) {
    if (!succeeded)
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

void writeTo(const char* path, const std::string& text) {
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    const bool isWritten =
        file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (file >= 0)
        ::close(file);
    check(isWritten, path);
}

/// Whoever is not root may do so where he is alone, and is root there.
void enter(int namespaces) {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user == 0)
        return check(::unshare(namespaces) == 0, "a namespace of our own");
    check(::unshare(namespaces | CLONE_NEWUSER) == 0, "a user namespace of our own");
    writeTo("/proc/self/setgroups", "deny");
    writeTo("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    writeTo("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
}

/// So that a question for a name is sent, and can be seen, where nobody answers it.
void nameYourselfNameServer() {
    QTemporaryFile settings;
    check(settings.open() && settings.write("nameserver 127.0.0.1\n") > 0 && settings.flush() &&
              settings.setPermissions(QFile::ReadOwner | QFile::ReadOther),
          "settings of name servers");
    const QByteArray path = QFile::encodeName(settings.fileName());
    check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
    check(::mount(path.constData(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr) == 0,
          "a resolv.conf");
}

}  // namespace

void leaveTheNetwork() {
    enter(CLONE_NEWNET | CLONE_NEWNS);
    nameYourselfNameServer();
    const int any = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    check(any >= 0, "a socket");
    ifreq loopback{};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool isUp = ::ioctl(any, SIOCSIFFLAGS, &loopback) == 0;
    ::close(any);
    check(isUp, "the loopback");
}

SmallDisk::SmallDisk(const QString& folder, const QByteArray& options)
    : m_folder(QFile::encodeName(folder)) {
    QDir().mkpath(folder);
    enter(CLONE_NEWNS);
    check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
    check(::mount("tmpfs", m_folder.constData(), "tmpfs", 0, options.constData()) == 0, "a tmpfs");
}

SmallDisk::~SmallDisk() {
    makeWritable();
    ::umount2(m_folder.constData(), MNT_DETACH);
}

// Over itself: a file that is open for writing keeps the disk from becoming read-only, but not the
// place where it is seen.
void SmallDisk::makeReadOnly() {
    check(::mount(m_folder.constData(), m_folder.constData(), nullptr, MS_BIND, nullptr) == 0 &&
              ::mount(nullptr, m_folder.constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY,
                      nullptr) == 0,
          "a read-only disk");
    m_isReadOnly = true;
}

void SmallDisk::makeWritable() {
    if (std::exchange(m_isReadOnly, false))
        ::umount2(m_folder.constData(), MNT_DETACH);
}

void SmallDisk::fill() {
    const int filler =
        ::open((m_folder + "/filler").constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    check(filler >= 0, "a file to fill the disk with");
    const std::array<char, 4096> bytes{};
    while (::write(filler, bytes.data(), bytes.size()) > 0) {
    }
    ::close(filler);
}

void SmallDisk::makeRoom() {
    ::unlink((m_folder + "/filler").constData());
}

}  // namespace sayloft::test
