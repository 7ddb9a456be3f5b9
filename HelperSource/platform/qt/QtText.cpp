#include "platform/qt/QtText.h"

#include <algorithm>

#include <QChar>
#include <QGuiApplication>
#include <QList>

namespace orvane {

namespace {

constexpr char16_t FirstStrongIsolate = u'\u2068';
constexpr char16_t PopDirectionalIsolate = u'\u2069';

/// Whether the character, alone, can change the order in which its line is shown.
bool changesOrder(char32_t character) {
    switch (QChar::direction(character)) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

} // namespace

QString QtTextOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string QtUtf8Of(const QString &text) {
    return text.toStdString();
}

QString QtSingleLine(const QString &text) {
    QString line = text;
    for (QChar &character : line) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line || category == QChar::Separator_Paragraph) {
            character = QLatin1Char(' ');
        }
    }
    return line.trimmed();
}

QString QtIsolated(const QString &text) {
    const QList<uint> characters = text.toUcs4();
    if (!QGuiApplication::isRightToLeft() && std::none_of(characters.begin(), characters.end(), changesOrder)) {
        return text;
    }
    return QChar(FirstStrongIsolate) + text + QChar(PopDirectionalIsolate);
}

} // namespace orvane
