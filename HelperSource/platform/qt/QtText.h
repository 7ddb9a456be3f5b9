#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace orvane {

/// The core's UTF-8 for Qt. What is no UTF-8 becomes replacement characters: for showing only.
[[nodiscard]] QString QtTextOf(std::string_view text);
/// Qt's text for the core.
[[nodiscard]] std::string QtUtf8Of(const QString &text);
/// The text in one line: line breaks, tabs and other control characters are each shown as one blank, those at the ends not at all.
[[nodiscard]] QString QtSingleLine(const QString &text);
/// The text kept from changing the order of what stands around it, whatever its direction (UAX #9: first strong isolate). In a
/// program that reads from left to right, texts that do so too stay as they are.
[[nodiscard]] QString QtIsolated(const QString &text);

} // namespace orvane
