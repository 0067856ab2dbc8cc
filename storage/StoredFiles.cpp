// SPDX-License-Identifier: MIT
#include "storage/StoredFiles.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/PrivateFolder.h"

namespace sayloft {

bool mendStoredFiles() {
    closeToOthers(DATA_DIR, DOWNLOAD_MODELS_DIR);
    const KeptFile::Source settings = Config::file().mend();
    History::file().mend();
    return settings != KeptFile::Source::broken && settings != KeptFile::Source::unreadable;
}

}  // namespace sayloft
