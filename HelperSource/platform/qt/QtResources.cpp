#include "platform/qt/QtResources.h"

#include "platform/propertylist/PropertyListFiles.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace orvane {

std::optional<std::string> QtResources::stringOfResource(std::string_view name, std::string_view type) {
    QFile file(QFile::decodeName(path(std::string(name) + "." + std::string(type)).c_str()));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    const QString decoded = decoder.decode(bytes);
    if (file.error() != QFileDevice::NoError || decoder.hasError()) {
        return std::nullopt;
    }
    return bytes.toStdString();
}

std::optional<PropertyList> QtResources::propertyListOfString(std::string_view text) {
    return readPropertyList(text);
}

std::string QtResources::localizedString(std::string_view key) {
    return QCoreApplication::translate("Orvane", std::string(key).c_str()).toStdString();
}

std::string QtResources::folderOfProgram() {
    const QFileInfo program(QStringLiteral("/proc/self/exe"));
    const QString folder = QFileInfo(program.canonicalFilePath()).path();
    return QFile::encodeName(QFileInfo(folder).path() + QStringLiteral("/share/orvane")).toStdString();
}

} // namespace orvane
