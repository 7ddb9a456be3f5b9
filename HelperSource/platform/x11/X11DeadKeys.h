#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct xkb_context;
struct xkb_compose_table;

namespace orvane {

/// The accent that a dead key's cap shows, as a character that stands alone; 0 for a symbol that is no dead key.
[[nodiscard]] char32_t X11AccentOfDeadKey(std::uint32_t keysym);

/// Combines dead keys with what is typed after them, by the locale's compose table (libX11's "Compose" files). The table is
/// read when it is first needed. Main thread only.
class X11DeadKeys {
public:
    /// `context` is borrowed.
    explicit X11DeadKeys(xkb_context *context) : _context(context) {}
    /// UTF-8 of the two typed one after the other; empty when they do not combine.
    [[nodiscard]] std::string compose(std::uint32_t deadKeysym, std::uint32_t keysym);

private:
    struct Unref {
        void operator()(xkb_compose_table *table) const noexcept;
    };
    xkb_context *_context;
    std::unique_ptr<xkb_compose_table, Unref> _table;
    bool _wasRead = false;
};

} // namespace orvane
