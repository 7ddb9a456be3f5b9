#pragma once

#include "window/SettingsContext.h"

#include <QMimeData>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace orvane {

/// What the drag of presets within one window is known by; its data are `bytesOfItems`.
inline constexpr const char *PresetsMediaType = "application/x-orvane-preset-ids";

/// The name that a preset's file gets: its title, as far as that may stand in a file's name.
[[nodiscard]] QString fileNameOfPreset(const QString &title);

/// Presets on their way out of the list. Within the window they are known by their ids; whoever else asks gets preset files, which are
/// written then.
class DraggedPresets final : public QMimeData {
    Q_OBJECT

public:
    /// The files are made in `place`, which must stay until whoever got them has copied them.
    DraggedPresets(SettingsContext &context, std::vector<ItemID> presets, std::shared_ptr<QTemporaryDir> place);

    [[nodiscard]] bool hasFormat(const QString &mediaType) const override;
    [[nodiscard]] QStringList formats() const override;

protected:
    QVariant retrieveData(const QString &mediaType, QMetaType type) const override;

private:
    void _writeFiles() const;

    SettingsContext &_context;
    std::vector<ItemID> _presets;
    std::shared_ptr<QTemporaryDir> _place;
    mutable bool _areWritten = false;
    mutable QList<QVariant> _urls;
};

} // namespace orvane
