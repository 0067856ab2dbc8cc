// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

namespace sayloft {

/// What a file of the program is created with: it is nobody's business but the user's.
constexpr QFile::Permissions ownersAlone = QFile::ReadOwner | QFile::WriteOwner;

/// Creates the folder and its missing parents, mode 0700 each; every error is ignored.
void makePrivateFolder(const QString& path);

/// Takes everybody else's rights to the folder and all that is in it away, whatever an older
/// version or another program has left there. Links are not followed, and of the files in `shared`
/// only the folder that they lie in is closed.
void closeToOthers(const QString& folder, const QString& shared);

}  // namespace sayloft
