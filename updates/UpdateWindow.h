// SPDX-License-Identifier: MIT
#pragma once

#include "updates/UpdateCheck.h"

#include <QUrl>
#include <QWidget>

class QLabel;
class QPushButton;
class QTextBrowser;

namespace sayloft {

/// Shows what a look for a newer version has found. Main thread.
class UpdateWindow : public QWidget {
public:
    UpdateWindow();

    void showChecking();
    void showAnswer(const UpdateAnswer& answer);

private:
    void openPage();

    QLabel* m_sentence;
    QTextBrowser* m_notes;
    QPushButton* m_download;
    QPushButton* m_close;
    QUrl m_page;
};

}  // namespace sayloft
