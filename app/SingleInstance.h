// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace sayloft {

class SessionBusConnection;

/// Sees to it that one copy of the program runs per user, which is per home directory: a lock file
/// in DATA_DIR decides, and where that cannot be written a lock of the folder itself. A second copy
/// finds the first by its name on the session bus, where there is one, and asks it to come to the
/// front. Main thread.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// The connection outlives this.
    explicit SingleInstance(SessionBusConnection& connection);
    ~SingleInstance() override;

    /// True when this copy is the one. Otherwise the copy that runs has been asked to come to the
    /// front and this one should end.
    [[nodiscard]] bool claim();

    /// Called when another copy was started.
    std::function<void()> onActivate;

    // The org.freedesktop.Application interface; desktops start and activate programs with it.
public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameters,
                                     const QVariantMap& platformData);

private:
    [[nodiscard]] bool isOther();
    [[nodiscard]] bool tryLock();
    /// False only where another copy has locked it.
    [[nodiscard]] bool lockFolder();
    void takeName();
    void activateTheOther() const;

    SessionBusConnection& m_connection;
    QLockFile m_lock;
    int m_folder = -1;  ///< open and locked while this copy is the one
};

}  // namespace sayloft
