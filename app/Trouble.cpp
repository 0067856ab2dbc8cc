// SPDX-License-Identifier: MIT
#include "app/Trouble.h"

namespace sayloft {

TroubleText troubleText(Trouble trouble) {
    switch (trouble) {
        case Trouble::keysOutOfReach:
            return {QStringLiteral("keyboard out of reach"),
                    QStringLiteral("Sayloft cannot reach the keyboard"),
                    QStringLiteral("The X server lacks XKEYBOARD or XTEST, so chords are not seen "
                                   "and text cannot be pasted. Log in to an ordinary X11 session, "
                                   "or have the server started with both extensions."),
                    QStringLiteral("What to do")};
        case Trouble::helperMissing:
            return {QStringLiteral("speech helper missing"),
                    QStringLiteral("Sayloft's speech helper is missing"),
                    QStringLiteral("The program parakeet-server is not where Sayloft looks for it. "
                                   "Install Sayloft again, then start it anew.")};
        case Trouble::modelMissing:
            return {QStringLiteral("speech model missing"),
                    QStringLiteral("The speech model is missing"),
                    QStringLiteral("Nothing can be recognised without it. Download it in the "
                                   "first window, or choose another model in Sayloft's settings."),
                    QStringLiteral("Settings")};
        case Trouble::portTaken:
            return {QStringLiteral("port 8090 taken"),
                    QStringLiteral("Another program uses Sayloft's port"),
                    QStringLiteral("Speech recognition needs port 8090 of this computer. End the "
                                   "program that listens there (“ss -tlnp” names it), then start "
                                   "Sayloft anew.")};
        case Trouble::helperGone:
            return {QStringLiteral("speech helper has ended"),
                    QStringLiteral("Sayloft's speech helper has ended"),
                    QStringLiteral("Often the memory does not suffice for the model: close other "
                                   "programs or choose a smaller model in Sayloft's settings, then "
                                   "start Sayloft anew."),
                    QStringLiteral("Settings")};
        case Trouble::diskFull:
            return {QStringLiteral("disk full"), QStringLiteral("The disk is full"),
                    QStringLiteral("There is no room in ~/.sayloft for the settings and the "
                                   "history. What you say is kept in memory and transcribed all "
                                   "the same, up to ten minutes at a time. Make room; nothing "
                                   "needs to be started anew.")};
        case Trouble::folderRefuses:
            return {QStringLiteral("~/.sayloft not writable"),
                    QStringLiteral("Sayloft cannot write to its folder"),
                    QStringLiteral("What you say is kept for a moment in ~/.sayloft, which is "
                                   "read-only or belongs to somebody else, so that nothing can be "
                                   "dictated. Give yourself the right to write there.")};
        case Trouble::soundServerGone:
            return {QStringLiteral("no sound server"),
                    QStringLiteral("Sayloft finds no sound server"),
                    QStringLiteral("Neither PipeWire nor PulseAudio answers, so there is no "
                                   "microphone to record from. Log out and in again, or start the "
                                   "sound server; Sayloft finds it by itself."),
                    QStringLiteral("What to do")};
        case Trouble::soundServerRefuses:
            return {QStringLiteral("sound server refuses"),
                    QStringLiteral("The sound server refuses Sayloft"),
                    QStringLiteral("It belongs to somebody else, or to another login, so there is "
                                   "no microphone to record from. Start Sayloft as the user of the "
                                   "desktop and not as root."),
                    QStringLiteral("What to do")};
        case Trouble::noMicrophone:
            return {QStringLiteral("no microphone"), QStringLiteral("Sayloft finds no microphone"),
                    QStringLiteral("Nothing that you say can be heard. Plug a microphone in, or "
                                   "switch it on in the sound settings; Sayloft finds it by "
                                   "itself."),
                    QStringLiteral("What to do")};
        case Trouble::settingsUnreadable:
            return {
                QStringLiteral("settings unreadable"),
                QStringLiteral("Sayloft cannot read its settings"),
                QStringLiteral("The defaults, or what was saved last, count instead of "
                               "~/.sayloft/config.json, which is damaged or out of reach. "
                               "~/.sayloft/sayloft.log tells more, and where a damaged text and "
                               "what was saved before it are kept. Put it right, then start "
                               "Sayloft anew.")};
        case Trouble::noTrayHost:
            return {QStringLiteral("no place for the icon"),
                    QStringLiteral("Sayloft runs, but its icon has no place"),
                    QStringLiteral("This desktop shows no tray icons. Dictation works all the "
                                   "same. GNOME "
                                   "shows the icon with its AppIndicator extension."),
                    QStringLiteral("Settings")};
    }
    return {};
}

}  // namespace sayloft
