// SPDX-License-Identifier: MIT
#include "ui/DictWindowController.h"

#include "app/AppDelegate.h"
#include "ui/DictRow.h"
#include "ui/GlyphText.h"
#include "ui/PlainWindow.h"
#include "ui/ScrolledRows.h"
#include "ui/TextLabel.h"
#include "ui/WindowRole.h"

#include <QEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace sayloft {
namespace {

/// Without the spaces and tabs at both ends; line ends belong to the text.
QString trimmed(const QString& text) {
    const auto isBlank = [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); };
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
    return first < last ? QString(first, static_cast<int>(last - first)) : QString();
}

QString stringAt(const std::vector<QString>& entry, std::size_t index) {
    return index < entry.size() ? entry[index] : QString();
}

}  // namespace

DictWindowController::DictWindowController(AppDelegate& theApp)
    : app(&theApp),
      m_window(std::make_unique<QWidget>()),
      rows(new ScrolledRows(8)),
      m_add(new QPushButton) {
    build();
    refresh();
    // The lower left corner of the space that panels leave.
    const QRect space = m_window->screen()->availableGeometry();
    const QSize size = m_window->sizeHint();
    m_window->setGeometry({{space.left(), space.bottom() + 1 - size.height()}, size});
}

DictWindowController::~DictWindowController() {
    m_window->removeEventFilter(this);
    for (int i = 0; i < rows->count(); ++i)
        row(i)->retire();
}

void DictWindowController::build() {
    giveWindowRole(*m_window);
    auto* content = new FocusDropView;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(14);
    layout->addWidget(rows, 1, Qt::AlignLeading);
    layout->addWidget(m_add, 0, Qt::AlignLeading);
    layout->addWidget(
        new TextLabel(QStringLiteral("Applied to every transcript (case-insensitive). Example: "
                                     "“solona” → “Solana”."),
                      {.points = 11, .role = TextRole::tertiary, .width = 400, .wraps = true}),
        0, Qt::AlignLeading);
    layout->addStretch();
    makePlainWindow(*m_window, content, {460, 380});
    m_window->setWindowTitle(QStringLiteral("Dictionary"));
    m_window->installEventFilter(this);
    const QString add = QStringLiteral("＋ Add replacement");
    m_add->setText(displayable(add, QStringLiteral("+ Add replacement"), m_add->font()));
    m_add->setAccessibleName(add);
    m_add->setAccessibleDescription(QStringLiteral("Adds an empty row to the dictionary"));
    connect(m_add, &QPushButton::clicked, this, [this] { addPair(); });
}

void DictWindowController::show() {
    refresh();
    bringToFront(*m_window);
}

void DictWindowController::refresh() {
    while (rows->count() > 0) {
        DictRow* old = row(0);
        old->retire();
        rows->remove(old);
    }
    if (app) {
        for (const std::vector<QString>& entry : app->cfg.replacements)
            appendRow(entry);
    }
    rowsChanged();
}

void DictWindowController::commit() {
    std::vector<std::vector<QString>> pairs;
    for (int i = 0; i < rows->count(); ++i) {
        const DictTexts texts = row(i)->texts();
        const QString heard = trimmed(texts.heard);
        if (!heard.isEmpty())
            pairs.push_back({heard, trimmed(texts.replacement)});
    }
    if (!app)
        return;
    app->cfg.replacements = std::move(pairs);
    app->cfg.save();
}

void DictWindowController::addPair() {
    commit();
    if (!app)
        return;
    // Not saved: the next commit drops it unless something has been typed by then.
    app->cfg.replacements.push_back({QString(), QString()});
    refresh();
    DictRow* added = row(rows->count() - 1);
    added->focusHeard();
    rows->scrollTo(added);
}

bool DictWindowController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_window.get() && event->type() == QEvent::Close)
        windowWillClose();
    return QObject::eventFilter(watched, event);
}

void DictWindowController::appendRow(const std::vector<QString>& entry) {
    auto* added = new DictRow({.heard = stringAt(entry, 0), .replacement = stringAt(entry, 1)});
    added->onCommit = [this] { commit(); };
    added->onRemove = [this, added] { removePair(added); };
    rows->append(added);
}

void DictWindowController::removePair(DictRow* gone) {
    // It would commit as it loses the keyboard.
    gone->retire();
    rows->remove(gone);
    rowsChanged();
    commit();
}

void DictWindowController::rowsChanged() {
    QWidget* last = rows;
    for (int i = 0; i < rows->count(); ++i) {
        row(i)->setPlace(i + 1);
        last = row(i)->followInTabOrder(last);
    }
    QWidget::setTabOrder(last, m_add);
}

void DictWindowController::windowWillClose() {
    commit();
}

DictRow* DictWindowController::row(int index) const {
    return static_cast<DictRow*>(rows->row(index));
}

}  // namespace sayloft
