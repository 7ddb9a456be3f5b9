#pragma once

#include <optional>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

// Well-known names on the bus, asked for without waiting in the queue for them.

namespace orvane {

/// The call that asks the bus for a name.
[[nodiscard]] QDBusMessage busNameRequest(const QString &name);
/// Asks the bus for a name, and waits half a second at most: whether it is the connection's; nothing when the bus does not say.
[[nodiscard]] std::optional<bool> requestBusName(const QDBusConnection &connection, const QString &name);

} // namespace orvane
