// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace sayloft {

struct ModelInfo;
class TextLook;

/// One model of the catalogue: whether it is there, its name, and what can be done with it.
class ModelRow : public QWidget {
    Q_OBJECT

public:
    enum class State { downloading, active, missing, present };

    explicit ModelRow(const ModelInfo& model);

    /// The same whatever the row shows, so that nothing moves when a download begins.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    void setOnDisk(bool isOnDisk);
    void setState(State state);
    /// How far the download is, 0 to 1.
    void setProgress(double progress);

Q_SIGNALS:
    void useOrDownload();
    void deleteRequested();

private:
    [[nodiscard]] QWidget* makeProgress(const QString& label);
    void layOut();
    void describe(const QString& label);

    bool m_isBundled;
    QLabel* m_mark;
    TextLook* m_markLook;
    QLabel* m_name;
    QProgressBar* m_bar;
    QLabel* m_percent;
    QWidget* m_progress;
    QLabel* m_active;
    QPushButton* m_download;
    QPushButton* m_use;
    QPushButton* m_delete;
};

}  // namespace sayloft
