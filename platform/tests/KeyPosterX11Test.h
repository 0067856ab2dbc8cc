// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Mods.h"
#include "platform/linux/KeyPosterX11.h"
#include "platform/linux/ModifierWatchX11.h"
#include "tests/support/KeyWindow.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

/// A poster, the window that gets its keys and the user's hands on the keyboard, on an X server of
/// their own.
class KeyPosterX11Test : public testing::Test {
protected:
    static constexpr std::uint8_t shiftMask = 1;
    static constexpr std::uint8_t lockMask = 2;
    static constexpr std::uint8_t controlMask = 4;
    static constexpr std::uint8_t numLockMask = 16;

    using Events = std::vector<KeyWindow::KeyEvent>;

    KeyPosterX11Test() {
        if (!m_watch.start([this](std::uint64_t flags) { m_reports.push_back(flags); }))
            throw std::runtime_error("the watch did not start");
    }

    /// What a window sees of a key chord.
    [[nodiscard]] static Events chord(std::uint8_t modifierKey, std::uint8_t modifierMask,
                                      std::uint8_t key, std::uint8_t locked = 0) {
        const auto with = static_cast<std::uint16_t>(modifierMask | locked);
        return {{KeyWindow::KeyEvent::press, modifierKey, locked},
                {KeyWindow::KeyEvent::press, key, with},
                {KeyWindow::KeyEvent::release, key, with},
                {KeyWindow::KeyEvent::release, modifierKey, with}};
    }

    [[nodiscard]] static Events controlV(std::uint8_t locked = 0) {
        return chord(TestKeyboard::controlLeft, controlMask, TestKeyboard::v, locked);
    }

    [[nodiscard]] static Events shiftInsert() {
        return chord(TestKeyboard::shiftLeft, shiftMask, TestKeyboard::insert);
    }

    void focusWindow(const QByteArray& windowClass = "Editor") {
        m_window = std::make_unique<KeyWindow>(windowClass);
    }

    void startPaste() {
        m_poster.postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    }

    [[nodiscard]] bool waitForPosted(std::chrono::milliseconds deadline = std::chrono::seconds(5)) {
        return waitUntil([this] { return m_posted > 0; }, deadline);
    }

    /// The events that one paste makes in the focused window.
    [[nodiscard]] Events pasteEvents() {
        m_window->clear();
        startPaste();
        EXPECT_TRUE(waitForPosted());
        return m_window->events();
    }

    KeyPosterX11::PasteOffer noteOffers() {
        return {.onClipboard =
                    [this](const KeyPosterX11::Ready& ready) {
                        m_offers.emplace_back("clipboard");
                        ready();
                    },
                .onPrimary =
                    [this](const KeyPosterX11::Ready& ready) {
                        m_offers.emplace_back("primary");
                        ready();
                    }};
    }

    XServer m_server;
    TestKeyboard m_keyboard;
    std::vector<std::uint64_t> m_reports;
    std::vector<std::string> m_offers;
    int m_posted = 0;
    ModifierWatchX11 m_watch;
    KeyPosterX11 m_poster{m_watch, noteOffers()};
    std::unique_ptr<KeyWindow> m_window;
};

}  // namespace sayloft::test
