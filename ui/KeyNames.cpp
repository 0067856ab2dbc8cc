// SPDX-License-Identifier: MIT
#include "ui/KeyNames.h"

#include <QStringList>

#include <array>

namespace sayloft {
namespace {

struct Key {
    Mods member;
    const char16_t* name;
};

constexpr std::array keys{Key{Mods::ctrl, u"Ctrl"}, Key{Mods::opt, u"Alt"},
                          Key{Mods::shift, u"Shift"}, Key{Mods::cmd, u"Super"},
                          Key{Mods::fn, u"Fn"}};

}  // namespace

QString keyNames(Mods chord) {
    QStringList names;
    for (const Key& key : keys) {
        if (chord.contains(key.member))
            names.append(QString::fromUtf16(key.name));
    }
    return names.isEmpty() ? QStringLiteral("no key") : names.join(u'+');
}

}  // namespace sayloft
