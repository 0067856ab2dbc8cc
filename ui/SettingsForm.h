// SPDX-License-Identifier: MIT
#pragma once

#include "ui/FocusDropView.h"

#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QPushButton;
class QVBoxLayout;

namespace sayloft {

class ChipList;
class ModelRow;
class PermissionRow;
class TimingRow;
class ValueField;
class ValueSlider;

/// The controls of the settings window, at their places. They show nothing yet and do nothing.
class SettingsForm : public FocusDropView {
public:
    SettingsForm();

    PermissionRow* accStatus;
    PermissionRow* micStatus;
    std::vector<ModelRow*> modelList;  ///< one for each in the catalogue, in the same order
    ChipList* dictateChips;
    ChipList* enterChips;
    QPushButton* dictateAddBtn;
    QPushButton* enterAddBtn;
    QComboBox* micPopup;
    QCheckBox* boostCheck;
    QCheckBox* clipboardCheck;
    QPushButton* dictBtn;
    QCheckBox* loginCheck;
    QCheckBox* soundCheck;
    QComboBox* stylePopup;
    TimingRow* appear;
    TimingRow* hide;
    TimingRow* hold;
    ValueSlider* appearSlider;
    ValueSlider* hideSlider;
    ValueSlider* holdSlider;
    ValueField* appearVal;
    ValueField* hideVal;
    ValueField* holdVal;
    QPushButton* resetButton;

private:
    void fillGrid(QGridLayout& grid);
    void describeControls();
    [[nodiscard]] QWidget* makeModelList();
    [[nodiscard]] static QWidget* helpLabel();
};

}  // namespace sayloft
