// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace sayloft {

// Fixed once by `fixPaths` before any thread is started, and only read afterwards. Absolute paths
// without a trailing slash.

extern QString BUNDLE_DIR;             ///< the directory that holds Contents/
extern QString ROOT_DIR;               ///< the directory that holds the bundle
extern QString DATA_DIR;               ///< ".sayloft" in the home directory
extern QString DOWNLOAD_MODELS_DIR;    ///< where downloaded models are kept
extern QStringList MODEL_SEARCH_DIRS;  ///< searched for model files in this order
extern QString PARAKEET_SERVER_BIN;    ///< the speech helper's executable
extern QString LOG_URL;                ///< the log file
extern QString TEMP_DIR;               ///< recordings; belongs to the user alone

void fixPaths(const QString& bundleDir, const QString& homeDir);

/// The bundle that the running executable lies in: `<bundle>/Contents/bin/<executable>`.
[[nodiscard]] QString bundleDirOfExecutable(const QString& executableDir);

/// Creates DATA_DIR with missing parents; every error is ignored.
void ensureDataDir();

}  // namespace sayloft
