#include "platform/qtdbus/DesktopNotice.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int LimitForAnswer = 8000; // ms; whoever shows messages may have to be started
constexpr int DesktopsOwnTime = -1;  // how long the message is shown
constexpr uint ReplacesNothing = 0;  // number of an earlier message

} // namespace

DesktopNotice::DesktopNotice(QtDBusSession &session, SystemLog &log) : _session(session), _log(log) {}

void DesktopNotice::show(const QString &summary, const QString &body, const std::function<void()> &shown) {
    if (!_session.isConnected()) { // a call would have failed before anybody could watch it
        _log.log("the desktop shows no messages: there is no session bus");
        return;
    }
    const QString service = u"org.freedesktop.Notifications"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(service, u"/org/freedesktop/Notifications"_s, service, u"Notify"_s);
    const QVariantMap hints{{u"desktop-entry"_s, u"org.orvane.Helper"_s}};
    call.setArguments(
        {u"Orvane"_s, ReplacesNothing, u"org.orvane.Helper"_s, summary, body.toHtmlEscaped(), QStringList(), hints, DesktopsOwnTime});
    auto *const watcher = new QDBusPendingCallWatcher(_session.connection().asyncCall(call, LimitForAnswer), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, shown] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isError()) {
            _log.log("the desktop shows no messages: " + reply.error().message().toStdString());
        } else if (shown) {
            shown();
        }
    });
}

} // namespace orvane
