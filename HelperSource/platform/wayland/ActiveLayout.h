#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

class QtDBusSession;

/// Which of the keyboard's layouts is in use. Wayland itself tells it only to the window that has the keyboard; sway tells it to
/// everybody by its IPC, KWin on the session bus. Main thread only.
class ActiveLayout {
public:
    /// Borrowed; null where there is no session bus.
    explicit ActiveLayout(const QtDBusSession *session) : _session(session) {}

    /// The number, counted from 0, of the layout in use of a keyboard whose layouts are called that, in their order ("English (US)", the
    /// names in the keymap). Asked each time. Nothing where nobody tells, or what is told does not fit.
    [[nodiscard]] std::optional<std::uint32_t> index(const std::vector<std::string> &names) const;

private:
    [[nodiscard]] static std::optional<std::uint32_t> _bySway(const std::vector<std::string> &names);
    [[nodiscard]] std::optional<std::uint32_t> _byKWin() const;

    const QtDBusSession *_session;
};

} // namespace orvane
