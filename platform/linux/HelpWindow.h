// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QUrl>

class QTextBrowser;

namespace sayloft {

/// A window of our own for a page of the help, for desktops without a web browser. Main thread;
/// needs a QApplication.
class HelpWindow {
public:
    HelpWindow() = default;
    ~HelpWindow();
    HelpWindow(const HelpWindow&) = delete;
    HelpWindow& operator=(const HelpWindow&) = delete;

    /// Brings the window to the front where it is open already.
    void show(const QUrl& page);

private:
    QPointer<QTextBrowser> m_browser;  ///< ends when the user closes it
};

}  // namespace sayloft
