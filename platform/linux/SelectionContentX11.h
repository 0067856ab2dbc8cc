// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"
#include "platform/linux/AtomsX11.h"

#include <QByteArray>
#include <QString>

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <vector>

namespace sayloft {

/// How the data of a target travels: the type and the unit (8, 16 or 32 bits) of the property.
struct SelectionForm {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 8;
};

/// What a selection gives for one target.
struct SelectionValue {
    xcb_atom_t target = XCB_ATOM_NONE;
    SelectionForm form;
    QByteArray data;  ///< as on the wire: 32-bit units are four bytes each
};

/// What a selection offers, in the order of the owner. TARGETS, MULTIPLE and TIMESTAMP are not in
/// it: they belong to whoever serves it.
using SelectionContent = std::vector<SelectionValue>;

/// How targets travelled when they were read; snapshots do not carry it.
using SelectionForms = std::map<xcb_atom_t, SelectionForm>;

/// Marks a clipboard that its managers shall not record.
inline constexpr const char* SECRECY_HINT = "x-kde-passwordManagerHint";

/// Plain text in every type that programs ask for, and the hint not to record it. STRING is offered
/// where Latin-1, the only encoding it has, can hold the text.
[[nodiscard]] SelectionContent textContent(AtomsX11& atoms, const QString& text,
                                           ClipboardStay stay);

/// A target that `forms` does not know travels as bytes under its own name or, for the text
/// targets of the ICCCM, under the type that belongs to it.
[[nodiscard]] SelectionContent contentOf(AtomsX11& atoms, const ClipboardSnapshot& snapshot,
                                         const SelectionForms& forms);

/// One item with every value; no item when there is none.
[[nodiscard]] ClipboardSnapshot snapshotOf(AtomsX11& atoms, const SelectionContent& content);

/// Those of an owner's targets that are worth saving, in its order. Left out are targets that are
/// no content or that do something when they are asked for, resources and pointers that mean
/// nothing once their owner has gone, text in encodings that UTF8_STRING makes superfluous, and of
/// the pixel images, each of which the owner would encode on request, all but PNG or else the
/// first.
[[nodiscard]] std::vector<xcb_atom_t> targetsToSave(AtomsX11& atoms,
                                                    const std::vector<xcb_atom_t>& offered);

}  // namespace sayloft
