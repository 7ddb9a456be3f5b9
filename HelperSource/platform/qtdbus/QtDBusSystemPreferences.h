#pragma once

#include "platform/qtdbus/QtDBusSession.h"
#include "ports/SystemLog.h"
#include "ports/SystemPreferences.h"

#include <QObject>
#include <QString>

namespace orvane {

/// The settings program as an org.freedesktop.Application on the bus: its action "show-pane" with the pane's identifier, and plain
/// activation where it does not know that action. The bus starts it when it is not running; where the bus does not know it, as when
/// it was built and not installed, the program itself is started.
class QtDBusSystemPreferences final : public QObject, public SystemPreferences {
    Q_OBJECT

public:
    /// `program` is the path of the settings program, empty when it is not known. `applicationId` is its bus name; its object's path
    /// follows from that. The references must outlive it.
    QtDBusSystemPreferences(QtDBusSession &session, SystemLog &log, QString program,
                            QString applicationId = QStringLiteral("org.orvane.Settings"));

    /// The bus itself is asked whether somebody serves it, the program is not waited for: what goes wrong is logged.
    bool showPane(std::string_view identifier) override;

private:
    [[nodiscard]] bool _isServed() const;
    [[nodiscard]] bool _start() const;
    void _activate();

    QtDBusSession &_session;
    SystemLog &_log;
    const QString _program;
    const QString _applicationId;
    const QString _path;
};

} // namespace orvane
