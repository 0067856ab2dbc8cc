// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <cstdint>
#include <deque>
#include <optional>

namespace sayloft {

class KeyPoster;

struct PasteOptions {
    bool pressEnter = false;
    bool keepInClipboard = false;
};

/// Puts text into whatever has the keyboard focus: by way of the clipboard and the paste key, after
/// which what was on the clipboard comes back. Nothing is reported: where keys cannot be typed, the
/// text is on the clipboard until then. Main thread; never blocks.
class Paster : public QObject {
public:
    /// Both must outlive it.
    Paster(Clipboard& clipboard, KeyPoster& keyPoster);

    /// To be called when a paste is likely to follow: lets the clipboard be read meanwhile.
    void prepare();

    /// Puts back now what a paste has taken away, whether its target has pasted or not: to be
    /// called on the way out.
    void restoreForGood();

    /// Nothing at all for an empty text. While an earlier paste has not been taken by its target
    /// this one waits for it, so that no target gets another one's text.
    void paste(const QString& text, PasteOptions options);

    /// Puts text on the clipboard to stay there: nothing that was to be put back replaces it.
    void copy(const QString& text);

private:
    struct Job {
        QString text;
        PasteOptions options;
        std::optional<ClipboardSnapshot> before;
        QElapsedTimer sincePasteKey;
        std::int64_t fetchedAt = 0;  ///< in ms, by `sincePasteKey`
    };

    void startNext();
    void saveClipboard();
    void takeClipboard();
    void pasteKeyPosted();
    void textFetched();
    void keysDone();
    void restoreLater();
    void restoreNow();

    Clipboard& m_clipboard;
    KeyPoster& m_keyPoster;
    std::deque<Job> m_jobs;                        ///< the first one is under way
    std::optional<ClipboardSnapshot> m_toRestore;  ///< waits for its time
    std::uint64_t m_generation = 0;                ///< of the paste that has the clipboard
};

}  // namespace sayloft
