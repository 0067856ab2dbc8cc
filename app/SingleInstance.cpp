// SPDX-License-Identifier: MIT
#include "app/SingleInstance.h"

#include "models/Paths.h"
#include "platform/SessionBusConnection.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

QString busName() {
    return QStringLiteral("org.sayloft.Sayloft");
}

QString objectPath() {
    return QStringLiteral("/org/sayloft/Sayloft");
}

/// Negative where that cannot be.
int openFolder(const QString& path) {
    return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

/// What is made while this exists is its user's alone. Before other threads make files.
class PrivateUmask {
public:
    PrivateUmask() : m_before(::umask(077)) {}
    ~PrivateUmask() { ::umask(m_before); }
    PrivateUmask(const PrivateUmask&) = delete;
    PrivateUmask& operator=(const PrivateUmask&) = delete;

private:
    const mode_t m_before;
};

}  // namespace

SingleInstance::SingleInstance(SessionBusConnection& connection)
    : m_connection(connection), m_lock(DATA_DIR + QStringLiteral("/sayloft.lock")) {
    // Only a lock whose process is gone is stale, however old it is.
    m_lock.setStaleLockTime(0);
}

SingleInstance::~SingleInstance() {
    if (m_folder >= 0)
        ::close(m_folder);
}

bool SingleInstance::claim() {
    ensureDataDir();
    if (isOther()) {
        activateTheOther();
        return false;
    }
    takeName();
    connect(&m_connection, &SessionBusConnection::restored, this, [this] { takeName(); });
    return true;
}

bool SingleInstance::isOther() {
    const bool isLocked = tryLock();
    if (!isLocked && m_lock.error() == QLockFile::LockFailedError)
        return true;
    // Where the file cannot be written, as on a full disk, the folder is all that can be locked.
    // Where that cannot be either, a second copy is the lesser evil.
    if (lockFolder())
        return false;
    m_lock.unlock();
    return true;
}

// That needs no room, and ends with the process.
bool SingleInstance::lockFolder() {
    m_folder = openFolder(DATA_DIR);
    // In a home that is read-only there may be none.
    if (m_folder < 0)
        m_folder = openFolder(QFileInfo(DATA_DIR).path());
    return m_folder < 0 || ::flock(m_folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool SingleInstance::tryLock() {
    // QLockFile leaves it to the umask who may read what it makes.
    const PrivateUmask nobodyElse;
    if (m_lock.tryLock(0))
        return true;
    qint64 pid = 0;
    QString host;
    QString program;
    if (m_lock.getLockInfo(&pid, &host, &program))
        return false;
    // It names nobody: a start that was killed in the middle left it, unless it is quite new.
    m_lock.setStaleLockTime(std::chrono::milliseconds(5s).count());
    const bool isLocked = m_lock.tryLock(0);
    m_lock.setStaleLockTime(0);
    return isLocked;
}

void SingleInstance::takeName() {
    std::optional<QDBusConnection> bus = m_connection.bus();
    if (!bus)
        return;
    // The object comes first: whoever sees the name may call it at once.
    bus->registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    // Without waiting: a bus may freeze when it has just come back.
    constexpr uint doNotQueue = 4;
    bus->interface()->asyncCall(QStringLiteral("RequestName"), busName(), doNotQueue);
}

void SingleInstance::activateTheOther() const {
    const std::optional<QDBusConnection>& bus = m_connection.bus();
    qint64 pid = 0;
    QString host;
    QString program;
    if (!bus || !m_lock.getLockInfo(&pid, &host, &program))
        return;
    // The name may belong to the copy of another user on the same bus.
    const QDBusReply<uint> owner = bus->interface()->servicePid(busName());
    if (!owner.isValid() || owner.value() != pid)
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        busName(), objectPath(), QStringLiteral("org.freedesktop.Application"),
        QStringLiteral("Activate"));
    call << QVariantMap();
    bus->call(call, QDBus::Block, std::chrono::milliseconds(3s).count());
}

void SingleInstance::Activate(const QVariantMap& /*platformData*/) {
    if (onActivate)
        onActivate();
}

void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& /*action*/, const QVariantList& /*parameters*/,
                                    const QVariantMap& platformData) {
    Activate(platformData);
}

}  // namespace sayloft
