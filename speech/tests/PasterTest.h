// SPDX-License-Identifier: MIT
#pragma once

#include "speech/Paster.h"
#include "speech/tests/PasterDesktop.h"
#include "tests/support/WaitUntil.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

namespace sayloft::test {

inline const std::string pasteKey = "key 9 flags " + std::to_string(0x100000);
inline const std::string returnKey = "key 36 flags 0";

/// A paster on a desktop on which somebody had copied "before".
class PasterTest : public testing::Test {
protected:
    PasterTest() { m_clipboard.putByUser(plainText("before")); }

    [[nodiscard]] bool waitFor(const std::string& what,
                               std::chrono::milliseconds deadline = std::chrono::seconds(5)) {
        return waitUntil([&] { return m_desktop.has(what); }, deadline);
    }

    Desktop m_desktop;
    DesktopClipboard m_clipboard{m_desktop};
    DesktopKeyPoster m_keyPoster{m_desktop};
    Paster m_paster{m_clipboard, m_keyPoster};
};

}  // namespace sayloft::test
