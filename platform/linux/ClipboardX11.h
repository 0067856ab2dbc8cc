// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"

#include <functional>
#include <memory>

namespace sayloft {

/// The X11 clipboard, on a connection and a thread of its own: an owner that hangs blocks nobody,
/// and requests for our text are served whatever the main thread is doing.
///
/// Main thread only. Callbacks come by a queued call, never before the function returns and never
/// after this object is gone. Without an X server, or after it has gone, every callback still
/// comes.
class ClipboardX11 final : public Clipboard {
public:
    /// Connects to the server that DISPLAY names.
    ClipboardX11();
    ~ClipboardX11() override;
    ClipboardX11(const ClipboardX11&) = delete;
    ClipboardX11& operator=(const ClipboardX11&) = delete;

    void prepareSnapshot() override;
    void takeSnapshot(SnapshotTaken taken) override;
    void setText(const QString& text, ClipboardStay stay) override;
    void whenTextFetched(std::chrono::milliseconds deadline, TextFetched fetched) override;
    void restore(const ClipboardSnapshot& snapshot) override;
    void handOver() override;

    // For the key poster. `setText` returns before the X server knows of the new owner, and a
    // target that gets the paste key first would paste the old clipboard. So before it sends the
    // key it calls one of these two and goes on in `ready`.

    /// Calls `ready` once the text last set is the clipboard (or cannot become it).
    void whenOffered(std::function<void()> ready);

    /// The same, and offers the text on PRIMARY too, which is what terminals paste with
    /// Shift+Insert: saves PRIMARY, takes it, then calls `ready`. That takes a millisecond or two,
    /// 0.4 s where the owner of PRIMARY hangs, never more than a second.
    ///
    /// PRIMARY is given back by itself, whether or not `restore` is called: 0.3 s after `ready` and
    /// 50 ms after the focused application has last read the text, at most after 2 s; with
    /// `restore` at once. Never over a newer selection of the user, and not where PRIMARY could not
    /// be saved. Call it only for terminals: other programs drop their selection, which the paste
    /// is to replace, when they lose PRIMARY.
    void offerOnPrimary(std::function<void()> ready);

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

}  // namespace sayloft
