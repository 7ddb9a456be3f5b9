#include "platform/wayland/ActiveLayout.h"

#include "platform/qtdbus/QtDBusSession.h"
#include "platform/wayland/SwayConnection.h"

#include <algorithm>
#include <chrono>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds SwayPatience(200);
constexpr int KWinPatienceInMilliseconds = 200;

bool hasLayouts(const QJsonObject &keyboard, const std::vector<std::string> &names) {
    const QJsonArray layouts = keyboard.value(QLatin1String("xkb_layout_names")).toArray();
    return std::equal(layouts.begin(), layouts.end(), names.begin(), names.end(),
                      [](const QJsonValue &layout, const std::string &name) { return layout.toString().toStdString() == name; });
}

} // namespace

std::optional<std::uint32_t> ActiveLayout::index(const std::vector<std::string> &names) const {
    std::optional<std::uint32_t> number = _bySway(names);
    if (!number) {
        number = _byKWin();
    }
    return number && *number < names.size() ? number : std::nullopt;
}

std::optional<std::uint32_t> ActiveLayout::_bySway(const std::vector<std::string> &names) {
    const auto sway = SwayConnection::isThere() ? SwayConnection::open() : nullptr;
    const auto answer = sway == nullptr ? std::nullopt : sway->ask(SwayConnection::GetInputs, {}, Deadline(SwayPatience));
    if (!answer) {
        return std::nullopt;
    }
    // Each keyboard has layouts of its own; the seat's keymap is that of one of them.
    const QJsonArray inputs = QJsonDocument::fromJson(*answer).array();
    for (const QJsonValue input : inputs) {
        const QJsonObject keyboard = input.toObject();
        const int number = keyboard.value(QLatin1String("xkb_active_layout_index")).toInt(-1);
        if (number >= 0 && hasLayouts(keyboard, names)) {
            return static_cast<std::uint32_t>(number);
        }
    }
    return std::nullopt;
}

std::optional<std::uint32_t> ActiveLayout::_byKWin() const {
    const QString service = QStringLiteral("org.kde.keyboard");
    const QDBusConnectionInterface *const bus =
        _session != nullptr && _session->isConnected() ? _session->connection().interface() : nullptr;
    if (bus == nullptr || !bus->isServiceRegistered(service).value()) {
        return std::nullopt;
    }
    const QDBusMessage question = QDBusMessage::createMethodCall(service, QStringLiteral("/Layouts"),
                                                                 QStringLiteral("org.kde.KeyboardLayouts"), QStringLiteral("getLayout"));
    const QDBusReply<uint> number = _session->connection().call(question, QDBus::Block, KWinPatienceInMilliseconds);
    return number.isValid() ? std::optional<std::uint32_t>(number.value()) : std::nullopt;
}

} // namespace orvane
