// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <memory>

class QDialog;
class QGridLayout;
class QPushButton;
class QWidget;

namespace sayloft {

class AppDelegate;
class TextLabel;

/// The window of a first run: what dictation needs, and what of it is there. While it is open it
/// looks every second. Does nothing once the controller of the program is gone. Main thread.
class OnboardWindowController : public QObject {
public:
    explicit OnboardWindowController(AppDelegate& app);
    ~OnboardWindowController() override;
    OnboardWindowController(const OnboardWindowController&) = delete;
    OnboardWindowController& operator=(const OnboardWindowController&) = delete;

    /// Starts to download the configured model where it is missing.
    void show();
    void refresh();

    [[nodiscard]] QWidget& window();
    [[nodiscard]] bool polls() const { return timer.isActive(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void describe();
    void connectActions();
    void grantMic();
    void grantAcc();
    void downloadStep();
    void useStarter();
    void customizeHotkeys();
    void finish();
    void windowWillClose();
    void refreshModel();
    void refreshStarter();

    QPointer<AppDelegate> app;
    std::unique_ptr<QDialog> m_window;
    TextLabel* micStatus;
    TextLabel* accStatus;
    TextLabel* modelStatus;
    TextLabel* m_starterOffer;
    TextLabel* m_hotkeys;
    TextLabel* m_tray;
    QPushButton* micBtn;
    QPushButton* accBtn;
    QPushButton* modelBtn;
    QPushButton* m_useStarter;
    QPushButton* hotkeyBtn;
    QPushButton* m_done;
    QTimer timer;
};

}  // namespace sayloft
