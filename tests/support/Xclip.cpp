// SPDX-License-Identifier: MIT
#include "tests/support/Xclip.h"

#include "tests/support/SelectionRequestor.h"
#include "tests/support/WaitUntil.h"

#include <stdexcept>

namespace sayloft::test {

XclipOwner::XclipOwner(const XclipCopy& copy) {
    SelectionRequestor looker;
    const QByteArray selection = copy.selection.toUpper();
    const xcb_window_t before = looker.owner(selection);
    QStringList arguments{QStringLiteral("-quiet"), QStringLiteral("-i"),
                          QStringLiteral("-selection"), QString::fromLatin1(copy.selection)};
    if (!copy.type.isEmpty())
        arguments << QStringLiteral("-t") << QString::fromLatin1(copy.type);
    m_program = std::make_unique<ChildProgram>(QStringLiteral("xclip"), arguments);
    m_program->process().write(copy.data);
    m_program->process().closeWriteChannel();
    if (!waitUntil([&] {
            const xcb_window_t owner = looker.owner(selection);
            return owner != before && owner != XCB_WINDOW_NONE;
        }))
        throw std::runtime_error("xclip did not take the selection");
}

QByteArray pasteWithXclip(const QByteArray& type, const QByteArray& selection) {
    return run(QStringLiteral("xclip"),
               {QStringLiteral("-o"), QStringLiteral("-selection"), QString::fromLatin1(selection),
                QStringLiteral("-t"), QString::fromLatin1(type)});
}

}  // namespace sayloft::test
