// SPDX-License-Identifier: MIT
#include "storage/Log.h"

#include "models/Paths.h"
#include "storage/PrivateFolder.h"

#include <QFile>

namespace sayloft {

void logf(const QString& message) {
    const QByteArray line = message.toUtf8() + '\n';
    QFile log(LOG_URL);
    // Append mode places every write at the end of the file as it is then, whichever thread or
    // process wrote last.
    const auto append = QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
    if (!log.open(append | QIODevice::ExistingOnly)) {
        ensureDataDir();
        if (!log.open(append, ownersAlone))
            return;
    }
    log.write(line);
}

}  // namespace sayloft
