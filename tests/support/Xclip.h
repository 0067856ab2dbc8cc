// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QByteArray>

#include <memory>

namespace sayloft::test {

struct XclipCopy {
    QByteArray data;
    QByteArray type;  ///< empty: plain text as xclip offers it
    QByteArray selection = "clipboard";
};

/// xclip as the owner of a selection, until it is destroyed or somebody else copies. Owns it when
/// the constructor returns. DISPLAY of the test says where.
class XclipOwner {
public:
    explicit XclipOwner(const XclipCopy& copy);
    [[nodiscard]] ChildProgram& program() { return *m_program; }

private:
    std::unique_ptr<ChildProgram> m_program;
};

/// What xclip pastes; throws when there is nothing of that type.
[[nodiscard]] QByteArray pasteWithXclip(const QByteArray& type = "UTF8_STRING",
                                        const QByteArray& selection = "clipboard");

}  // namespace sayloft::test
