#pragma once

#include "platform/qtdbus/QtDBusServicesObject.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "ports/Services.h"
#include "ports/SystemLog.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// This program on the session bus: name `org.orvane.Helper`, object `/org/orvane/Helper`, interfaces org.freedesktop.Application
/// (freedesktop.org, Desktop Entry 1.5, "D-Bus Activation") and org.orvane.Services.
///
/// Requests that want the menu go to the services provider, from the event loop; the caller has its answer as soon as the provider
/// returns or starts handling events of its own, so that no caller waits for a menu. Such a request is dropped while `isBusy`: what is
/// on the screen then is what the user works with, and comes to the front. One that comes while an earlier one is with the provider,
/// but has nothing on the screen (its menu has just gone, its folder is being made), waits until it has, or is done. Requests that
/// come before there is a provider wait for it. Main thread only.
class QtDBusServices final : public QObject, public Services {
    Q_OBJECT

public:
    struct Hooks {
        std::function<void(const std::string &folder)> useFolder; ///< before the provider is asked by `make-preset-in`: an absolute path
        std::function<void()> requestDone;                        ///< the provider is done with a request: that folder counts no longer
        std::function<void()> showPreferences;
        std::function<void()> quit;
        std::function<bool()> isBusy;         ///< a menu, a prompt or a panel of ours is open
        std::function<void()> showWhatIsOpen; ///< instead of a request that is dropped because of that
    };

    /// The references must outlive it.
    QtDBusServices(QtDBusSession &session, SystemLog &log, Hooks hooks);
    QtDBusServices(const QtDBusServices &) = delete;
    QtDBusServices &operator=(const QtDBusServices &) = delete;
    ~QtDBusServices() override = default;

    /// Makes this the program that has the name. False only when another one has it; true without a bus, too. Takes half a second at
    /// most. From then on requests arrive, also after the bus has gone and come back.
    [[nodiscard]] bool claimName();
    /// Asks the program that has the name to show its menu; false when it does not answer within three seconds.
    [[nodiscard]] bool activateOther();

    void setServicesProvider(ServicesProvider *provider) override;

private:
    friend class QtDBusApplicationAdaptor;
    friend class QtDBusServicesAdaptor;

    /// A wish for the menu.
    struct Request {
        std::string pasteboard;
        std::string userData;
        std::optional<std::string> folder;
        QString token;
        std::function<void(const std::optional<std::string> &error)> answer; ///< may be empty
    };

    void _export();
    void _receive(Request request);
    void _serve(const Request &request);
    void _askProvider(const Request &request);
    void _run(const std::function<void()> &hook, const QString &token);

    QtDBusSession &_session;
    SystemLog &_log;
    const Hooks _hooks;
    QtDBusServicesObject _object;
    ServicesProvider *_provider = nullptr;
    std::vector<Request> _waiting; ///< for a provider
    bool _wantsName = false;
    bool _isServing = false;
};

} // namespace orvane
