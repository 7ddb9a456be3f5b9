#pragma once

#include "platform/wayland/HotKeyService.h"
#include "platform/wayland/SwayConnection.h"

#include <map>
#include <memory>
#include <string>

#include <QByteArray>
#include <QObject>

namespace orvane {

/// Hot keys by bindings that sway gets while it runs. They are bound to a command that does nothing, and sway tells of every binding that
/// fires: no program has to be started for a press. Bindings are by the key's place, and there is one for each state of Caps and
/// Num Lock. They live until they are given back; when sway reads its configuration again, which forgets them, they are made anew.
///
/// sway has no answer to whether a combination is free: a binding by key code (`bindcode`) in the user's configuration file is looked for
/// there and refused, one by symbol (`bindsym`) too where it is written with the same modifiers and a symbol of the first layout. One
/// that another program has made at run time is not seen. Of releases sway tells nothing that can be relied on: each press is followed
/// by its release at once.
class SwayHotKeys final : public HotKeyService {
public:
    SwayHotKeys() = default;
    SwayHotKeys(const SwayHotKeys &) = delete;
    SwayHotKeys &operator=(const SwayHotKeys &) = delete;
    ~SwayHotKeys() override;

    [[nodiscard]] std::string name() const override { return "sway"; }
    [[nodiscard]] Answer take(const HotKeyRequest &request) override;
    void giveBack(int slot) override;

private:
    [[nodiscard]] bool _connect();
    [[nodiscard]] bool _run(const QByteArray &command);
    [[nodiscard]] bool _bind(const QByteArray &combination, int slot);
    void _unbind(const QByteArray &combination);
    void _event(std::uint32_t type, const QByteArray &payload);
    void _bindAgain();
    void _lose();

    std::unique_ptr<SwayConnection> _commands;
    std::unique_ptr<SwayConnection> _events;
    std::map<int, QByteArray> _taken;                                    ///< slot to combination
    const std::unique_ptr<QObject> _guard = std::make_unique<QObject>(); ///< what is queued for this object goes with it
};

} // namespace orvane
