#pragma once

#include "window/SettingsContext.h"

#include <QWidget>

#include <string>
#include <vector>

class QCheckBox;
class QLayout;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace orvane {

/// The variables of the shown preset, or of all: what the preview puts in for each, and where each is used. A variable that gets
/// another name here gets it everywhere; a text that stands in names becomes a variable here.
class VariablesPanel final : public QWidget {
    Q_OBJECT

public:
    VariablesPanel(SettingsContext &context, QWidget *parent);

    /// Lists the preset's variables where they have become others; `NoItem` for none.
    void showPreset(ItemID preset);

Q_SIGNALS:
    void useChosen(orvane::ItemID item);
    /// The preview has other values now.
    void samplesChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _list();
    void _addRow(const Variable &variable);
    void _rowChanged(QTreeWidgetItem *row, int column);
    void _rename(const std::string &from, const std::string &to);
    void _editCurrent();
    [[nodiscard]] QLayout *_makeFieldsForNewOne();
    void _enableMaking();
    void _make();
    [[nodiscard]] QString _nameOfUse(ItemID item) const;
    [[nodiscard]] std::vector<Variable> _variables();

    SettingsContext &_context;
    ItemID _preset = NoItem;
    std::vector<Variable> _listed;
    bool _isListing = false;
    QTreeWidget *_ui_tree;
    QCheckBox *_ui_all;
    QLineEdit *_ui_text; ///< that becomes a variable
    QLineEdit *_ui_name; ///< of that variable
    QPushButton *_ui_make;
};

} // namespace orvane
