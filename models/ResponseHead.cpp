// SPDX-License-Identifier: MIT
#include "models/ResponseHead.h"

#include <QRegularExpression>

namespace sayloft {
namespace {

std::optional<qint64> number(const QString& digits) {
    static const QRegularExpression form(QStringLiteral(R"(^\d+$)"));
    bool isNumber = false;
    const qint64 value = digits.toLongLong(&isNumber);
    return isNumber && form.match(digits).hasMatch() ? std::optional(value) : std::nullopt;
}

/// Of several headers of that name the first; empty when there is none.
QByteArray header(CURL* transfer, const char* name) {
    constexpr int ofTheLastAnswer = -1;
    curl_header* found = nullptr;
    const auto result = curl_easy_header(transfer, name, 0, CURLH_HEADER, ofTheLastAnswer, &found);
    return result == CURLHE_OK ? QByteArray(found->value) : QByteArray();
}

int statusOf(CURL* transfer) {
    long status = 0;
    curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

std::optional<qint64> lengthOf(CURL* transfer, int status) {
    const bool neverHasBody = status == 204 || status == 304;
    if (neverHasBody)
        return 0;
    curl_off_t length = -1;
    curl_easy_getinfo(transfer, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    return length < 0 ? std::nullopt : std::optional<qint64>(length);
}

QUrl redirectOf(int status, const QByteArray& location, const QUrl& url) {
    const bool redirects =
        status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    const QUrl target = QUrl::fromEncoded(location);
    return redirects && target.isValid() ? url.resolved(target) : QUrl();
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

ResponseHead ResponseHead::of(CURL* transfer, const QUrl& url) {
    ResponseHead head;
    head.status = statusOf(transfer);
    head.redirect = redirectOf(head.status, header(transfer, "Location"), url);
    head.length = lengthOf(transfer, head.status);
    head.range = ContentRange::parse(header(transfer, "Content-Range"));
    head.etag = header(transfer, "ETag");
    const QByteArray encoding = header(transfer, "Content-Encoding").toLower();
    head.isEncoded = !encoding.isEmpty() && encoding != "identity";
    head.linked = LinkedEntity::fromHeaders(header(transfer, "X-Linked-ETag"),
                                            header(transfer, "X-Linked-Size"));
    return head;
}

}  // namespace sayloft
