// SPDX-License-Identifier: MIT
#include "storage/StoredFiles.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/PrivateFolder.h"

namespace sayloft {

void mendStoredFiles() {
    closeToOthers(DATA_DIR, DOWNLOAD_MODELS_DIR);
    Config::file().mend();
    History::file().mend();
}

bool areSettingsUnreadable() {
    const KeptFile::Source source = Config::file().read().source;
    return source == KeptFile::Source::broken || source == KeptFile::Source::unreadable;
}

}  // namespace sayloft
