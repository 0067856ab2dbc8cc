// SPDX-License-Identifier: MIT
#include "models/LinkedEntity.h"

namespace sayloft {
namespace {

constexpr qsizetype sha256Digits = 64;

QByteArray sha256Of(QByteArray tag) {
    tag = tag.trimmed();
    if (tag.size() >= 2 && tag.startsWith('"') && tag.endsWith('"'))
        tag = tag.mid(1, tag.size() - 2);
    const QByteArray digest = QByteArray::fromHex(tag).toHex();
    const bool isDigest = digest == tag.toLower() && digest.size() == sha256Digits;
    return isDigest ? digest : QByteArray();
}

}  // namespace

LinkedEntity LinkedEntity::fromHeaders(const QByteArray& tag, const QByteArray& size) {
    LinkedEntity entity{.sha256 = sha256Of(tag), .size = std::nullopt};
    bool isNumber = false;
    const qint64 bytes = size.trimmed().toLongLong(&isNumber);
    if (isNumber && bytes >= 0)
        entity.size = bytes;
    return entity;
}

void LinkedEntity::updateFrom(const LinkedEntity& newer) {
    if (!newer.sha256.isEmpty())
        sha256 = newer.sha256;
    if (newer.size)
        size = newer.size;
}

}  // namespace sayloft
