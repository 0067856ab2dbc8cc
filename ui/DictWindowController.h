// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FocusDropView.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

class QPushButton;

namespace sayloft {

class AppDelegate;
class DictRow;
class ScrolledRows;

/// The window in which the replacement dictionary is edited. What is on the screen is the working
/// copy; every `commit` brings the configuration in line with it. Does nothing once the controller
/// of the program is gone. Main thread.
class DictWindowController : public QObject {
public:
    explicit DictWindowController(AppDelegate& app);
    ~DictWindowController() override;
    DictWindowController(const DictWindowController&) = delete;
    DictWindowController& operator=(const DictWindowController&) = delete;

    void show();

    /// Shows the configuration's list anew; what was typed and not committed is lost.
    void refresh();

    /// Stores the rows that have a heard text, in the order of the screen.
    void commit();

    void addPair();

    [[nodiscard]] QWidget& window() { return *m_window; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void appendRows(const std::vector<std::vector<QString>>& entries);
    void takeAway(DictRow* row);
    void removePair(DictRow* row);
    void rowsChanged();
    void windowWillClose();
    [[nodiscard]] DictRow* row(int index) const;

    QPointer<AppDelegate> app;
    std::unique_ptr<QWidget> m_window;
    ScrolledRows* rows;
    QPushButton* m_add;
};

}  // namespace sayloft
