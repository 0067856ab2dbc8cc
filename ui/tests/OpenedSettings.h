// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/Nginx.h"
#include "tests/support/ServedCatalogue.h"
#include "tests/support/TempHome.h"
#include "ui/SettingsWindow.h"

#include <QByteArray>

#include <memory>

class QAbstractButton;
class QLineEdit;

namespace sayloft::test {

/// The settings window on the screen, over the controller on fake services. Controls are found by
/// the names that assistive technology reads.
class OpenedSettings {
public:
    /// A configuration with every chord that there is.
    static constexpr const char* manyChords =
        R"({"dictateChords":[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,
        18,19,20,21,22,23,24,25,26,27,28,29,30,31],"dictateEnterChords":[3,12]})";

    OpenedSettings();
    ~OpenedSettings();
    OpenedSettings(const OpenedSettings&) = delete;
    OpenedSettings& operator=(const OpenedSettings&) = delete;

    /// `config` is what the file holds; models and devices are there already.
    void open(const QByteArray& config = "{}");
    /// The controller alone, with no window yet.
    void prepare(const QByteArray& config);
    /// Once the controller has been told to open it.
    void findWindow();

    static void provideModel(const QString& key);
    [[nodiscard]] static bool hasModel(const QString& key);

    /// From now on models are downloaded from a server that has this one. Its download takes half a
    /// minute, of which the first 40 % are over at once.
    void serveSlowly(const QString& key);
    [[nodiscard]] bool beginSlowDownload(const QString& key);
    /// From now on models are downloaded from a server that has this one.
    void serve(const QString& key, const QByteArray& content);

    template <typename Control>
    [[nodiscard]] Control* find(const QString& accessibleName) const {
        for (Control* const control : window->findChildren<Control*>()) {
            if (control->accessibleName() == accessibleName)
                return control;
        }
        return nullptr;
    }

    /// As `find`, but fails the test when there is no such control.
    template <typename Control>
    [[nodiscard]] Control& get(const QString& accessibleName) const {
        Control* const control = find<Control>(accessibleName);
        if (control == nullptr)
            throw std::runtime_error("no control " + accessibleName.toStdString());
        return *control;
    }

    [[nodiscard]] bool isVisible(const QString& accessibleName) const;
    /// The text that a label shows; empty when it is not visible.
    [[nodiscard]] bool showsText(const QString& text) const;

    /// Clicks the middle of a button, or the box of a check box.
    void click(const QString& accessibleName) const;
    /// Clicks where there is no control.
    void clickEmptySpace() const;
    /// Replaces what is in a field, by mouse and keys, and does not leave it.
    void type(const QString& accessibleName, const QString& text) const;
    /// Presses a button of the alert that is open. The alert is gone afterwards.
    void answer(const QString& buttonText) const;

    /// config.json as it is on the disk.
    [[nodiscard]] static Config stored() { return Config::load(); }

    TempHome home;
    FakePlatform fakes;
    Seen seen;
    std::unique_ptr<AppDelegate> app;
    SettingsWindow* window = nullptr;

private:
    std::unique_ptr<Nginx> m_nginx;
    std::unique_ptr<ServedCatalogue> m_catalogue;
};

}  // namespace sayloft::test
