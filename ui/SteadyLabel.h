// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QStringList>

namespace sayloft {

/// A label that is as wide as the widest of its texts, whichever it shows, so that nothing beside
/// it moves.
class SteadyLabel : public QLabel {
public:
    explicit SteadyLabel(QStringList texts);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    QStringList m_texts;
};

}  // namespace sayloft
