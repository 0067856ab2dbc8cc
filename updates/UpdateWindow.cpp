// SPDX-License-Identifier: MIT
#include "updates/UpdateWindow.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace sayloft {
namespace {

/// Shows text that came over the network: nothing that it mentions is loaded.
class NotesBrowser : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

protected:
    QVariant loadResource(int /*type*/, const QUrl& /*name*/) override { return {}; }
};

void openInBrowser(const QUrl& address) {
    if (address.scheme() == QStringLiteral("https") || address.scheme() == QStringLiteral("http"))
        QDesktopServices::openUrl(address);
}

}  // namespace

UpdateWindow::UpdateWindow()
    : m_sentence(new QLabel),
      m_notes(new NotesBrowser),
      m_download(new QPushButton(QStringLiteral("Open Download Page"))),
      m_close(new QPushButton) {
    setWindowTitle(QStringLiteral("Sayloft Updates"));
    m_sentence->setWordWrap(true);
    m_sentence->setMinimumWidth(360);
    m_sentence->setTextFormat(Qt::PlainText);
    m_sentence->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_notes->setOpenLinks(false);
    m_notes->setAccessibleName(QStringLiteral("What is new"));
    m_notes->setMinimumSize(420, 240);
    connect(m_notes, &QTextBrowser::anchorClicked, this, openInBrowser);
    connect(m_download, &QPushButton::clicked, this, [this] { openPage(); });
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
    m_close->setShortcut(Qt::Key_Escape);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_close);
    buttons->addWidget(m_download);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(20, 20, 20, 20);
    rows->setSpacing(16);
    rows->addWidget(m_sentence);
    rows->addWidget(m_notes, 1);
    rows->addLayout(buttons);
    showChecking();
}

void UpdateWindow::showChecking() {
    showAnswer({.sentence = QStringLiteral("Looking for a newer version…"), .newer = {}});
}

void UpdateWindow::showAnswer(const UpdateAnswer& answer) {
    const Release release = answer.newer.value_or(Release());
    m_sentence->setText(answer.sentence);
    m_notes->setVisible(!release.notes.isEmpty());
    if (Qt::mightBeRichText(release.notes))
        m_notes->setHtml(release.notes);
    else
        m_notes->setPlainText(release.notes);
    m_page = release.page;
    m_download->setVisible(!m_page.isEmpty());
    m_close->setText(answer.newer ? QStringLiteral("Later") : QStringLiteral("Close"));
    m_close->setShortcut(Qt::Key_Escape);
    (m_download->isHidden() ? m_close : m_download)->setFocus();
    adjustSize();
}

void UpdateWindow::openPage() {
    openInBrowser(m_page);
    close();
}

}  // namespace sayloft
