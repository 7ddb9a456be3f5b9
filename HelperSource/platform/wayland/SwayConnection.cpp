#include "platform/wayland/SwayConnection.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <QtGlobal>

namespace orvane {

namespace {

// A message: this text, the payload's length and the type (each 32 bits in the machine's own order), the payload.
constexpr char Magic[] = "i3-ipc";
constexpr qsizetype MagicLength = 6;
constexpr qsizetype HeaderLength = MagicLength + 8;
/// No answer is longer: a tree of ten thousand windows has some ten megabytes.
constexpr std::uint32_t LongestPayload = 64U << 20U;

} // namespace

bool SwayConnection::isThere() {
    return !qEnvironmentVariableIsEmpty("SWAYSOCK");
}

std::unique_ptr<SwayConnection> SwayConnection::open() {
    const QByteArray path = qgetenv("SWAYSOCK");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) {
        return nullptr;
    }
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto *const plain = reinterpret_cast<const sockaddr *>(&address);
    if (!socket || uninterrupted([&] { return ::connect(socket.get(), plain, sizeof address); }) != 0) {
        return nullptr;
    }
    return std::unique_ptr<SwayConnection>(new SwayConnection(std::move(socket)));
}

std::optional<QByteArray> SwayConnection::ask(Type type, const QByteArray &payload, const Deadline &deadline) {
    const auto length = static_cast<std::uint32_t>(payload.size());
    const auto number = static_cast<std::uint32_t>(type);
    QByteArray message(Magic, MagicLength);
    message.append(reinterpret_cast<const char *>(&length), sizeof length);
    message.append(reinterpret_cast<const char *>(&number), sizeof number);
    message.append(payload);
    // Far less than a socket's buffer holds, so this does not block on a sway that is busy.
    const auto sent = uninterrupted(
        [&] { return ::send(_socket.get(), message.constData(), static_cast<std::size_t>(message.size()), MSG_NOSIGNAL | MSG_DONTWAIT); });
    if (_isBroken || sent != message.size()) {
        _isBroken = true;
        return std::nullopt;
    }
    std::uint32_t answered = 0;
    QByteArray answer;
    while (!_next(answered, answer)) {
        pollfd wait{_socket.get(), POLLIN, 0};
        if (_isBroken || deadline.passed() || ::poll(&wait, 1, deadline.remaining()) < 0 || (wait.revents != 0 && !_receive())) {
            _isBroken = true;
            return std::nullopt;
        }
    }
    return answered == number ? std::optional(answer) : std::nullopt;
}

bool SwayConnection::_receive() {
    std::array<char, 16384> part;
    const auto length = uninterrupted([&] { return ::recv(_socket.get(), part.data(), part.size(), MSG_DONTWAIT); });
    if (length > 0) {
        _arrived.append(part.data(), length);
        return true;
    }
    return length < 0 && errno == EAGAIN;
}

bool SwayConnection::_next(std::uint32_t &type, QByteArray &payload) {
    if (_arrived.size() < HeaderLength) {
        return false;
    }
    std::uint32_t length = 0;
    std::memcpy(&length, _arrived.constData() + MagicLength, sizeof length);
    std::memcpy(&type, _arrived.constData() + MagicLength + sizeof length, sizeof type);
    if (!_arrived.startsWith(Magic) || length > LongestPayload) {
        _isBroken = true;
        return false;
    }
    if (_arrived.size() < HeaderLength + static_cast<qsizetype>(length)) {
        return false;
    }
    payload = _arrived.mid(HeaderLength, static_cast<qsizetype>(length));
    _arrived.remove(0, HeaderLength + static_cast<qsizetype>(length));
    return true;
}

void SwayConnection::listen(std::function<void(std::uint32_t, const QByteArray &)> event, std::function<void()> lost) {
    _event = std::move(event);
    _lost = std::move(lost);
    _notifier = std::make_unique<QSocketNotifier>(_socket.get(), QSocketNotifier::Read);
    QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(), [this] { _readable(); });
}

void SwayConnection::_readable() {
    const bool isAlive = _receive();
    std::uint32_t type = 0;
    QByteArray payload;
    while (_next(type, payload)) {
        const auto event = _event;
        event(type, payload);
    }
    if (!isAlive || _isBroken) {
        _notifier->setEnabled(false);
        const auto lost = _lost;
        lost();
    }
}

} // namespace orvane
