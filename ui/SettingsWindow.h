// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

namespace sayloft {

/// The window around a form: as large as the form needs and at least of one size, in the middle of
/// the screen. Where the screen is too small for that it scrolls. Closing it hides it.
class SettingsWindow : public QScrollArea {
    Q_OBJECT

public:
    explicit SettingsWindow(QWidget* form);

    void centre();

Q_SIGNALS:
    void becameKey();
    void closing();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    [[nodiscard]] QSize wantedSize() const;
    [[nodiscard]] QSize roomOnScreen() const;
    void fit();
    void stayOnScreen();
};

}  // namespace sayloft
