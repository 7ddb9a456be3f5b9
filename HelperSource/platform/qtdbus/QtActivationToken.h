#pragma once

#include <QString>
#include <QVariantMap>

namespace orvane {

/// Permission to come to the front that another program handed over (xdg-activation-v1), for as long as this object lives.
///
/// It stands in the environment meanwhile, as XDG_ACTIVATION_TOKEN, where Qt's Wayland platform looks for it when it shows or
/// activates a window. Programs that are started must be given an environment without it (see `startDetached`). Main thread only.
class QtActivationToken {
public:
    /// An empty text is no permission.
    explicit QtActivationToken(const QString &token);
    QtActivationToken(const QtActivationToken &) = delete;
    QtActivationToken &operator=(const QtActivationToken &) = delete;
    ~QtActivationToken();

    /// That of a request's platform data: "activation-token", else "desktop-startup-id" (freedesktop.org, Desktop Entry 1.5,
    /// "D-Bus Activation"); empty when it has none.
    [[nodiscard]] static QString inPlatformData(const QVariantMap &platformData);
    /// Platform data with the permission that this process holds, if any, to hand on.
    [[nodiscard]] static QVariantMap platformData();

private:
    const bool _isSet;
};

} // namespace orvane
