#include "platform/qtdbus/StatusNotifierObject.h"

#include <QDBusError>
#include <QDBusMetaType>

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierImage &value) {
    argument.beginStructure();
    argument << value.width << value.height << value.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierImage &value) {
    argument.beginStructure();
    argument >> value.width >> value.height >> value.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &value) {
    argument.beginStructure();
    argument << value.iconName << value.images << value.title << value.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &value) {
    argument.beginStructure();
    argument >> value.iconName >> value.images >> value.title >> value.text;
    argument.endStructure();
    return argument;
}

StatusNotifierObject::StatusNotifierObject() {
    qDBusRegisterMetaType<StatusNotifierImage>();
    qDBusRegisterMetaType<StatusNotifierImages>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

void StatusNotifierObject::setAppearance(const StatusNotifierAppearance &appearance) {
    const StatusNotifierAppearance old = std::exchange(_appearance, appearance);
    if (old.iconThemePath != appearance.iconThemePath) {
        Q_EMIT NewIconThemePath(appearance.iconThemePath);
    }
    Q_EMIT NewIcon();
    if (old.title != appearance.title) {
        Q_EMIT NewTitle();
    }
    if (old.title != appearance.title || old.toolTip != appearance.toolTip) {
        Q_EMIT NewToolTip();
    }
}

void StatusNotifierObject::Activate(int /*x*/, int /*y*/) {
    if (calledFromDBus()) {
        sendErrorReply(QDBusError::UnknownMethod, u"This item is a menu."_s);
    }
}

void StatusNotifierObject::SecondaryActivate(int /*x*/, int /*y*/) {}

void StatusNotifierObject::ContextMenu(int /*x*/, int /*y*/) {}

void StatusNotifierObject::Scroll(int /*delta*/, const QString & /*orientation*/) {}

void StatusNotifierObject::ProvideXdgActivationToken(const QString &token) {
    if (_tokenHandler) {
        _tokenHandler(token);
    }
}

} // namespace orvane
