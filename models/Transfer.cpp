// SPDX-License-Identifier: MIT
#include "models/Transfer.h"

#include "models/DownloadAddress.h"
#include "storage/Log.h"

#include <algorithm>
#include <utility>

namespace sayloft {
namespace {

constexpr int redirectLimit = 10;

QList<QByteArray> headersFor(const std::optional<StoredPart>& stored) {
    if (!stored)
        return {};
    return {"Range: bytes=" + QByteArray::number(stored->length) + '-',
            "If-Range: " + stored->note.etag};
}

}  // namespace

Transfer::Transfer(TransferOrder order, QObject* parent)
    : QObject(parent), m_order(std::move(order)), m_file(m_order.destination) {
    m_stall.setSingleShot(true);
    m_stall.setInterval(m_order.stall);
    connect(&m_stall, &QTimer::timeout, this, [this] {
        failDownload(QStringLiteral("nothing has come for %1 s")
                         .arg(std::chrono::duration<double>(m_order.stall).count()));
    });
}

void Transfer::start() {
    const auto note = m_file.note();
    if (!note || note->url != m_order.url)
        return request(m_order.url);
    // Of a file that is all there the last byte is asked for again: only the host can tell that it
    // is still the same file.
    const qint64 length = std::min(m_file.size(), note->size.value_or(m_file.size()) - 1);
    if (length < 1)
        return request(m_order.url);
    m_stored = StoredPart{.note = *note, .length = length};
    if (note->sha256.isEmpty())
        return request(m_order.url);
    m_storedDigest = std::make_unique<StoredDigest>(m_file.path(), length);
    digestStored();
}

// Before the request, so that no host has to wait for it.
void Transfer::digestStored() {
    switch (m_storedDigest->feed(m_hash)) {
        case StoredDigest::Progress::more:
            QMetaObject::invokeMethod(
                this, [this] { digestStored(); }, Qt::QueuedConnection);
            return;
        case StoredDigest::Progress::complete:
            m_storedDigest.reset();
            return request(m_order.url);
        case StoredDigest::Progress::failed:
            m_storedDigest.reset();
            return startOver();
    }
}

// At most once: afterwards there is nothing to continue.
void Transfer::startOver() {
    m_stored.reset();
    m_linked = {};
    m_redirects = 0;
    request(m_order.url);
}

void Transfer::request(const QUrl& url) {
    dropFetch();
    if (!mayDownloadFrom(url))
        return failDownload(QStringLiteral("not an HTTPS address: ") + url.toDisplayString());
    m_fetch = new HttpFetch(url, headersFor(m_stored),
                            {.onHead = [this](const ResponseHead& head) { headArrived(head); },
                             .onBody = [this](QByteArrayView bytes) { return take(bytes); },
                             .onEnd = [this](const QString& error) { fetchEnded(error); }},
                            this);
    m_stall.start();
}

void Transfer::dropFetch() {
    if (m_fetch)
        m_fetch->giveUp();
    m_fetch.clear();
}

void Transfer::headArrived(const ResponseHead& head) {
    m_stall.start();
    m_linked.updateFrom(head.linked);
    if (!head.redirect.isEmpty())
        return followRedirect(head);
    if (head.isSuccess())
        return beginBody(head);
    if (head.status == 416 && m_stored)
        return startOver();
    end(false);
}

void Transfer::followRedirect(const ResponseHead& head) {
    if (++m_redirects > redirectLimit)
        return failDownload(QStringLiteral("too many redirects"));
    const bool isOther =
        m_stored && !head.linked.sha256.isEmpty() && head.linked.sha256 != m_stored->note.sha256;
    if (isOther)
        m_stored.reset();
    request(head.redirect);
}

void Transfer::beginBody(const ResponseHead& head) {
    const BodyPlan plan = planBody(head, m_linked, m_stored);
    if (plan.verdict == BodyPlan::Verdict::refuse)
        return failDownload(plan.problem);
    if (plan.verdict == BodyPlan::Verdict::startOver)
        return startOver();
    m_body = plan;
    m_received = plan.offset;
    if (!openFile()) {
        // Where the file cannot be written it cannot be moved to either.
        logf(QStringLiteral("move failed: ") + m_file.error());
        return end(false);
    }
    if (!hasSpace())
        return;
    if (isStrongEntityTag(head.etag))
        m_file.keepFor(
            {.url = m_order.url, .etag = head.etag, .size = plan.size, .sha256 = m_linked.sha256});
}

bool Transfer::openFile() {
    if (m_body->offset > 0)
        return m_file.continueAt(m_body->offset);
    m_hash.reset();
    return m_file.startAnew();
}

bool Transfer::hasSpace() {
    const qint64 needed = m_body->size ? *m_body->size - m_received : 0;
    const qint64 free = m_file.freeSpace();
    // Nobody knows how much is free on some file systems.
    if (free < 0 || needed <= free)
        return true;
    failDownload(QStringLiteral("not enough disk space: %1 bytes are needed and %2 are free")
                     .arg(needed)
                     .arg(free));
    return false;
}

bool Transfer::take(QByteArrayView bytes) {
    if (m_body->size && m_received + bytes.size() > *m_body->size) {
        m_file.remove();
        failDownload(
            QStringLiteral("more has come than the %1 bytes announced").arg(*m_body->size));
        return false;
    }
    if (!m_file.append(bytes)) {
        // A disk that our part has filled is of no use to anybody.
        m_file.remove();
        failDownload(m_file.error());
        return false;
    }
    if (!m_linked.sha256.isEmpty())
        m_hash.add(bytes);
    m_received += bytes.size();
    report();
    // From the end of the writing: a slow disk is not a host that stalls.
    m_stall.start();
    return true;
}

void Transfer::report() {
    if (!m_body->size || *m_body->size < 1)
        return;
    const double fraction = static_cast<double>(m_received) / static_cast<double>(*m_body->size);
    if (const auto due = m_throttle.pass(fraction, ProgressThrottle::Clock::now()))
        m_order.onProgress(*due);
}

void Transfer::fetchEnded(const QString& error) {
    if (error.isEmpty())
        complete();
    else
        failDownload(error);
}

void Transfer::complete() {
    if (m_body->size && m_received != *m_body->size)
        return failDownload(QStringLiteral("the connection ended after %1 of %2 bytes")
                                .arg(m_received)
                                .arg(*m_body->size));
    if (!m_linked.sha256.isEmpty() && m_hash.hex() != m_linked.sha256) {
        m_file.remove();
        return failDownload(QStringLiteral("the file does not have the SHA-256 announced"));
    }
    // The host has done its part.
    m_stall.stop();
    m_sync = std::make_unique<DiskSync>(
        m_file.handle(), [this](int error) { putInPlace(error); }, nullptr);
}

void Transfer::putInPlace(int syncError) {
    const bool isInPlace = syncError == 0 && m_file.putInPlace();
    if (!isInPlace)
        logf(QStringLiteral("move failed: ") +
             (syncError == 0 ? m_file.error() : qt_error_string(syncError)));
    end(isInPlace);
}

void Transfer::failDownload(const QString& reason) {
    logf(QStringLiteral("download error: ") + reason);
    end(false);
}

void Transfer::end(bool succeeded) {
    m_stall.stop();
    dropFetch();
    if (const auto fraction = m_throttle.heldBack())
        m_order.onProgress(*fraction);
    if (!succeeded)
        m_file.leave();
    m_order.onDone(succeeded);
    deleteLater();
}

}  // namespace sayloft
