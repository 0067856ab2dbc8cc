// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

namespace sayloft {

/// The speech server as a child process. Lives on a thread of its own that outlives every child,
/// since a child dies with the thread that forked it; all functions block that thread.
class HelperProcess : public QObject {
public:
    /// `pkill` is the program that ends processes by name.
    explicit HelperProcess(QString pkill = QStringLiteral("/usr/bin/pkill"));
    ~HelperProcess() override;

    /// Clears away every server of this user, an earlier child included, then launches a new one.
    /// True when it runs; the log says what happened.
    [[nodiscard]] bool launch(const QString& modelPath);

    /// 0 while there is none; one that is about to end counts. Any thread.
    [[nodiscard]] qint64 childId() const { return m_childId; }

    /// Asks the child to end and waits for it; after 3 s it is killed. Nothing without a child.
    void end();

    /// Called on the thread when the child has ended although nobody here asked it to.
    std::function<void()> onGone;

private:
    void forgetHowChildEnds();
    void killStaleServers() const;
    void waitForChild();

    QString m_pkill;
    std::unique_ptr<QProcess> m_process;
    std::atomic<qint64> m_childId = 0;
};

}  // namespace sayloft
