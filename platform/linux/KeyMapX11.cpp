// SPDX-License-Identifier: MIT
#include "platform/linux/KeyMapX11.h"

#include "platform/linux/XcbHandles.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <span>

namespace sayloft {
namespace {

std::span<const xkb_keysym_t> symbols(xkb_keymap* keymap, xcb_keycode_t key, std::uint32_t group,
                                      std::uint32_t level) {
    const xkb_keysym_t* found = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, key, group, level, &found);
    return {found, static_cast<std::size_t>(count)};
}

bool contains(std::span<const xkb_keysym_t> symbols, xkb_keysym_t keysym) {
    return std::find(symbols.begin(), symbols.end(), keysym) != symbols.end();
}

xkb_keymap* readKeymap(xcb_connection_t* connection, xkb_context* context) {
    const std::int32_t keyboard = xkb_x11_get_core_keyboard_device_id(connection);
    if (keyboard < 0)
        return nullptr;
    return xkb_x11_keymap_new_from_device(context, connection, keyboard,
                                          XKB_KEYMAP_COMPILE_NO_FLAGS);
}

std::vector<xcb_keycode_t> modifierRow(const xcb_get_modifier_mapping_reply_t* mapping,
                                       std::size_t modifier) {
    const std::span keys(xcb_get_modifier_mapping_keycodes(mapping),
                         KeyMapX11::modifierCount * mapping->keycodes_per_modifier);
    const auto row =
        keys.subspan(modifier * mapping->keycodes_per_modifier, mapping->keycodes_per_modifier);
    std::vector<xcb_keycode_t> used;
    std::copy_if(row.begin(), row.end(), std::back_inserter(used),
                 [](xcb_keycode_t key) { return key != 0; });
    return used;
}

}  // namespace

std::optional<KeyMapX11> KeyMapX11::read(xcb_connection_t* connection) {
    KeyMapX11 map;
    map.m_context.reset(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    if (!map.m_context)
        return std::nullopt;
    map.m_keymap.reset(readKeymap(connection, map.m_context.get()));
    const XcbOwned<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    if (!map.m_keymap || !modifiers)
        return std::nullopt;
    for (ModifierIndex modifier = 0; modifier < modifierCount; ++modifier)
        map.m_modifierKeys[modifier] = modifierRow(modifiers.get(), modifier);
    return map;
}

std::optional<xcb_keycode_t> KeyMapX11::keyFor(xkb_keysym_t keysym, std::uint32_t group) const {
    if (const auto key = keyInGroup(keysym, group))
        return key;
    const std::uint32_t groups = xkb_keymap_num_layouts(m_keymap.get());
    for (std::uint32_t other = 0; other < groups; ++other) {
        if (const auto key = keyInGroup(keysym, other))
            return key;
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> KeyMapX11::keyInGroup(xkb_keysym_t keysym, std::uint32_t group) const {
    const xkb_keycode_t last = xkb_keymap_max_keycode(m_keymap.get());
    for (xkb_keycode_t key = xkb_keymap_min_keycode(m_keymap.get()); key <= last; ++key) {
        const auto code = static_cast<xcb_keycode_t>(key);
        if (contains(symbols(m_keymap.get(), code, group, 0), keysym))
            return code;
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> KeyMapX11::modifierKey(ModifierIndex modifier,
                                                    xkb_keysym_t keysym) const {
    const std::vector<xcb_keycode_t>& keys = keysOf(modifier);
    if (keys.empty())
        return std::nullopt;
    const auto named = std::find_if(keys.begin(), keys.end(),
                                    [&](xcb_keycode_t key) { return carries(key, keysym); });
    return named != keys.end() ? *named : keys.front();
}

const std::vector<xcb_keycode_t>& KeyMapX11::keysOf(ModifierIndex modifier) const {
    return m_modifierKeys.at(modifier);
}

bool KeyMapX11::makes(ModifierIndex modifier, std::initializer_list<xkb_keysym_t> keysyms) const {
    const std::vector<xcb_keycode_t>& keys = keysOf(modifier);
    return std::any_of(keys.begin(), keys.end(), [&](xcb_keycode_t key) {
        return std::any_of(keysyms.begin(), keysyms.end(),
                           [&](xkb_keysym_t keysym) { return carries(key, keysym); });
    });
}

bool KeyMapX11::carries(xcb_keycode_t key, xkb_keysym_t keysym) const {
    const std::uint32_t groups = xkb_keymap_num_layouts_for_key(m_keymap.get(), key);
    for (std::uint32_t group = 0; group < groups; ++group) {
        const std::uint32_t levels = xkb_keymap_num_levels_for_key(m_keymap.get(), key, group);
        for (std::uint32_t level = 0; level < levels; ++level) {
            if (contains(symbols(m_keymap.get(), key, group, level), keysym))
                return true;
        }
    }
    return false;
}

std::uint8_t KeyMapX11::lockModifiers() const {
    unsigned mask = 1U << lock;
    for (ModifierIndex modifier = 0; modifier < modifierCount; ++modifier) {
        if (makes(modifier, {XKB_KEY_Num_Lock}))
            mask |= 1U << modifier;
    }
    return static_cast<std::uint8_t>(mask);
}

}  // namespace sayloft
