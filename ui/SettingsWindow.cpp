// SPDX-License-Identifier: MIT
#include "ui/SettingsWindow.h"

#include "ui/PlainWindow.h"
#include "ui/WindowRole.h"

#include <QEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

namespace sayloft {
namespace {

constexpr QSize usualSize(640, 700);
/// Of the frame that a window manager puts around it, as long as that is not known.
constexpr QSize usualFrame(16, 48);

}  // namespace

SettingsWindow::SettingsWindow(QWidget* form) {
    giveWindowRole(*this);
    makePlainWindow(*this);
    setWindowTitle(QStringLiteral("Sayloft Settings"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setWidget(form);
    // A scroll area has the colour of a page, and this is a window.
    form->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    form->installEventFilter(this);
    fit();
}

void SettingsWindow::centre() {
    const QRect room = screen()->availableGeometry();
    QRect place(QPoint(), size());
    place.moveCenter(room.center());
    move(place.topLeft());
}

bool SettingsWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate)
        Q_EMIT becameKey();
    return QScrollArea::event(event);
}

bool SettingsWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        fit();
    return QScrollArea::eventFilter(watched, event);
}

void SettingsWindow::closeEvent(QCloseEvent* event) {
    Q_EMIT closing();
    QScrollArea::closeEvent(event);
}

QSize SettingsWindow::wantedSize() const {
    const QSize least = widget()->sizeHint();
    const int width = std::max(usualSize.width(), least.width());
    const int height = widget()->hasHeightForWidth() ? widget()->heightForWidth(width)
                                                     : widget()->sizeHint().height();
    return {width, std::max(usualSize.height(), height)};
}

QSize SettingsWindow::roomOnScreen() const {
    const QSize frame = frameSize() == size() ? usualFrame : frameSize() - size();
    return screen()->availableSize() - frame;
}

void SettingsWindow::fit() {
    QSize wanted = wantedSize();
    const QSize room = roomOnScreen();
    if (wanted.height() > room.height())
        wanted.rwidth() += verticalScrollBar()->sizeHint().width();
    const QSize fitting = wanted.boundedTo(room);
    if (fitting == size() && fitting == minimumSize() && fitting == maximumSize())
        return;
    setFixedSize(fitting);
    stayOnScreen();
}

void SettingsWindow::stayOnScreen() {
    if (!isVisible())
        return;
    const QRect room = screen()->availableGeometry();
    const QRect frame = frameGeometry();
    const int beside = std::max(0, frame.right() - room.right());
    const int below = std::max(0, frame.bottom() - room.bottom());
    const QPoint back(std::min(beside, frame.left() - room.left()),
                      std::min(below, frame.top() - room.top()));
    if (!back.isNull())
        move(pos() - back);
}

}  // namespace sayloft
