// SPDX-License-Identifier: MIT
#include "overlay/PillOverlay.h"

#include "overlay/CapsuleRegion.h"
#include "platform/WindowEffects.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMetaObject>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <utility>

namespace sayloft {
namespace {

constexpr int aboveScreenEdge = 24;
constexpr int ticksBetweenRaises = 30;

PillBackground backgroundWith(const WindowEffects& effects) {
    if (!effects.isTranslucent())
        return PillBackground::black;
    return effects.blurs() ? PillBackground::blurred : PillBackground::clear;
}

}  // namespace

// Past the window manager, since window managers keep clicks from a window of theirs that wants
// none, put it under full-screen windows and list it in taskbars.
PillOverlay::PillOverlay(std::function<double()> levelProvider, WindowEffects& effects)
    : m_effects(effects),
      m_window(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                            Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                            Qt::NoDropShadowWindowHint | Qt::X11BypassWindowManagerHint),
      m_view(new PillView(&m_window)),
      m_timer([this] { tick(); }) {
    m_window.setAttribute(Qt::WA_TranslucentBackground);
    m_window.setAttribute(Qt::WA_ShowWithoutActivating);
    m_window.setFixedSize(m_view->size());
    m_view->setLevelProvider(std::move(levelProvider));
    m_effects.setShape(m_window.winId(), {});
    reposition();
    readEffects();
    m_window.installEventFilter(this);
    m_window.show();
    m_effects.onChange = [this] { readEffects(); };
    followScreens();
    m_timer.start();
}

PillOverlay::~PillOverlay() {
    m_effects.onChange = nullptr;
}

void PillOverlay::reposition() {
    QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    const QRect frame = screen->geometry();
    const QPoint origin(frame.x() + (frame.width() - m_window.width()) / 2,
                        frame.y() + frame.height() - aboveScreenEdge - m_window.height());
    m_place = {origin, m_window.size()};
    const double scaleBefore = m_window.devicePixelRatioF();
    m_window.setScreen(screen);
    m_window.setGeometry(m_place);
    if (m_window.devicePixelRatioF() != scaleBefore)
        resizeInPixels();
}

// WORKAROUND: Qt 6.4 leaves a window that has the same size in points on the new screen the size in
// pixels that it had on the old one.
void PillOverlay::resizeInPixels() {
    QWindow* handle = m_window.windowHandle();
    handle->resize(m_place.size() + QSize(1, 1));
    handle->resize(m_place.size());
}

// WORKAROUND: Qt 6.4 keeps the middle of a window in place when a screen of another scale changes
// its size in pixels, and tells so afterwards; then it is put back.
bool PillOverlay::eventFilter(QObject* watched, QEvent* event) {
    const bool isElsewhere = (event->type() == QEvent::Move || event->type() == QEvent::Resize) &&
                             m_window.geometry() != m_place;
    if (isElsewhere)
        QTimer::singleShot(0, this, &PillOverlay::reposition);
    return QObject::eventFilter(watched, event);
}

void PillOverlay::setActive(bool active) {
    reposition();
    if (!active) {
        command(&PillView::shrink);
        return;
    }
    readEffects();
    m_window.raise();
    command(&PillView::setRecording);
}

void PillOverlay::stopTimer() {
    command(&PillView::stopTimer);
}

void PillOverlay::showStats(int wpm) {
    command([wpm](PillView& view) { view.showStats(wpm); });
}

void PillOverlay::holdThenHide() {
    command(&PillView::holdThenHide);
}

void PillOverlay::configure(bool minimal, double appear, double hide, double hold) {
    command([=](PillView& view) { view.configure(minimal, appear, hide, hold); });
}

void PillOverlay::command(std::function<void(PillView&)> task) {
    QMetaObject::invokeMethod(
        this,
        [this, task = std::move(task)] {
            task(*m_view);
            m_timer.start();
        },
        Qt::QueuedConnection);
}

// While there is nothing to see or to come the timer rests, so that a hidden pill never wakes the
// processor.
void PillOverlay::tick() {
    m_view->tick();
    dress();
    stayOnTop();
    if (m_view->pill().isAtRest())
        m_timer.stop();
}

void PillOverlay::followScreens() {
    const auto* application = qGuiApp;
    connect(application, &QGuiApplication::primaryScreenChanged, this, &PillOverlay::reposition);
    connect(application, &QGuiApplication::screenAdded, this, &PillOverlay::follow);
    connect(application, &QGuiApplication::screenRemoved, this, &PillOverlay::reposition);
    for (QScreen* screen : QGuiApplication::screens())
        follow(screen);
}

void PillOverlay::follow(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, &PillOverlay::reposition);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &PillOverlay::reposition);
    reposition();
}

void PillOverlay::readEffects() {
    m_background = backgroundWith(m_effects);
    m_view->setBackground(m_background);
    dress();
}

void PillOverlay::dress() {
    const QRectF outline = m_view->outline();
    const QRegion pill =
        outline.isEmpty() ? QRegion() : capsuleRegion(outline, m_window.devicePixelRatioF());
    const QRegion shape = shapeOf(pill);
    if (shape != std::exchange(m_shape, shape))
        m_effects.setShape(m_window.winId(), shape);
    const QRegion blurred = m_background == PillBackground::blurred ? pill : QRegion();
    if (blurred != std::exchange(m_blurred, blurred))
        m_effects.blurBehind(m_window.winId(), blurred);
}

// Without a compositor the window is what is seen of the pill; with one it is everything, for the
// shadow, as long as there is something to see.
QRegion PillOverlay::shapeOf(const QRegion& pill) const {
    if (m_background == PillBackground::black || pill.isEmpty())
        return pill;
    const QSizeF pixels = m_window.devicePixelRatioF() * QSizeF(m_window.size());
    return QRegion(QRectF({}, pixels).toAlignedRect());
}

// Some window managers put a window that has just been raised above ours.
void PillOverlay::stayOnTop() {
    if (m_view->pill().isVisible() && ++m_ticks % ticksBetweenRaises == 0)
        m_window.raise();
}

}  // namespace sayloft
