// SPDX-License-Identifier: MIT
#include "ui/DictWindowController.h"

#include "app/AppDelegate.h"
#include "ui/DictRow.h"
#include "ui/GlyphText.h"
#include "ui/PlainWindow.h"
#include "ui/RoomyButton.h"
#include "ui/ScrolledRows.h"
#include "ui/TextLabel.h"
#include "ui/WindowRole.h"

#include <QEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
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

DictTexts textsOf(const std::vector<QString>& entry) {
    return {.heard = entry.empty() ? QString() : entry[0],
            .replacement = entry.size() < 2 ? QString() : entry[1]};
}

}  // namespace

DictWindowController::DictWindowController(AppDelegate& theApp)
    : app(&theApp),
      m_window(std::make_unique<QWidget>()),
      rows(new ScrolledRows(8)),
      m_add(new RoomyButton) {
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
        new TextLabel(
            QStringLiteral("Applied to every transcript (case-insensitive). Example: ") +
                displayable(QStringLiteral("“solona” → “Solana”."),
                            QStringLiteral("“solona” -> “Solana”.")),
            {.look = {.size = 11, .role = TextRole::tertiary}, .width = 400, .wraps = true}),
        0, Qt::AlignLeading);
    layout->addStretch();
    makePlainWindow(*m_window);
    fillWindow(*m_window, content, {460, 380});
    m_window->setWindowTitle(QStringLiteral("Dictionary"));
    m_window->installEventFilter(this);
    const QString add = QStringLiteral("＋ Add replacement");
    m_add->setText(displayable(add, QStringLiteral("+ Add replacement")));
    m_add->setAccessibleName(add);
    m_add->setAccessibleDescription(QStringLiteral("Adds an empty row to the dictionary"));
    connect(m_add, &QPushButton::clicked, this, [this] { addPair(); });
}

void DictWindowController::show() {
    refresh();
    bringToFront(*m_window);
}

void DictWindowController::refresh() {
    const std::vector<std::vector<QString>> entries =
        app ? app->cfg.replacements : std::vector<std::vector<QString>>();
    const std::size_t kept = std::min(entries.size(), static_cast<std::size_t>(rows->count()));
    for (std::size_t i = 0; i < kept; ++i)
        row(static_cast<int>(i))->setTexts(textsOf(entries[i]));
    while (rows->count() > static_cast<int>(kept))
        takeAway(row(rows->count() - 1));
    appendRows({entries.begin() + static_cast<std::ptrdiff_t>(kept), entries.end()});
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

void DictWindowController::appendRows(const std::vector<std::vector<QString>>& entries) {
    std::vector<QWidget*> added;
    added.reserve(entries.size());
    for (const std::vector<QString>& entry : entries) {
        auto* made = new DictRow(textsOf(entry));
        made->onCommit = [this] { commit(); };
        made->onRemove = [this, made] { removePair(made); };
        added.push_back(made);
    }
    rows->append(added);
}

void DictWindowController::takeAway(DictRow* gone) {
    // It would commit as it loses the keyboard.
    gone->retire();
    rows->remove(gone);
}

void DictWindowController::removePair(DictRow* gone) {
    takeAway(gone);
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
