// SPDX-License-Identifier: MIT
#include "tests/support/Nginx.h"
#include "tests/support/ServedCatalogue.h"
#include "ui/tests/CutControls.h"
#include "ui/tests/OnboardFixture.h"
#include "ui/tests/WindowPictures.h"

#include <QApplication>
#include <QScreen>

namespace sayloft {
namespace {

enum class Missing { nothing, permissions, tray };
enum class Model { there, downloading, starterOffered };

struct Picture {
    const char* name;
    test::DesktopLook look = {};
    double scale = 1;
    Missing missing = Missing::permissions;
    Model model = Model::there;
};

class OnboardPictures : public test::OnboardFixture, public testing::WithParamInterface<Picture> {
protected:
    void arrange() {
        if (GetParam().missing != Missing::nothing) {
            fakes.privacy.trusted = false;
            fakes.audio.answer = AudioInput::Authorization::denied;
        }
        fakes.trayItem.isThere = GetParam().missing != Missing::tray;
        if (GetParam().model == Model::there)
            provideModel();
        else
            catalogue.serve(QStringLiteral("multilingual"), QByteArray(800'000, 'm'));
        if (GetParam().model == Model::starterOffered)
            provideModel(QStringLiteral("starter"));
    }

    [[nodiscard]] static bool downloads() { return GetParam().model != Model::there; }

    [[nodiscard]] bool isArranged() const {
        if (downloads())
            return delegate->models().downloading() && delegate->models().downloadProgress() > 0.3;
        return GetParam().missing != Missing::tray || delegate->trayMissing();
    }

    const test::DesktopLooks looks{GetParam().look};
    test::Nginx nginx{"location / { limit_rate 100k; }"};
    test::ServedCatalogue catalogue{nginx};
};

TEST_P(OnboardPictures, cutNoControl) {
    arrange();
    delegate->applicationDidFinishLaunching();
    open();
    ASSERT_TRUE(test::waitUntil([this] { return isArranged(); }, std::chrono::seconds(20)));
    controller().refresh();
    QApplication::processEvents();
    ASSERT_EQ(delegate->models().downloading(), downloads());
    ASSERT_EQ(starter()->isVisible(), GetParam().model == Model::starterOffered);
    test::takePicture(window(), QStringLiteral("onboarding-") + QLatin1String(GetParam().name),
                      GetParam().scale);
    EXPECT_EQ(test::cutControls(window()), QStringList());
    const QSize space = window().screen()->availableSize();
    EXPECT_EQ(window().size().expandedTo(space), space);
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, OnboardPictures,
    testing::Values(
        Picture{"light"}, Picture{"dark", {.isDark = true}},
        Picture{"ready", {}, 1, Missing::nothing}, Picture{"scaled", {}, 2},
        Picture{"downloading", {}, 1, Missing::permissions, Model::downloading},
        Picture{"large-font", {.fontScale = 2}},
        Picture{"large-font-ready", {.fontScale = 2}, 1, Missing::nothing},
        Picture{"dark-downloading", {.isDark = true}, 1, Missing::permissions, Model::downloading},
        Picture{"large-font-downloading",
                {.isDark = true, .fontScale = 2},
                1,
                Missing::permissions,
                Model::downloading},
        Picture{"no-tray", {}, 1, Missing::tray},
        Picture{"no-tray-large-font", {.fontScale = 2}, 1, Missing::tray},
        Picture{"no-tray-dark", {.isDark = true}, 1, Missing::tray}),
    [](const auto& row) {
        QString name = QString::fromLatin1(row.param.name);
        return name.remove(QLatin1Char('-')).toStdString();
    });

}  // namespace
}  // namespace sayloft
