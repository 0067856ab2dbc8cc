// SPDX-License-Identifier: MIT
#pragma once

#include "updates/Appcast.h"
#include "updates/UpdateSource.h"

#include <QNetworkAccessManager>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkReply;

namespace sayloft {

/// What a look for a newer version has found.
struct UpdateAnswer {
    QString sentence;  ///< for the user
    std::optional<Release> newer;
};

/// Looks once whether there is a newer version. Tells the server nothing but the program's own
/// version. Main thread, which it never blocks; destroying it gives up.
class UpdateCheck {
public:
    using Answered = std::function<void(const UpdateAnswer&)>;

    /// `answered` is called once, on a later turn of the main loop, after `deadline` at the latest.
    /// This object may be destroyed from within.
    UpdateCheck(UpdateSource source, Answered answered,
                std::chrono::milliseconds deadline = std::chrono::seconds(15));
    ~UpdateCheck();
    UpdateCheck(const UpdateCheck&) = delete;
    UpdateCheck& operator=(const UpdateCheck&) = delete;

private:
    void fetch();
    void finished();
    void fail(const QString& sentence);
    void answer(const UpdateAnswer& answer);
    [[nodiscard]] UpdateAnswer compare(const QByteArray& feed) const;

    const UpdateSource m_source;
    Answered m_answered;
    QNetworkAccessManager m_network;
    QTimer m_deadline;
    std::unique_ptr<QNetworkReply> m_reply;
};

}  // namespace sayloft
