// SPDX-License-Identifier: MIT
#include "platform/linux/HelpWindow.h"

#include <QTextBrowser>
#include <QTextDocument>

namespace sayloft {

HelpWindow::~HelpWindow() {
    delete m_browser;
}

void HelpWindow::show(const QUrl& page) {
    if (!m_browser) {
        m_browser = new QTextBrowser;
        m_browser->setAttribute(Qt::WA_DeleteOnClose);
        m_browser->setOpenExternalLinks(true);
        m_browser->setFrameShape(QFrame::NoFrame);
        m_browser->document()->setDocumentMargin(20);
        m_browser->resize(720, 700);
    }
    m_browser->setSource(page);
    m_browser->setWindowTitle(m_browser->documentTitle());
    m_browser->show();
    m_browser->raise();
    m_browser->activateWindow();
}

}  // namespace sayloft
