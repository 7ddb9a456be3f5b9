#include "platform/wayland/SwayHotKeys.h"

#include "platform/wayland/KeyboardMap.h"
#include "platform/wayland/SwayConfiguration.h"
#include "platform/x11/X11KeyCodes.h"

#include <array>
#include <chrono>
#include <utility>

#include <unistd.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds Patience(500);
/// Events that are subscribed to (sway-ipc(7)).
constexpr std::uint32_t WorkspaceEvent = 0x80000000;
constexpr std::uint32_t BindingEvent = 0x80000005;

/// Caps Lock and Num Lock by sway's names; a binding fires only when the modifiers are just these.
constexpr std::array<const char *, 4> Locks{"", "Lock+", "Mod2+", "Lock+Mod2+"};

/// What the binding is bound to; the process's number keeps helpers of two sessions of one sway apart.
QByteArray commandFor(int slot) {
    return "nop orvane-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(slot);
}

QJsonObject objectIn(const QByteArray &json) {
    return QJsonDocument::fromJson(json).object();
}

} // namespace

SwayHotKeys::~SwayHotKeys() {
    for (const auto &[slot, combination] : _taken) {
        _unbind(combination);
    }
}

bool SwayHotKeys::_connect() {
    if (_commands != nullptr && _events != nullptr) {
        return true;
    }
    _commands = SwayConnection::open();
    _events = SwayConnection::open();
    if (_commands == nullptr || _events == nullptr) {
        return false;
    }
    const auto answer = _events->ask(SwayConnection::Subscribe, R"(["binding","workspace"])", Deadline(Patience));
    if (!answer || !objectIn(*answer).value(QLatin1String("success")).toBool()) {
        _commands.reset();
        _events.reset();
        return false;
    }
    _events->listen([this](std::uint32_t type, const QByteArray &payload) { _event(type, payload); }, [this] { _lose(); });
    return true;
}

void SwayHotKeys::_lose() {
    // Not from inside the connection's own event.
    QTimer::singleShot(0, [commands = std::shared_ptr<SwayConnection>(std::move(_commands)),
                           events = std::shared_ptr<SwayConnection>(std::move(_events))] {});
    const std::map<int, QByteArray> lost = std::exchange(_taken, {});
    for (const auto &[slot, combination] : lost) {
        if (decided) {
            decided(slot, false, "sway has ended");
        }
    }
}

bool SwayHotKeys::_run(const QByteArray &command) {
    const auto answer = _commands == nullptr ? std::nullopt : _commands->ask(SwayConnection::RunCommand, command, Deadline(Patience));
    const QJsonArray results = answer ? QJsonDocument::fromJson(*answer).array() : QJsonArray();
    bool isDone = !results.isEmpty();
    for (const QJsonValue result : results) {
        isDone = isDone && result.toObject().value(QLatin1String("success")).toBool();
    }
    return isDone;
}

HotKeyService::Answer SwayHotKeys::take(const HotKeyRequest &request) {
    if (!SwayConnection::isThere() || !_connect()) {
        return Answer::Unavailable;
    }
    const std::optional<std::uint8_t> key = X11KeyCodeOfVirtualKeyCode(request.keyCode);
    const std::optional<SwayModifiers> modifiers = SwayModifiersOfCarbon(request.modifiers);
    if (!key || !modifiers) {
        return Answer::Invalid;
    }
    const auto configuration = _commands->ask(SwayConnection::GetConfig, {}, Deadline(Patience));
    const std::string text = configuration ? objectIn(*configuration).value(QLatin1String("config")).toString().toStdString() : "";
    const KeyboardMap map = KeyboardMap::ofSession();
    if (SwayConfigurationBinds(text, *modifiers, *key, map.keysym(request.keyCode, 0))) {
        return Answer::Refused;
    }
    const QByteArray combination = QByteArray::fromStdString(SwayNameOf(*modifiers)) + QByteArray::number(*key);
    for (const auto &[slot, taken] : _taken) {
        if (taken == combination) {
            return Answer::Refused;
        }
    }
    if (!_bind(combination, request.slot)) {
        _unbind(combination);
        return Answer::Unavailable;
    }
    _taken[request.slot] = combination;
    return Answer::Taken;
}

bool SwayHotKeys::_bind(const QByteArray &combination, int slot) {
    bool isBound = true;
    for (const char *const lock : Locks) {
        isBound = isBound && _run("bindcode --no-repeat --no-warn " + QByteArray(lock) + combination + ' ' + commandFor(slot));
    }
    return isBound;
}

void SwayHotKeys::_unbind(const QByteArray &combination) {
    for (const char *const lock : Locks) {
        // One that was never made is not there to take away.
        static_cast<void>(_run("unbindcode " + QByteArray(lock) + combination));
    }
}

void SwayHotKeys::giveBack(int slot) {
    const auto taken = _taken.find(slot);
    if (taken != _taken.end()) {
        _unbind(taken->second);
        _taken.erase(taken);
    }
}

void SwayHotKeys::_bindAgain() {
    const std::map<int, QByteArray> taken = _taken;
    for (const auto &[slot, combination] : taken) {
        if (!_bind(combination, slot)) {
            _taken.erase(slot);
            if (decided) {
                decided(slot, false, "after its configuration was read again");
            }
        }
    }
}

void SwayHotKeys::_event(std::uint32_t type, const QByteArray &payload) {
    const QJsonObject event = objectIn(payload);
    const QString change = event.value(QLatin1String("change")).toString();
    if (type == WorkspaceEvent && change == QLatin1String("reload")) {
        _bindAgain();
    }
    if (type != BindingEvent || change != QLatin1String("run")) {
        return;
    }
    const QByteArray command = event.value(QLatin1String("binding")).toObject().value(QLatin1String("command")).toString().toUtf8();
    for (const auto &[slot, combination] : _taken) {
        if (command == commandFor(slot)) {
            const int fired = slot;
            // The handler may wait long (a menu), and may give the key back.
            QTimer::singleShot(0, _guard.get(), [this, fired] {
                if (pressed) {
                    pressed(fired);
                }
                if (released) {
                    released(fired);
                }
            });
            return;
        }
    }
}

} // namespace orvane
