#pragma once

#include "ports/KeyboardLayouts.h"

#include <cstdint>
#include <memory>
#include <string>

namespace orvane {

/// Tells which character a keyboard layout prints on a key. Main thread only.
class SGKeyCodeTranslator {
public:
    /// Says of which keyboard the shared translator asks (borrowed), and forgets the translator; null takes the keyboard away.
    static void setSharedLayouts(KeyboardLayouts *layouts);
    /// The translator of the layout in use: the same one as long as that layout is in use. Null when no layouts are set.
    /// Valid until the next call.
    [[nodiscard]] static SGKeyCodeTranslator *currentTranslator();

    /// `layouts` is borrowed; a null source has no characters.
    SGKeyCodeTranslator(KeyboardLayouts &layouts, std::shared_ptr<const KeyboardInputSource> keyboardLayout);

    /// A string of exactly one UTF-16 unit, in UTF-8 (a lone surrogate as three bytes); for a key that gives no text that is the
    /// unit 0. The dead-key state left by one translation goes into the next.
    [[nodiscard]] std::string translateKeyCode(std::uint16_t keyCode);

    [[nodiscard]] const std::shared_ptr<const KeyboardInputSource> &keyboardLayout() const { return _keyboardLayout; }
    /// Sets the source alone: translations go on with the layout data of the one before, kept deliberately.
    void setKeyboardLayout(std::shared_ptr<const KeyboardInputSource> keyboardLayout);

private:
    KeyboardLayouts &_layouts;
    std::shared_ptr<const KeyboardInputSource> _keyboardLayout;
    std::shared_ptr<const KeyboardLayoutData> _keyboardLayoutData; ///< keeps its source
    std::uint32_t _deadKeyState = 0;
};

} // namespace orvane
