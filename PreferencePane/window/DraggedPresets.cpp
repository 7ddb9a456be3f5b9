#include "window/DraggedPresets.h"

#include "window/DraggedItems.h"
#include "window/Page.h"
#include "window/Sentences.h"

#include "platform/qt/QtText.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <utility>

namespace orvane {

namespace {

const QString FilesMediaType = QStringLiteral("text/uri-list");
/// Of a title in a file's name, so that even one of four bytes a character leaves room for a number and the suffix in 255 bytes.
constexpr qsizetype MostUnits = 56;

} // namespace

QString fileNameOfPreset(const QString &title) {
    QString name = QtSingleLine(title).left(MostUnits).trimmed();
    name.replace(u'/', u'-');
    if (name.startsWith(u'.')) {
        name.prepend(u'_');
    }
    return (name.isEmpty() ? QStringLiteral("Preset") : name) + QStringLiteral(".orvpreset");
}

DraggedPresets::DraggedPresets(SettingsContext &context, std::vector<ItemID> presets, std::shared_ptr<QTemporaryDir> place)
    : _context(context), _presets(std::move(presets)), _place(std::move(place)) {}

bool DraggedPresets::hasFormat(const QString &mediaType) const {
    return formats().contains(mediaType);
}

QStringList DraggedPresets::formats() const {
    return {QLatin1String(PresetsMediaType), FilesMediaType};
}

QVariant DraggedPresets::retrieveData(const QString &mediaType, QMetaType /*type*/) const {
    if (mediaType == QLatin1String(PresetsMediaType)) {
        return bytesOfItems(_presets);
    }
    if (mediaType != FilesMediaType) {
        return {};
    }
    if (!std::exchange(_areWritten, true)) {
        _writeFiles();
    }
    return _urls;
}

/// What cannot be written is left out, with a message. Presets of the same title get numbers.
void DraggedPresets::_writeFiles() const {
    for (const ItemID preset : _presets) {
        if (!_context.presets.contains(preset)) {
            continue;
        }
        const QFileInfo wanted(_place->filePath(fileNameOfPreset(QtTextOf(_context.presets.title(preset)))));
        QString path = wanted.filePath();
        for (int number = 2; QFileInfo::exists(path); ++number) {
            path = wanted.path() + u'/' + wanted.completeBaseName() + u' ' + QString::number(number) + u'.' + wanted.suffix();
        }
        Sentence problem;
        std::vector<Sentence> warnings;
        if (_context.contents.writePresetFile(_context.presets.record(preset), QFile::encodeName(path).toStdString(), false, warnings,
                                              problem)) {
            _urls.append(QUrl::fromLocalFile(path));
        } else {
            _context.showMessage(translated("The preset cannot be exported: %1").arg(translatedSentence(problem)), true);
        }
        if (!warnings.empty()) {
            _context.showMessage(translatedSentence(warnings.front()), true);
        }
    }
}

} // namespace orvane
