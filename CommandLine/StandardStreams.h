#pragma once

#include <string>
#include <string_view>

// The standard streams without buffers of their own, and what may be written to one that is a terminal.

namespace orvane {

/// Whether the descriptor is a terminal; asked once for each of the standard streams.
[[nodiscard]] bool isTerminal(int descriptor);

/// Writes one or more whole lines to standard error, which every message passes. On a terminal, control characters but line feeds and
/// tabs are made visible.
void writeStandardError(std::string_view text);

/// Text made safe for one line of a terminal: control characters and bytes that are no UTF-8 as \xNN.
[[nodiscard]] std::string printable(std::string_view text);

} // namespace orvane
