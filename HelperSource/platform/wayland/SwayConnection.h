#pragma once

#include "platform/filemanagers/Deadline.h"
#include "platform/posix/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QSocketNotifier>

namespace orvane {

/// Questions to sway through its IPC (sway-ipc(7)), the answer waited for. Main thread only.
class SwayConnection {
public:
    enum Type : std::uint32_t { RunCommand = 0, Subscribe = 2, GetTree = 4, GetConfig = 9, GetInputs = 100 };

    /// Whether the environment names a sway.
    [[nodiscard]] static bool isThere();
    /// To the sway that SWAYSOCK names; null when nobody answers there.
    [[nodiscard]] static std::unique_ptr<SwayConnection> open();
    SwayConnection(const SwayConnection &) = delete;
    SwayConnection &operator=(const SwayConnection &) = delete;
    ~SwayConnection() = default;

    /// The answer, JSON. Nothing when the connection is lost or time is up; it is of no use afterwards.
    [[nodiscard]] std::optional<QByteArray> ask(Type type, const QByteArray &payload, const Deadline &deadline);

    /// From now on calls `event` from the event loop with what arrives; `ask` must not be called any more. Event types have the
    /// highest bit set.
    void listen(std::function<void(std::uint32_t type, const QByteArray &payload)> event, std::function<void()> lost);

private:
    explicit SwayConnection(FileDescriptor socket) : _socket(std::move(socket)) {}
    [[nodiscard]] bool _receive();
    /// Takes the first whole message out of what has arrived.
    [[nodiscard]] bool _next(std::uint32_t &type, QByteArray &payload);
    void _readable();

    FileDescriptor _socket;
    QByteArray _arrived;
    bool _isBroken = false;
    std::function<void(std::uint32_t, const QByteArray &)> _event;
    std::function<void()> _lost;
    std::unique_ptr<QSocketNotifier> _notifier;
};

} // namespace orvane
