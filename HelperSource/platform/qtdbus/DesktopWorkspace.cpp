#include "platform/qtdbus/DesktopWorkspace.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/qtdbus/DetachedProgram.h"

#include <QByteArray>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QStandardPaths>
#include <QStringList>
#include <QVariantMap>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString FileManager = u"org.freedesktop.FileManager1"_s;
const QString Portal = u"org.freedesktop.portal.Desktop"_s;
const QString XdgOpen = u"xdg-open"_s;

/// A path as a file URI (RFC 8089); its bytes are kept, whatever encoding they are in.
QString uriOf(const std::string &path) {
    const auto size = static_cast<qsizetype>(path.size());
    return "file://"_L1 + QString::fromLatin1(QByteArray(path.data(), size).toPercentEncoding("/"));
}

bool isNamedAsFile(std::string_view path) {
    return path.ends_with(".prefPane") || path.ends_with(".prefPane/");
}

} // namespace

/// One opening on its way.
struct DesktopWorkspace::Request {
    std::string path;
    std::vector<Way> ways;
    std::size_t next = 0;
};

DesktopWorkspace::DesktopWorkspace(QtDBusSession &session, SystemLog &log) : DesktopWorkspace(session, log, Limits()) {}

DesktopWorkspace::DesktopWorkspace(QtDBusSession &session, SystemLog &log, Limits limits) : _session(session), _log(log), _limits(limits) {}

DesktopWorkspace::~DesktopWorkspace() = default;

bool DesktopWorkspace::openFile(std::string_view path) {
    const auto request = std::make_shared<Request>();
    request->path = path;
    struct stat status {};
    if (stat(request->path.c_str(), &status) != 0) {
        return false;
    }
    const bool hasXdgOpen = !QStandardPaths::findExecutable(XdgOpen).isEmpty();
    if (!hasXdgOpen && !_session.isConnected()) {
        return false;
    }
    if (S_ISDIR(status.st_mode) && !isNamedAsFile(path)) {
        request->ways = {&DesktopWorkspace::_askFileManager, &DesktopWorkspace::_askPortal, &DesktopWorkspace::_startXdgOpen};
    } else {
        request->ways = {&DesktopWorkspace::_startXdgOpen, &DesktopWorkspace::_askPortal};
    }
    _tryNext(request);
    return true;
}

void DesktopWorkspace::_tryNext(const std::shared_ptr<Request> &request) {
    if (request->next >= request->ways.size()) {
        _log.log("Nothing here can open " + request->path);
        return;
    }
    const Way way = request->ways[request->next++];
    (this->*way)(request);
}

void DesktopWorkspace::_askFileManager(const std::shared_ptr<Request> &request) {
    _ifServed(FileManager, [this, request](bool isServed) {
        if (!isServed) {
            return _tryNext(request);
        }
        QDBusMessage call = QDBusMessage::createMethodCall(FileManager, u"/org/freedesktop/FileManager1"_s, FileManager, u"ShowFolders"_s);
        call.setArguments({QStringList{uriOf(request->path)}, qEnvironmentVariable("XDG_ACTIVATION_TOKEN")});
        _whenAnswered(_session.connection().asyncCall(call, _limits.program), [this, request](bool isDone) {
            if (!isDone) {
                _tryNext(request);
            }
        });
    });
}

void DesktopWorkspace::_askPortal(const std::shared_ptr<Request> &request) {
    _ifServed(Portal, [this, request](bool isServed) {
        const FileDescriptor opened(isServed ? open(request->path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
        if (opened.get() < 0) {
            return _tryNext(request);
        }
        QDBusMessage call = QDBusMessage::createMethodCall(Portal, u"/org/freedesktop/portal/desktop"_s,
                                                           u"org.freedesktop.portal.OpenURI"_s, u"OpenFile"_s);
        QVariantMap options;
        if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty()) {
            options.insert(u"activation_token"_s, token);
        }
        call.setArguments({QString(), QVariant::fromValue(QDBusUnixFileDescriptor(opened.get())), options});
        _whenAnswered(_session.connection().asyncCall(call, _limits.program), [this, request](bool isDone) {
            if (!isDone) {
                _tryNext(request);
            }
        });
    });
}

void DesktopWorkspace::_startXdgOpen(const std::shared_ptr<Request> &request) {
    const QString path = QString::fromStdString(request->path);
    const bool isText = path.toStdString() == request->path;
    if (!startDetached(XdgOpen, {isText ? path : uriOf(request->path)})) {
        _tryNext(request);
    }
}

/// Whether the name has an owner or can be started.
void DesktopWorkspace::_ifServed(const QString &name, const Then &then) {
    if (!_session.isConnected()) {
        return then(false);
    }
    const QString bus = u"org.freedesktop.DBus"_s;
    const QString path = u"/org/freedesktop/DBus"_s;
    QDBusMessage hasOwner = QDBusMessage::createMethodCall(bus, path, bus, u"NameHasOwner"_s);
    hasOwner.setArguments({name});
    auto *const owned = new QDBusPendingCallWatcher(_session.connection().asyncCall(hasOwner, _limits.bus), this);
    auto *const startable = new QDBusPendingCallWatcher(
        _session.connection().asyncCall(QDBusMessage::createMethodCall(bus, path, bus, u"ListActivatableNames"_s), _limits.bus), this);
    // The bus answers in order.
    connect(startable, &QDBusPendingCallWatcher::finished, this, [owned, startable, name, then] {
        owned->deleteLater();
        startable->deleteLater();
        const QDBusPendingReply<bool> isOwned = *owned;
        const QDBusPendingReply<QStringList> names = *startable;
        then((isOwned.isValid() && isOwned.value()) || (names.isValid() && names.value().contains(name)));
    });
}

void DesktopWorkspace::_whenAnswered(const QDBusPendingCall &call, const Then &then) {
    auto *const answer = new QDBusPendingCallWatcher(call, this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answer, then] {
        answer->deleteLater();
        then(!answer->isError());
    });
}

} // namespace orvane
