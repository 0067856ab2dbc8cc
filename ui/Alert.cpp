// SPDX-License-Identifier: MIT
#include "ui/Alert.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace sayloft {

void ask(QWidget* window, const AlertTexts& texts, std::function<void()> confirmed) {
    auto* alert = new QMessageBox(window);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowTitle(window->windowTitle());
    alert->setIcon(QMessageBox::Question);
    alert->setTextFormat(Qt::PlainText);
    alert->setText(texts.message);
    alert->setInformativeText(texts.informative);
    QPushButton* const yes = alert->addButton(texts.button, QMessageBox::AcceptRole);
    alert->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    alert->setDefaultButton(yes);
    QObject::connect(alert, &QDialog::finished, window,
                     [alert, yes, confirmed = std::move(confirmed)] {
                         if (alert->clickedButton() == yes)
                             confirmed();
                     });
    alert->open();
}

}  // namespace sayloft
