// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionContentX11.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace sayloft {
namespace {

constexpr std::array<std::string_view, 17> NEVER_SAVED{
    "TARGETS",
    "MULTIPLE",
    "TIMESTAMP",
    "SAVE_TARGETS",
    "DELETE",
    "INSERT_SELECTION",
    "INSERT_PROPERTY",
    "INCR",
    "ATOM_PAIR",
    "PIXMAP",
    "BITMAP",
    "DRAWABLE",
    "COLORMAP",
    "CLIENT_WINDOW",
    "_QT_SELECTION",
    // WORKAROUND: Qt 5 and 6 offer this for every image; it cannot be handed over to anybody else.
    "application/x-qt-image",
    // WORKAROUND: GTK 3: the address of an object in the owner's memory.
    "GTK_TEXT_BUFFER_CONTENTS",
};

bool isNeverSaved(const QByteArray& target) {
    const std::string_view name(target.constData(), static_cast<std::size_t>(target.size()));
    return std::find(NEVER_SAVED.begin(), NEVER_SAVED.end(), name) != NEVER_SAVED.end();
}

// SVG is text, and what drawing programs paste; it is not made from the pixels.
bool isPixelImage(const QByteArray& target) {
    return target.startsWith("image/") && !target.contains("svg");
}

bool isLatin1(const QString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](QChar character) { return character.unicode() <= 0xff; });
}

SelectionForm usualForm(AtomsX11& atoms, const QByteArray& type) {
    if (type == "TEXT")
        return {.type = atoms.atom("UTF8_STRING"), .format = 8};
    return {.type = atoms.atom(type), .format = 8};
}

SelectionValue value(AtomsX11& atoms, const char* target, const char* type,
                     const QByteArray& data) {
    return {.target = atoms.atom(target), .form = {atoms.atom(type), 8}, .data = data};
}

}  // namespace

SelectionContent textContent(AtomsX11& atoms, const QString& text, ClipboardStay stay) {
    const QByteArray utf8 = text.toUtf8();
    SelectionContent content{
        value(atoms, "UTF8_STRING", "UTF8_STRING", utf8),
        value(atoms, "text/plain;charset=utf-8", "text/plain;charset=utf-8", utf8),
        value(atoms, "text/plain", "text/plain", utf8),
    };
    if (isLatin1(text)) {
        content.push_back(value(atoms, "STRING", "STRING", text.toLatin1()));
        content.push_back(value(atoms, "TEXT", "STRING", text.toLatin1()));
    } else {
        content.push_back(value(atoms, "TEXT", "UTF8_STRING", utf8));
    }
    if (stay == ClipboardStay::forOnePaste)
        content.push_back(value(atoms, SECRECY_HINT, SECRECY_HINT, "secret"));
    return content;
}

SelectionContent contentOf(AtomsX11& atoms, const ClipboardSnapshot& snapshot,
                           const SelectionForms& forms) {
    SelectionContent content;
    for (const ClipboardItem& item : snapshot.items) {
        for (const ClipboardRepresentation& representation : item) {
            const xcb_atom_t target = atoms.atom(representation.type);
            const auto known = forms.find(target);
            content.push_back({.target = target,
                               .form = known == forms.end() ? usualForm(atoms, representation.type)
                                                            : known->second,
                               .data = representation.data});
        }
    }
    return content;
}

ClipboardSnapshot snapshotOf(AtomsX11& atoms, const SelectionContent& content) {
    ClipboardItem item;
    for (const SelectionValue& value : content)
        item.push_back({.type = atoms.name(value.target), .data = value.data});
    return item.empty() ? ClipboardSnapshot{} : ClipboardSnapshot{{item}};
}

std::vector<xcb_atom_t> targetsToSave(AtomsX11& atoms, const std::vector<xcb_atom_t>& offered) {
    atoms.learnNames(offered);
    const auto isOffered = [&](const char* name) {
        return std::find(offered.begin(), offered.end(), atoms.atom(name)) != offered.end();
    };
    const bool hasUtf8 = isOffered("UTF8_STRING");
    const auto firstImage = std::find_if(offered.begin(), offered.end(), [&](xcb_atom_t target) {
        return isPixelImage(atoms.name(target));
    });
    xcb_atom_t image = firstImage == offered.end() ? xcb_atom_t{XCB_ATOM_NONE} : *firstImage;
    if (isOffered("image/png"))
        image = atoms.atom("image/png");

    std::vector<xcb_atom_t> saved;
    std::copy_if(offered.begin(), offered.end(), std::back_inserter(saved), [&](xcb_atom_t target) {
        const QByteArray name = atoms.name(target);
        const bool isLegacyText = name == "TEXT" || name == "COMPOUND_TEXT";
        const bool isDuplicate = std::find(saved.begin(), saved.end(), target) != saved.end();
        return !name.isEmpty() && !isDuplicate && !isNeverSaved(name) &&
               !(hasUtf8 && isLegacyText) && (!isPixelImage(name) || target == image);
    });
    return saved;
}

}  // namespace sayloft
