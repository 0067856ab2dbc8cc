// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace sayloft {

/// One representation of a clipboard item: a platform type name and its bytes.
struct ClipboardRepresentation {
    QByteArray type;
    QByteArray data;

    bool operator==(const ClipboardRepresentation&) const = default;
};

/// One clipboard item in all the types that its owner declared, in their order.
using ClipboardItem = std::vector<ClipboardRepresentation>;

/// What was on the clipboard. No items: the clipboard was empty, which can be restored too.
struct ClipboardSnapshot {
    std::vector<ClipboardItem> items;

    bool operator==(const ClipboardSnapshot&) const = default;
};

/// How long text is to be on the clipboard. Text for one paste is marked, so that clipboard
/// managers do not record it.
enum class ClipboardStay { forOnePaste, forGood };

/// The clipboard that a paste key reads. Called on the main thread, which no function blocks; every
/// callback comes on the main thread and may come before the function returns.
class Clipboard {
public:
    /// Nothing when the owner did not hand everything over in time: such a clipboard is not
    /// restored.
    using SnapshotTaken = std::function<void(std::optional<ClipboardSnapshot>)>;
    using TextFetched = std::function<void()>;

    virtual ~Clipboard() = default;

    /// Starts to read the clipboard, so that a `takeSnapshot` soon after has it at hand.
    virtual void prepareSnapshot() = 0;

    /// The clipboard as it is at this call.
    virtual void takeSnapshot(SnapshotTaken taken) = 0;

    /// Replaces the clipboard by plain text.
    virtual void setText(const QString& text, ClipboardStay stay) = 0;

    /// Calls `fetched` once: when the focused application has read the text last set, or after
    /// `deadline`, whichever is first.
    virtual void whenTextFetched(std::chrono::milliseconds deadline, TextFetched fetched) = 0;

    /// Puts `snapshot` back unless somebody has put something newer on the clipboard since
    /// `setText`.
    virtual void restore(const ClipboardSnapshot& snapshot) = 0;

    /// Gives what Sayloft owns to whoever keeps the clipboard after a program has ended; waits for
    /// at most a second. Called once, on the way out.
    virtual void handOver() = 0;
};

}  // namespace sayloft
