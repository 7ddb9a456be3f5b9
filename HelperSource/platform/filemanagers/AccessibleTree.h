#pragma once

#include "platform/filemanagers/Deadline.h"
#include "platform/filemanagers/PathBar.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// Numbers of the roles that matter here (at-spi2-core 2.46, atspi-constants.h, AtspiRole; they never change).
namespace accessible_role {
constexpr std::uint32_t CheckBox = 7;
constexpr std::uint32_t Frame = 23;
constexpr std::uint32_t PushButton = 43;
constexpr std::uint32_t RadioButton = 44;
constexpr std::uint32_t Text = 61;
constexpr std::uint32_t ToggleButton = 62;
constexpr std::uint32_t Entry = 79;
} // namespace accessible_role

/// The buttons that share one parent, in the order of the tree.
using ButtonRow = std::vector<PathButton>;

/// What the active window of a program shows that may speak of its folder.
struct WindowContents {
    std::vector<ButtonRow> rows;
    std::vector<std::string> texts; ///< of fields in which the user is not typing
};

/// Reads the active window of a process from the accessibility bus: straight from that process's own connections, no other
/// program is asked. The window is the frame in the active state with this title, else the only one with this title. Buttons
/// are those of `buttonRole`. Nothing when the program is not on that bus, when there is not exactly one such window, when
/// its tree is larger than any file manager's, or when time is up before all of it is read.
[[nodiscard]] std::optional<WindowContents> readWindowContents(std::uint32_t pid, const std::string &title, std::uint32_t buttonRole,
                                                               const Deadline &deadline);

} // namespace orvane
