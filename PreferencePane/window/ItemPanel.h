#pragma once

#include "window/SettingsContext.h"

#include <QWidget>

#include <array>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace orvane {

/// What the selected items have besides their names: kind, label, permissions, content. Several items at once show what they have in
/// common, and get what is chosen.
class ItemPanel final : public QWidget {
    Q_OBJECT

public:
    ItemPanel(SettingsContext &context, QWidget *parent);

    void setItems(std::vector<ItemID> items);
    /// Shows what the items have now.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *_makeKind();
    QWidget *_makeLabels();
    QWidget *_makePermissions();
    QWidget *_makeContent();
    void _setPermissions(const QString &text);
    void _boxClicked(std::size_t box);
    void _chooseContent();
    void _showLabels();
    void _showPermissions();
    void _showContent();
    [[nodiscard]] bool _isHalfTyped() const;
    [[nodiscard]] std::vector<std::string> _texts(std::string_view key) const;

    SettingsContext &_context;
    std::vector<ItemID> _items;
    QComboBox *_ui_kind = nullptr;
    std::array<QToolButton *, 8> _ui_labels{};
    QLineEdit *_ui_octal = nullptr;
    std::array<QCheckBox *, 9> _ui_boxes{};
    QLabel *_ui_contentTitle = nullptr;
    QLineEdit *_ui_content = nullptr;
    QPushButton *_ui_choose = nullptr;
    QToolButton *_ui_open = nullptr;
    QToolButton *_ui_clear = nullptr;
};

} // namespace orvane
