// SPDX-License-Identifier: MIT
#include "ui/PlainWindow.h"

#include <QKeySequence>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWidget>

namespace sayloft {

void makePlainWindow(QWidget& window, QWidget* content, QSize size) {
    window.setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    content->setMinimumSize(size);
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins({});
    layout->addWidget(content);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    closeByKey(window);
}

void closeByKey(QWidget& window) {
    auto* close = new QShortcut(QKeySequence::Close, &window);
    QObject::connect(close, &QShortcut::activated, &window, &QWidget::close);
}

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace sayloft
