#pragma once

#include "platform/qtdbus/QtDBusSession.h"
#include "ports/SystemLog.h"
#include "ports/Workspace.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QDBusPendingCall;

namespace orvane {

/// Opens files and folders on whatever desktop there is, one way after the other until one takes them:
///
/// - folders: the running or startable file manager (org.freedesktop.FileManager1, ShowFolders), the portal
///   (org.freedesktop.portal.OpenURI, OpenFile), `xdg-open`;
/// - everything else, and what is called a file by its name (`.prefPane`): `xdg-open`, the portal.
///
/// Returns before any of them has answered; when the last one has failed, the log says so. Main thread only.
class DesktopWorkspace final : public QObject, public Workspace {
    Q_OBJECT

public:
    struct Limits {
        int bus = 2000;     ///< ms for an answer of the bus itself
        int program = 8000; ///< ms for one of a file manager or portal, which may have to be started
    };

    /// The references must outlive it.
    DesktopWorkspace(QtDBusSession &session, SystemLog &log);
    DesktopWorkspace(QtDBusSession &session, SystemLog &log, Limits limits);
    DesktopWorkspace(const DesktopWorkspace &) = delete;
    DesktopWorkspace &operator=(const DesktopWorkspace &) = delete;
    ~DesktopWorkspace() override;

    /// False when nothing is at the path, or when there is neither a bus nor `xdg-open`.
    bool openFile(std::string_view path) override;

private:
    struct Request;
    using Way = void (DesktopWorkspace::*)(const std::shared_ptr<Request> &);
    using Then = std::function<void(bool)>;

    void _tryNext(const std::shared_ptr<Request> &request);
    void _askFileManager(const std::shared_ptr<Request> &request);
    void _askPortal(const std::shared_ptr<Request> &request);
    void _startXdgOpen(const std::shared_ptr<Request> &request);
    void _ifServed(const QString &name, const Then &then);
    void _whenAnswered(const QDBusPendingCall &call, const Then &then);

    QtDBusSession &_session;
    SystemLog &_log;
    const Limits _limits;
};

} // namespace orvane
