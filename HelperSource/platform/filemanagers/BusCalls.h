#pragma once

#include "platform/filemanagers/Deadline.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QString>
#include <QVariantList>

#include <optional>

namespace orvane {

/// A method of an object on a bus.
struct BusMethod {
    QString service;
    QString path;
    QString interface;
    QString member;
};

/// Calls on one bus that never start a program and never outlast the deadline. Any one thread; no event loop is needed.
class BusCalls {
public:
    BusCalls(QDBusConnection connection, const Deadline &deadline) : _connection(std::move(connection)), _deadline(deadline) {}

    /// The first value of the answer; nothing on an error, on an empty answer and when time is up.
    [[nodiscard]] std::optional<QVariant> call(const BusMethod &method, const QVariantList &arguments = {}) const;
    /// The value of a property of `method`'s interface; `member` is its name.
    [[nodiscard]] std::optional<QVariant> property(const BusMethod &method) const;
    /// Sends now, to be waited for with `answer`, so that many can be under way at once.
    [[nodiscard]] QDBusPendingCall send(const BusMethod &method, const QVariantList &arguments = {}) const;
    [[nodiscard]] QDBusPendingCall sendProperty(const BusMethod &method) const;
    [[nodiscard]] static std::optional<QVariant> answer(QDBusPendingCall &call);
    /// The same for a property: what is inside the variant.
    [[nodiscard]] static std::optional<QVariant> propertyAnswer(QDBusPendingCall &call);
    /// Whether somebody has the name now.
    [[nodiscard]] bool isOwned(const QString &name) const;

    [[nodiscard]] const Deadline &deadline() const { return _deadline; }

private:
    QDBusConnection _connection;
    Deadline _deadline;
};

} // namespace orvane
