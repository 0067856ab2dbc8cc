// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/ClipboardX11.h"
#include "platform/linux/XcbHandles.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SelectionRequestor.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>

namespace sayloft::test {

/// A clipboard of ours on an X server of its own.
class ClipboardX11Fixture : public testing::Test {
protected:
    struct Taken {
        std::optional<ClipboardSnapshot> snapshot;
        std::chrono::milliseconds after{0};
    };

    /// Takes a snapshot and waits for it. Fails the test when no answer comes.
    Taken take() {
        const auto start = std::chrono::steady_clock::now();
        std::optional<Taken> taken;
        clipboard->takeSnapshot([&](std::optional<ClipboardSnapshot> snapshot) {
            taken = Taken{.snapshot = std::move(snapshot),
                          .after = std::chrono::duration_cast<std::chrono::milliseconds>(
                              std::chrono::steady_clock::now() - start)};
        });
        EXPECT_TRUE(waitUntil([&] { return taken.has_value(); })) << "no answer";
        return taken.value_or(Taken{});
    }

    /// Waits until everything asked of the clipboard so far has been done.
    void settle() {
        bool done = false;
        clipboard->whenOffered([&] { done = true; });
        EXPECT_TRUE(waitUntil([&] { return done; }));
    }

    void setText(const QString& text, ClipboardStay stay = ClipboardStay::forOnePaste) {
        clipboard->setText(text, stay);
        settle();
    }

    void restore(const ClipboardSnapshot& snapshot) {
        clipboard->restore(snapshot);
        settle();
    }

    void offerOnPrimary() {
        bool done = false;
        clipboard->offerOnPrimary([&] { done = true; });
        EXPECT_TRUE(waitUntil([&] { return done; }));
    }

    /// A window manager that runs, so that new windows get the focus.
    std::unique_ptr<ChildProgram> startWindowManager() {
        auto manager = std::make_unique<ChildProgram>(QStringLiteral("openbox"), QStringList{},
                                                      server.environment());
        const xcb_atom_t check = internAtom(requestor.connection(), "_NET_SUPPORTING_WM_CHECK");
        EXPECT_TRUE(waitUntil([&] {
            const auto cookie =
                xcb_get_property(requestor.connection(), 0, rootWindow(requestor.connection()),
                                 check, XCB_ATOM_WINDOW, 0, 1);
            const XcbOwned<xcb_get_property_reply_t> reply(
                xcb_get_property_reply(requestor.connection(), cookie, nullptr));
            return reply && reply->type == XCB_ATOM_WINDOW;
        }));
        return manager;
    }

    /// The data of one type of a snapshot's only item; null when it is not there.
    static QByteArray dataOf(const std::optional<ClipboardSnapshot>& snapshot,
                             const QByteArray& type) {
        if (!snapshot || snapshot->items.size() != 1)
            return {};
        for (const ClipboardRepresentation& representation : snapshot->items[0]) {
            if (representation.type == type)
                return representation.data;
        }
        return {};
    }

    TempHome home;
    XServer server;
    std::unique_ptr<ClipboardX11> clipboard = std::make_unique<ClipboardX11>();
    SelectionRequestor requestor;
};

}  // namespace sayloft::test
