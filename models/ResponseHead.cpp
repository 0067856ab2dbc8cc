// SPDX-License-Identifier: MIT
#include "models/ResponseHead.h"

#include <QHash>
#include <QRegularExpression>

namespace sayloft {
namespace {

/// Values by the names of their headers in lower case; of several the first.
using Headers = QHash<QByteArray, QByteArray>;

std::optional<qint64> number(const QString& digits) {
    static const QRegularExpression form(QStringLiteral(R"(^\d+$)"));
    bool isNumber = false;
    const qint64 value = digits.toLongLong(&isNumber);
    return isNumber && form.match(digits).hasMatch() ? std::optional(value) : std::nullopt;
}

Headers headersIn(const QList<QByteArray>& lines) {
    Headers headers;
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        const QByteArray name = line.left(colon).toLower();
        if (colon > 0 && !headers.contains(name))
            headers.insert(name, line.mid(colon + 1).trimmed());
    }
    return headers;
}

int statusIn(const QByteArray& line) {
    static const QRegularExpression form(QStringLiteral(R"(^HTTP/1\.\d (\d\d\d)(\s|$))"));
    return form.match(QString::fromLatin1(line)).captured(1).toInt();
}

QUrl redirectOf(int status, const QByteArray& location, const QUrl& url) {
    const bool redirects =
        status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    return redirects && !location.isEmpty() ? url.resolved(QUrl::fromEncoded(location)) : QUrl();
}

// False when the headers do not say where the body ends.
bool readFraming(const Headers& headers, ResponseHead& head) {
    const QByteArray transfer = headers.value("transfer-encoding").toLower();
    head.isChunked = transfer == "chunked";
    if (!transfer.isEmpty())
        return head.isChunked;
    const QByteArray length = headers.value("content-length");
    head.length = number(QString::fromLatin1(length));
    const bool neverHasBody = head.status == 204 || head.status == 304;
    if (neverHasBody)
        head.length = 0;
    return head.length || length.isEmpty();
}

}  // namespace

std::optional<ContentRange> ContentRange::parse(const QByteArray& value) {
    static const QRegularExpression form(QStringLiteral(R"(^\s*bytes\s+(\d+)-(\d+)/(\d+|\*)\s*$)"),
                                         QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(QString::fromLatin1(value));
    const auto first = number(match.captured(1));
    const auto last = number(match.captured(2));
    if (!first || !last || *last < *first)
        return std::nullopt;
    return ContentRange{.first = *first, .last = *last, .size = number(match.captured(3))};
}

std::optional<ResponseHead> ResponseHead::parse(const QByteArray& bytes, const QUrl& url) {
    const QList<QByteArray> lines = bytes.split('\n');
    ResponseHead head;
    head.status = statusIn(lines.front().trimmed());
    const Headers headers = headersIn(lines.mid(1));
    if (head.status == 0 || !readFraming(headers, head))
        return std::nullopt;
    const QByteArray encoding = headers.value("content-encoding").toLower();
    head.redirect = redirectOf(head.status, headers.value("location"), url);
    head.range = ContentRange::parse(headers.value("content-range"));
    head.etag = headers.value("etag");
    head.isEncoded = !encoding.isEmpty() && encoding != "identity";
    head.linked =
        LinkedEntity::fromHeaders(headers.value("x-linked-etag"), headers.value("x-linked-size"));
    return head;
}

}  // namespace sayloft
