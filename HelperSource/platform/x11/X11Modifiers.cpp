#include "platform/x11/X11Modifiers.h"

#include "platform/x11/X11Reply.h"
#include "ports/HotKeyEvents.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <vector>

namespace orvane {

namespace {

/// The keys of the eight modifiers.
class ModifierMap {
public:
    static constexpr std::size_t Modifiers = 8;

    explicit ModifierMap(xcb_connection_t *connection) {
        const X11Reply<xcb_get_modifier_mapping_reply_t> reply(
            xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
        if (!reply) {
            return;
        }
        const xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(reply.get());
        for (auto &modifier : _keys) {
            modifier.assign(keys, keys + reply->keycodes_per_modifier);
            std::erase(modifier, xcb_keycode_t{0});
            keys += reply->keycodes_per_modifier;
        }
    }
    [[nodiscard]] const std::vector<xcb_keycode_t> &keys(std::size_t modifier) const { return _keys[modifier]; }

private:
    std::array<std::vector<xcb_keycode_t>, Modifiers> _keys;
};

using Symbols = std::initializer_list<xkb_keysym_t>;

bool keyHasSymbol(xkb_keymap *keymap, xcb_keycode_t key, Symbols wanted, bool firstLevelOnly) {
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, key);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        const xkb_level_index_t levels = firstLevelOnly ? 1 : xkb_keymap_num_levels_for_key(keymap, key, group);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t *symbols = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap, key, group, level, &symbols);
            for (int i = 0; i < count; ++i) {
                if (std::find(wanted.begin(), wanted.end(), symbols[i]) != wanted.end()) {
                    return true;
                }
            }
        }
    }
    return false;
}

std::uint16_t bitsOf(const ModifierMap &map, xkb_keymap *keymap, Symbols wanted, bool firstLevelOnly) {
    std::uint16_t bits = 0;
    for (std::size_t modifier = 0; modifier < ModifierMap::Modifiers; ++modifier) {
        for (const xcb_keycode_t key : map.keys(modifier)) {
            if (keyHasSymbol(keymap, key, wanted, firstLevelOnly)) {
                bits = static_cast<std::uint16_t>(bits | 1U << modifier);
            }
        }
    }
    return bits;
}

/// One bit: that of keys which are such a modifier when pressed alone, else one of keys which can be.
std::uint16_t bitOf(const ModifierMap &map, xkb_keymap *keymap, Symbols wanted) {
    std::uint16_t bits = bitsOf(map, keymap, wanted, true);
    if (bits == 0) {
        bits = bitsOf(map, keymap, wanted, false);
    }
    return static_cast<std::uint16_t>(bits & -bits); // pressing one key sets one bit
}

} // namespace

std::optional<std::uint16_t> X11Modifiers::ofCarbonModifiers(std::uint32_t modifiers) const {
    struct Pair {
        std::uint32_t carbonBit;
        std::uint16_t stateBit;
    };
    const std::array<Pair, 4> pairs{{{EventModifierCommand, super},
                                     {EventModifierShift, XCB_MOD_MASK_SHIFT},
                                     {EventModifierOption, alt},
                                     {EventModifierControl, XCB_MOD_MASK_CONTROL}}};
    std::uint16_t state = 0;
    for (const Pair &pair : pairs) {
        if ((modifiers & pair.carbonBit) != 0) {
            if (pair.stateBit == 0) {
                return std::nullopt;
            }
            state = static_cast<std::uint16_t>(state | pair.stateBit);
            modifiers &= ~pair.carbonBit;
        }
    }
    return modifiers == 0 ? std::optional(state) : std::nullopt;
}

std::uint16_t X11Modifiers::relevantState(std::uint16_t state) const {
    constexpr unsigned AllModifiers = 0xFF; // buttons and, with XKB, the group stand above (XKB protocol, section 2.2.2)
    return static_cast<std::uint16_t>(state & AllModifiers & ~unsigned{locks});
}

X11Modifiers X11ModifiersOfServer(xcb_connection_t *connection, xkb_keymap *keymap) {
    X11Modifiers modifiers;
    if (keymap == nullptr) {
        return modifiers;
    }
    const ModifierMap map(connection);
    modifiers.alt = bitOf(map, keymap, {XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    if (modifiers.alt == 0) {
        modifiers.alt = bitOf(map, keymap, {XKB_KEY_Meta_L, XKB_KEY_Meta_R});
    }
    modifiers.super = bitOf(map, keymap, {XKB_KEY_Super_L, XKB_KEY_Super_R});
    const std::uint16_t locks = bitsOf(map, keymap, {XKB_KEY_Caps_Lock, XKB_KEY_Shift_Lock, XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock}, false);
    const unsigned wanted = unsigned{XCB_MOD_MASK_SHIFT} | XCB_MOD_MASK_CONTROL | modifiers.alt | modifiers.super;
    modifiers.locks = static_cast<std::uint16_t>(locks & ~wanted); // a lock on a bit that means something else cannot be told apart
    return modifiers;
}

} // namespace orvane
