// SPDX-License-Identifier: MIT
#pragma once

#include "models/BodyPlan.h"
#include "models/DiskSync.h"
#include "models/HttpFetch.h"
#include "models/LinkedEntity.h"
#include "models/PartialFile.h"
#include "models/ProgressThrottle.h"
#include "models/ResponseHead.h"
#include "models/Sha256.h"
#include "models/StoredDigest.h"

#include <QByteArrayView>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QtGlobal>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace sayloft {

/// What is to be downloaded, and who hears of it.
struct TransferOrder {
    QUrl url;
    QString destination;
    std::chrono::milliseconds stall;  ///< without a byte for so long, the transfer has failed
    std::function<void(double)> onProgress;
    std::function<void(bool)> onDone;  ///< called exactly once, unless the transfer is destroyed
};

/// One download from the first request to the file in its place. Lives on a thread of its own,
/// which its file work blocks, and deletes itself after `onDone`. Destroying it before that gives
/// up the download; a later one goes on from there where the host allows it.
class Transfer : public QObject {
public:
    Transfer(TransferOrder order, QObject* parent);

    void start();

private:
    void digestStored();
    void startOver();
    void request(const QUrl& url);
    void dropFetch();
    void headArrived(const ResponseHead& head);
    void followRedirect(const ResponseHead& head);
    void beginBody(const ResponseHead& head);
    [[nodiscard]] bool openFile();
    [[nodiscard]] bool hasSpace();
    [[nodiscard]] bool take(QByteArrayView bytes);
    void report();
    void fetchEnded(const QString& error);
    void complete();
    void putInPlace(int syncError);
    void failDownload(const QString& reason);
    void end(bool succeeded);

    const TransferOrder m_order;
    PartialFile m_file;
    std::optional<StoredPart> m_stored;  ///< what the requests ask to continue
    std::unique_ptr<StoredDigest> m_storedDigest;
    Sha256 m_hash;
    QPointer<HttpFetch> m_fetch;
    int m_redirects = 0;
    LinkedEntity m_linked;
    std::optional<BodyPlan> m_body;  ///< once its body is being taken
    qint64 m_received = 0;           ///< bytes of the file that are there
    ProgressThrottle m_throttle;
    QTimer m_stall;
    std::unique_ptr<DiskSync> m_sync;
};

}  // namespace sayloft
