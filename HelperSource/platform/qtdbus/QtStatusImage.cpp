#include "platform/qtdbus/QtStatusImage.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPoint>
#include <QString>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

QString atTwiceTheSize(const QString &path) {
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot < 0 ? path + "@2x"_L1 : path.left(dot) + "@2x"_L1 + path.mid(dot);
}

} // namespace

QtStatusImage::QtStatusImage(const std::string &resourceFolder, std::string_view name) {
    const QString path = QString::fromStdString(resourceFolder + '/' + std::string(name));
    for (const QString &file : {path, atTwiceTheSize(path)}) {
        const QImage shape(file);
        if (!shape.isNull()) {
            _shapes.append(shape.convertToFormat(QImage::Format_ARGB32_Premultiplied));
        }
    }
}

QImage QtStatusImage::image(int size, const QColor &color) const {
    QImage result(size, size, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    if (isEmpty()) {
        return result;
    }
    QImage shape = _shapes.last();
    for (const QImage &each : _shapes) {
        if (each.width() == size) {
            shape = each;
        }
    }
    if (shape.width() != size) {
        shape = shape.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    QPainter painter(&result);
    painter.drawImage((size - shape.width()) / 2, (size - shape.height()) / 2, shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(result.rect(), color);
    return result;
}

QImage QtStatusImage::imageWithRim(int size, const QColor &color, const QColor &rim) const {
    QImage result(size, size, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    const QImage around = image(size, rim);
    QPainter painter(&result);
    for (const QPoint &shift : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)}) {
        painter.drawImage(shift, around);
    }
    painter.drawImage(0, 0, image(size, color));
    return result;
}

QColor QtStatusImage::likelyColor() {
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const bool isGnomeShell = desktop.split(u':').contains("GNOME"_L1) && !desktop.contains("Flashback"_L1);
    return isGnomeShell ? QColor(Qt::white) : QGuiApplication::palette().color(QPalette::WindowText);
}

} // namespace orvane
