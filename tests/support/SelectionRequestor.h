// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AtomsX11.h"
#include "platform/linux/XcbHandles.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <optional>
#include <vector>

namespace sayloft::test {

/// What an owner answered for one target.
struct SelectionReply {
    QByteArray type;
    int format = 0;
    QByteArray data;
    bool wasIncremental = false;
};

/// A raw X client with a window of its own that asks for selections and can have the focus. It
/// never turns the event loop: what it gets was served while the main thread was busy with it.
class SelectionRequestor {
public:
    /// Connects to the server that DISPLAY names.
    SelectionRequestor();
    ~SelectionRequestor();
    SelectionRequestor(const SelectionRequestor&) = delete;
    SelectionRequestor& operator=(const SelectionRequestor&) = delete;

    /// Nothing when the owner refuses, when there is none, or after `deadline`.
    [[nodiscard]] std::optional<SelectionReply> read(
        const QByteArray& target, const QByteArray& selection = "CLIPBOARD",
        std::chrono::milliseconds deadline = std::chrono::seconds(10));

    /// The names that the owner offers, in its order.
    [[nodiscard]] QList<QByteArray> targets(const QByteArray& selection = "CLIPBOARD");

    /// Asks for all targets in one MULTIPLE; nothing at the place of a refused one.
    [[nodiscard]] std::vector<std::optional<SelectionReply>> readMultiple(
        const QList<QByteArray>& targets, const QByteArray& selection = "CLIPBOARD");

    /// Only starts a request, and waits until the answer has begun to come (the INCR mark).
    [[nodiscard]] bool beginIncremental(const QByteArray& target);
    /// Reads the pieces of the request that has begun.
    [[nodiscard]] QByteArray finishIncremental();

    /// Shows the window and gives it the keyboard focus.
    void takeFocus(const QByteArray& windowClass);

    [[nodiscard]] xcb_window_t owner(const QByteArray& selection);
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    [[nodiscard]] xcb_connection_t* connection() const { return m_connection.get(); }

private:
    using Deadline = std::chrono::steady_clock::time_point;

    [[nodiscard]] bool convert(const QByteArray& selection, const QByteArray& target,
                               Deadline deadline);
    [[nodiscard]] std::optional<SelectionReply> takeReply(xcb_atom_t property, Deadline deadline);
    [[nodiscard]] std::optional<SelectionReply> takeProperty(xcb_atom_t property);
    [[nodiscard]] QByteArray takePieces(SelectionReply& reply, xcb_atom_t property,
                                        Deadline deadline);
    [[nodiscard]] XcbOwned<xcb_generic_event_t> nextEvent(Deadline deadline);

    XcbConnection m_connection;
    AtomsX11 m_atoms;
    xcb_window_t m_window;
};

}  // namespace sayloft::test
