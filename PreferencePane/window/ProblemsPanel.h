#pragma once

#include "window/SettingsContext.h"

#include <QWidget>

class QLabel;
class QListWidget;

namespace orvane {

/// The problems of the shown preset, worst first. Choosing one goes to its place.
class ProblemsPanel final : public QWidget {
    Q_OBJECT

public:
    ProblemsPanel(SettingsContext &context, QWidget *parent);

    /// Checks the preset where it has changed, and lists what was found; `NoItem` for none.
    void showPreset(ItemID preset);

Q_SIGNALS:
    void problemChosen(orvane::ItemID item, const QString &key);

private:
    void _list(ItemID preset);
    [[nodiscard]] QString _place(const DocumentProblem &problem) const;

    SettingsContext &_context;
    QLabel *_ui_summary;
    QListWidget *_ui_list;
};

} // namespace orvane
