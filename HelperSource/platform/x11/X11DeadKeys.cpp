#include "platform/x11/X11DeadKeys.h"

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

namespace orvane {

namespace {

struct DeadKey {
    std::uint32_t keysym;
    char32_t accent;
};

/// Dead keys by their symbols (X11's keysymdef.h) with Unicode's spacing forms of their accents.
constexpr std::array DeadKeys{
    DeadKey{XKB_KEY_dead_grave, U'`'},
    DeadKey{XKB_KEY_dead_acute, U'\u00B4'},
    DeadKey{XKB_KEY_dead_circumflex, U'^'},
    DeadKey{XKB_KEY_dead_tilde, U'~'},
    DeadKey{XKB_KEY_dead_macron, U'\u00AF'},
    DeadKey{XKB_KEY_dead_breve, U'\u02D8'},
    DeadKey{XKB_KEY_dead_abovedot, U'\u02D9'},
    DeadKey{XKB_KEY_dead_diaeresis, U'\u00A8'},
    DeadKey{XKB_KEY_dead_abovering, U'\u02DA'},
    DeadKey{XKB_KEY_dead_doubleacute, U'\u02DD'},
    DeadKey{XKB_KEY_dead_caron, U'\u02C7'},
    DeadKey{XKB_KEY_dead_cedilla, U'\u00B8'},
    DeadKey{XKB_KEY_dead_ogonek, U'\u02DB'},
    DeadKey{XKB_KEY_dead_iota, U'\u037A'},
    DeadKey{XKB_KEY_dead_voiced_sound, U'\u309B'},
    DeadKey{XKB_KEY_dead_semivoiced_sound, U'\u309C'},
    DeadKey{XKB_KEY_dead_belowdot, U'.'},
    DeadKey{XKB_KEY_dead_hook, U'\u02C0'},
    DeadKey{XKB_KEY_dead_horn, U'\u02BC'},
    DeadKey{XKB_KEY_dead_stroke, U'/'},
    DeadKey{XKB_KEY_dead_abovecomma, U'\u1FBF'},
    DeadKey{XKB_KEY_dead_abovereversedcomma, U'\u1FFE'},
    DeadKey{XKB_KEY_dead_doublegrave, U'\u02F5'},
    DeadKey{XKB_KEY_dead_belowring, U'\u02F3'},
    DeadKey{XKB_KEY_dead_belowmacron, U'\u02CD'},
    DeadKey{XKB_KEY_dead_belowtilde, U'\u02F7'},
    DeadKey{XKB_KEY_dead_lowline, U'_'},
    DeadKey{XKB_KEY_dead_currency, U'\u00A4'},
    DeadKey{XKB_KEY_dead_greek, U'\u00B5'},
};

/// The locale by POSIX's rule, as far as compose tables go.
const char *localeName() {
    for (const char *variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const char *value = std::getenv(variable); value != nullptr && *value != '\0') {
            return value;
        }
    }
    return "C";
}

} // namespace

char32_t X11AccentOfDeadKey(std::uint32_t keysym) {
    const auto *const found = std::find_if(DeadKeys.begin(), DeadKeys.end(), [&](const DeadKey &each) { return each.keysym == keysym; });
    return found == DeadKeys.end() ? U'\0' : found->accent;
}

void X11DeadKeys::Unref::operator()(xkb_compose_table *table) const noexcept {
    xkb_compose_table_unref(table);
}

std::string X11DeadKeys::compose(std::uint32_t deadKeysym, std::uint32_t keysym) {
    if (!_wasRead) {
        _wasRead = true;
        _table.reset(xkb_compose_table_new_from_locale(_context, localeName(), XKB_COMPOSE_COMPILE_NO_FLAGS));
    }
    if (!_table) {
        return {};
    }
    const std::unique_ptr<xkb_compose_state, void (*)(xkb_compose_state *)> state(
        xkb_compose_state_new(_table.get(), XKB_COMPOSE_STATE_NO_FLAGS), xkb_compose_state_unref);
    xkb_compose_state_feed(state.get(), deadKeysym);
    xkb_compose_state_feed(state.get(), keysym);
    if (xkb_compose_state_get_status(state.get()) != XKB_COMPOSE_COMPOSED) {
        return {};
    }
    constexpr std::size_t Room = 64; // bytes; compose tables give a few characters at most
    std::array<char, Room> text{};
    const int length = xkb_compose_state_get_utf8(state.get(), text.data(), text.size());
    return length > 0 && static_cast<std::size_t>(length) < text.size() ? std::string(text.data(), static_cast<std::size_t>(length))
                                                                        : std::string();
}

} // namespace orvane
