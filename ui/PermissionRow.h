// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace sayloft {

class TextLabel;

/// Whether something is allowed, and the way to the settings of the system where it is decided.
class PermissionRow : public QWidget {
    Q_OBJECT

public:
    struct Texts {
        QString name;
        QString meaning;   ///< what is allowed, in a sentence
        QString settings;  ///< what the button opens, in a sentence
    };

    explicit PermissionRow(const Texts& texts);

    void setPermLabel(bool isGranted);

Q_SIGNALS:
    void openSettings();

private:
    QString m_name;
    TextLabel* m_status;
};

}  // namespace sayloft
