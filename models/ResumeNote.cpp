// SPDX-License-Identifier: MIT
#include "models/ResumeNote.h"

#include "storage/Json.h"
#include "storage/PrivateFolder.h"
#include "storage/WholeFile.h"

#include <QSaveFile>

namespace sayloft {
namespace {

QByteArray textIn(const Json& note, const char* key) {
    const auto found = note.find(key);
    return found == note.end() ? QByteArray() : readString(*found).value_or(QString()).toUtf8();
}

std::optional<qint64> sizeIn(const Json& note) {
    const auto found = note.find("size");
    const auto size = found == note.end() ? std::nullopt : readInteger(*found);
    return size && *size >= 0 ? std::optional<qint64>(*size) : std::nullopt;
}

}  // namespace

std::optional<ResumeNote> ResumeNote::load(const QString& path) {
    const auto content = readWholeFile(path);
    const auto json = content ? parseJson(*content) : std::nullopt;
    if (!json || !json->is_object())
        return std::nullopt;
    ResumeNote note{.url = QUrl::fromEncoded(textIn(*json, "url"), QUrl::StrictMode),
                    .etag = textIn(*json, "etag"),
                    .size = sizeIn(*json),
                    .sha256 = textIn(*json, "sha256")};
    if (!note.url.isValid() || !isStrongEntityTag(note.etag))
        return std::nullopt;
    return note;
}

void ResumeNote::save(const QString& path) const {
    Json note;
    note["url"] = toJson(QString::fromUtf8(url.toEncoded()));
    note["etag"] = toJson(QString::fromUtf8(etag));
    if (size)
        note["size"] = *size;
    if (!sha256.isEmpty())
        note["sha256"] = toJson(QString::fromUtf8(sha256));
    // Whenever the program or the machine is cut short, the old note or the new one is there.
    QSaveFile file(path);
    // WORKAROUND: commit() of Qt 6.4 does not see that the disk is full, and moves an empty file.
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(ownersAlone) &&
        file.write(writeJson(note)) >= 0 && file.flush())
        static_cast<void>(file.commit());
}

bool isStrongEntityTag(const QByteArray& etag) {
    if (etag.size() < 2 || !etag.startsWith('"') || !etag.endsWith('"'))
        return false;
    // Anything else could not be told apart from the syntax of a header once it is sent back.
    for (const char letter : etag.mid(1, etag.size() - 2)) {
        const auto code = static_cast<unsigned char>(letter);
        if (code <= 0x20 || code == '"' || code >= 0x7f)
            return false;
    }
    return true;
}

}  // namespace sayloft
