// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

/// Why dictation does not work, or not as the user expects it. The most severe first.
enum class Trouble {
    keysOutOfReach,      ///< modifiers cannot be watched, or keys not be typed
    helperMissing,       ///< the speech helper's executable is not there
    modelMissing,        ///< the file of the configured model is not there
    portTaken,           ///< another program listens where the helper should
    helperGone,          ///< the speech helper has ended by itself
    diskFull,            ///< no room for a recording
    folderRefuses,       ///< the program's folder cannot be written to
    soundServerGone,     ///< no answer from the sound server
    soundServerRefuses,  ///< the sound server does not let us in
    noMicrophone,        ///< the sound server has nothing to record from
    settingsUnreadable,  ///< the settings are there, but the defaults count
    noTrayHost,          ///< nothing shows the program's icon
};

/// What the user is told.
struct TroubleText {
    QString phrase;       ///< two to five words, for a tooltip
    QString summary;      ///< one line
    QString remedy;       ///< what to do about it, in two or three sentences
    QString action = {};  ///< label of what a click can do; empty where nothing helps
};

[[nodiscard]] TroubleText troubleText(Trouble trouble);

}  // namespace sayloft
