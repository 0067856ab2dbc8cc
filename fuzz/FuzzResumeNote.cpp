// SPDX-License-Identifier: MIT
// The note beside a model that has arrived in part: a program that was killed may have left it.
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/MemoryFile.h"
#include "models/ResumeNote.h"

#include <QTemporaryDir>

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFile file;
    file.setContent(fuzz::FuzzInput(data, size).rest());
    const auto note = ResumeNote::load(QString::fromStdString(file.path()));
    if (!note)
        return 0;
    fuzz::require(isStrongEntityTag(note->etag));
    fuzz::require(note->size.value_or(0) >= 0);
    static const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("note"));
    note->save(copy);
    fuzz::require(ResumeNote::load(copy) == note);
    return 0;
}
