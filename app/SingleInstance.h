// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

namespace sayloft {

/// Sees to it that one copy of the program runs per session: through a name on the session bus, or
/// through a lock file in DATA_DIR where there is no bus. Main thread.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    SingleInstance();
    ~SingleInstance() override;

    /// True when this copy is the one. Otherwise the copy that runs has been asked to come to the
    /// front, where there is a bus to ask over, and this one should end.
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
    [[nodiscard]] bool claimName();
    [[nodiscard]] bool claimLockFile();

    std::unique_ptr<QLockFile> m_lock;
};

}  // namespace sayloft
