#include "platform/wayland/WaylandActiveApplication.h"

#include "platform/wayland/SwayConnection.h"

#include <chrono>
#include <string>

#include <unistd.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds Patience(200);

std::string textOf(const QJsonValue &value) {
    return value.toString().toStdString();
}

ActiveWindowAnswer answerOf(const QJsonObject &node) {
    const QString type = node.value(QLatin1String("type")).toString();
    if (type != QLatin1String("con") && type != QLatin1String("floating_con")) {
        return {ActiveWindowAnswer::Who::Nobody, {}}; // an empty workspace
    }
    if (!node.value(QLatin1String("nodes")).toArray().isEmpty()) {
        return {ActiveWindowAnswer::Who::Nobody, {}}; // several windows taken together
    }
    ActiveWindowAnswer answer{ActiveWindowAnswer::Who::Window, {}};
    answer.window.className = textOf(node.value(QLatin1String("app_id")));
    answer.window.isOnX11 = node.value(QLatin1String("shell")).toString() == QLatin1String("xwayland");
    if (answer.window.isOnX11) {
        answer.window.className = textOf(node.value(QLatin1String("window_properties")).toObject().value(QLatin1String("class")));
    }
    answer.window.title = textOf(node.value(QLatin1String("name")));
    answer.window.pid = static_cast<std::uint32_t>(node.value(QLatin1String("pid")).toInt());
    return answer;
}

/// The node that has the focus, at any depth; an empty one for none.
QJsonObject focusedNode(const QJsonObject &root) {
    QList<QJsonObject> open{root};
    while (!open.isEmpty()) {
        const QJsonObject node = open.takeLast();
        if (node.value(QLatin1String("focused")).toBool()) {
            return node;
        }
        for (const QLatin1String children : {QLatin1String("nodes"), QLatin1String("floating_nodes")}) {
            const QJsonArray all = node.value(children).toArray();
            for (const QJsonValue child : all) {
                open.append(child.toObject());
            }
        }
    }
    return {};
}

} // namespace

std::optional<ApplicationWindow> WaylandActiveApplication::window() {
    const ActiveWindowAnswer answer = _ask();
    const bool isOurs = answer.who == ActiveWindowAnswer::Who::Window && answer.window.pid == static_cast<std::uint32_t>(::getpid());
    if (answer.who == ActiveWindowAnswer::Who::Unknown || isOurs) {
        return _noted;
    }
    return answer.who == ActiveWindowAnswer::Who::Window ? std::optional(answer.window) : std::nullopt;
}

void WaylandActiveApplication::noteNow() {
    _noted = window();
}

bool SwayActiveApplication::isUsable() {
    return SwayConnection::isThere() && SwayConnection::open() != nullptr;
}

ActiveWindowAnswer SwayActiveApplication::_ask() {
    const Deadline deadline(Patience);
    const std::unique_ptr<SwayConnection> connection = SwayConnection::open();
    const auto tree = connection == nullptr ? std::nullopt : connection->ask(SwayConnection::GetTree, {}, deadline);
    if (!tree) {
        return {};
    }
    const QJsonObject focused = focusedNode(QJsonDocument::fromJson(*tree).object());
    // Nothing at all has the focus while a surface of the layer shell has the keyboard.
    return focused.isEmpty() ? ActiveWindowAnswer{} : answerOf(focused);
}

std::unique_ptr<ActiveApplication> makeWaylandActiveApplication() {
    if (SwayActiveApplication::isUsable()) {
        return std::make_unique<SwayActiveApplication>();
    }
    if (KWinActiveApplication::isUsable()) {
        return std::make_unique<KWinActiveApplication>();
    }
    return nullptr;
}

} // namespace orvane
