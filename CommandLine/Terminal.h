#pragma once

#include "StandardStreams.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// What text on a stream may use.
struct TextStyle {
    bool terminal = false; ///< control characters in names must not reach it
    bool color = false;    ///< escape sequences of ECMA-48 for colours
    bool unicode = false;  ///< line-drawing characters
};

/// The style for a descriptor: colour only on a terminal that knows it and when NO_COLOR is unset or empty
/// (no-color.org), line-drawing characters where the environment's locale has UTF-8.
[[nodiscard]] TextStyle styleOfDescriptor(int descriptor);

/// Whether the locale that the environment names (LC_ALL, else LC_CTYPE, else LANG; POSIX, 8.2) has UTF-8. Read from
/// the name alone, since loading the locale would cost more than the rest of the start.
[[nodiscard]] bool environmentHasUTF8();

/// How many columns a terminal needs for a text of one line in UTF-8 (Unicode Standard Annex 11; marks take none).
[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// Somebody at a keyboard who can be asked for lines of text.
class Terminal {
public:
    virtual ~Terminal() = default;
    /// Whether anybody is there.
    [[nodiscard]] virtual bool isAvailable() = 0;
    /// Shows text; control characters in it but line feeds are made visible.
    virtual void write(std::string_view text) = 0;
    /// One line without its end; nothing when the input ended or the user interrupted.
    [[nodiscard]] virtual std::optional<std::string> readLine() = 0;
};

/// The terminal that standard input is connected to. What it shows goes to standard error, or to the controlling
/// terminal when standard error is redirected. A program whose standard input is no terminal is not asked to be talked to,
/// even if it has a controlling terminal.
class StandardTerminal final : public Terminal {
public:
    StandardTerminal() = default;
    StandardTerminal(const StandardTerminal &) = delete;
    StandardTerminal &operator=(const StandardTerminal &) = delete;
    ~StandardTerminal() override;

    [[nodiscard]] bool isAvailable() override;
    void write(std::string_view text) override;
    [[nodiscard]] std::optional<std::string> readLine() override;

private:
    int _shown = -1; ///< where text goes; -1 until `isAvailable` found it
    bool _ownsShown = false;
};

} // namespace orvane
