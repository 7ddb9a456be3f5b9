#include "platform/wayland/MenuPanel.h"

#include "platform/qt/QtText.h"

#include <algorithm>

#include <QCoreApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QStyleOptionMenuItem>
#include <QStyledItemDelegate>

namespace orvane {

namespace {

/// Widest title in average characters of the menu's font, as in the menus of the status bar.
constexpr int WidestTitle = 60;
/// Room around the search line, in pixels of a screen with 96 dots an inch.
constexpr int LineGap = 4;

/// Draws a row as the style draws a menu's item.
class MenuItemDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        QStyleOptionMenuItem item = _option(*option.widget, index);
        item.rect = option.rect;
        item.state.setFlag(QStyle::State_Enabled, index.flags().testFlag(Qt::ItemIsEnabled));
        item.state.setFlag(QStyle::State_Selected, option.state.testFlag(QStyle::State_Selected));
        if (!item.state.testFlag(QStyle::State_Enabled)) {
            item.palette.setCurrentColorGroup(QPalette::Disabled);
        }
        option.widget->style()->drawControl(QStyle::CE_MenuItem, &item, painter, option.widget);
    }
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        const QStyleOptionMenuItem item = _option(*option.widget, index);
        const QSize text(item.menuItemType == QStyleOptionMenuItem::Separator ? 1 : item.fontMetrics.horizontalAdvance(item.text),
                         item.fontMetrics.height());
        return option.widget->style()->sizeFromContents(QStyle::CT_MenuItem, &item, text, option.widget);
    }

private:
    [[nodiscard]] static QStyleOptionMenuItem _option(const QWidget &widget, const QModelIndex &index) {
        QStyleOptionMenuItem item;
        item.initFrom(&widget);
        item.state = QStyle::State_Active | QStyle::State_Enabled;
        item.font = widget.font();
        item.fontMetrics = QFontMetrics(item.font);
        item.menuRect = widget.rect();
        if (index.data(MenuRows::IsSeparatorRole).toBool()) {
            item.menuItemType = QStyleOptionMenuItem::Separator;
            return item;
        }
        const int widest = WidestTitle * item.fontMetrics.averageCharWidth();
        item.text = QtIsolated(item.fontMetrics.elidedText(index.data().toString(), Qt::ElideMiddle, widest));
        // The style takes an ampersand for a mnemonic.
        item.text.replace(QLatin1Char('&'), QLatin1String("&&"));
        const QString key = index.data(MenuRows::KeyEquivalentRole).toString();
        if (!key.isEmpty()) {
            item.text += QLatin1Char('\t') + key;
            item.reservedShortcutWidth = item.fontMetrics.horizontalAdvance(key);
        }
        return item;
    }
};

int pixels(const QWidget &widget, QStyle::PixelMetric which) {
    return widget.style()->pixelMetric(which, nullptr, &widget);
}

} // namespace

MenuPanel::MenuPanel(Menu &menu, Search search, QWidget *parent) : QWidget(parent), _rows(menu), _list(new QListView(this)) {
    setObjectName(QStringLiteral("menuPanel"));
    _list->setObjectName(QStringLiteral("menuItems"));
    setBackgroundRole(QPalette::Window);
    setAccessibleName(QCoreApplication::translate("Orvane", "Orvane presets"));
    _list->setModel(&_rows);
    _list->setItemDelegate(new MenuItemDelegate(_list));
    _list->setFrameShape(QFrame::NoFrame);
    _list->viewport()->setAutoFillBackground(false);
    _list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    _list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    _list->setSelectionMode(QAbstractItemView::SingleSelection);
    _list->setMouseTracking(true);
    _list->setAccessibleName(accessibleName());
    _list->installEventFilter(this);
    _list->viewport()->installEventFilter(this);
    QObject::connect(&_rows, &QAbstractItemModel::modelReset, this, [this] {
        if (contentChanged) {
            contentChanged();
        }
    });
    if (search == Search::Line) {
        _line = new QLineEdit(this);
        _line->setObjectName(QStringLiteral("menuSearch"));
        _line->setPlaceholderText(QCoreApplication::translate("Orvane", "Type to search"));
        _line->setAccessibleName(_line->placeholderText());
        _line->setClearButtonEnabled(true);
        _line->installEventFilter(this);
        _list->setFocusPolicy(Qt::NoFocus);
        QObject::connect(_line, &QLineEdit::textChanged, this, [this] { _goToLetters(); });
    }
}

MenuPanel::~MenuPanel() = default;

void MenuPanel::takeFocus() {
    (_line != nullptr ? static_cast<QWidget *>(_line) : _list)->setFocus(Qt::PopupFocusReason);
}

QMargins MenuPanel::_margins() const {
    const int across = pixels(*this, QStyle::PM_MenuPanelWidth) + pixels(*this, QStyle::PM_MenuHMargin);
    const int down = pixels(*this, QStyle::PM_MenuPanelWidth) + pixels(*this, QStyle::PM_MenuVMargin);
    return {across, down, across, down};
}

int MenuPanel::_lineHeight() const {
    return _line == nullptr ? 0 : _line->sizeHint().height() + 2 * LineGap;
}

QSize MenuPanel::fittingSize(const QSize &most) const {
    const QMargins margins = _margins();
    QStyleOptionViewItem option;
    option.widget = _list;
    int width = 0;
    int height = 0;
    for (int row = 0; row < _rows.rowCount(); ++row) {
        const QSize size = _list->itemDelegate()->sizeHint(option, _rows.index(row));
        width = std::max(width, size.width());
        height += size.height();
    }
    width += margins.left() + margins.right();
    height += margins.top() + margins.bottom() + _lineHeight();
    if (height > most.height()) {
        width += pixels(*_list, QStyle::PM_ScrollBarExtent);
    }
    return QSize(width, height).boundedTo(most);
}

void MenuPanel::resizeEvent(QResizeEvent * /*event*/) {
    _layOut();
}

void MenuPanel::_layOut() {
    QRect inside = rect().marginsRemoved(_margins());
    if (_line != nullptr) {
        _line->setGeometry(inside.x() + LineGap, inside.y() + LineGap, inside.width() - 2 * LineGap, _line->sizeHint().height());
        inside.setTop(inside.top() + _lineHeight());
    }
    _list->setGeometry(inside);
}

void MenuPanel::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().brush(QPalette::Window));
    QStyleOptionMenuItem item;
    item.initFrom(this);
    item.state = QStyle::State_None;
    item.checkType = QStyleOptionMenuItem::NotCheckable;
    style()->drawPrimitive(QStyle::PE_PanelMenu, &item, &painter, this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.state = QStyle::State_None;
    frame.lineWidth = pixels(*this, QStyle::PM_MenuPanelWidth);
    frame.midLineWidth = 0;
    style()->drawPrimitive(QStyle::PE_FrameMenu, &frame, &painter, this);
}

bool MenuPanel::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        if (watched == _list || watched == _line) {
            return _handleKey(static_cast<QKeyEvent *>(event)->key());
        }
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::Leave:
        if (watched == _list->viewport()) {
            return _handleMouse(*event);
        }
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

bool MenuPanel::_handleKey(int key) {
    const QModelIndex current = _selected();
    const int page = std::max(1, _list->viewport()->height() / std::max(1, _list->sizeHintForRow(0)) - 1);
    const int last = _rows.rowCount() - 1;
    switch (key) {
    case Qt::Key_Escape:
        _finish(cancelled);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        _chooseCurrent();
        return true;
    case Qt::Key_Down:
        _select(_rows.selectableRow(current.isValid() ? current.row() + 1 : 0, 1));
        return true;
    case Qt::Key_Up:
        _select(_rows.selectableRow(current.isValid() ? current.row() - 1 : last, -1));
        return true;
    case Qt::Key_PageDown:
        _select(_rows.selectableRow(std::min(current.isValid() ? current.row() + page : 0, last), -1));
        return true;
    case Qt::Key_PageUp:
        _select(_rows.selectableRow(std::max(current.isValid() ? current.row() - page : 0, 0), 1));
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (_line != nullptr && !_line->text().isEmpty()) {
            return false;
        }
        _select(key == Qt::Key_Home ? _rows.selectableRow(0, 1) : _rows.selectableRow(last, -1));
        return true;
    default:
        return false;
    }
}

bool MenuPanel::_handleMouse(QEvent &event) {
    if (event.type() == QEvent::Leave) {
        if (_line == nullptr) {
            _select(std::nullopt);
        }
        return false;
    }
    const auto &mouse = static_cast<const QMouseEvent &>(event);
    const QModelIndex under = _list->indexAt(mouse.position().toPoint());
    const bool isSelectable = under.isValid() && under.flags().testFlag(Qt::ItemIsSelectable);
    _select(isSelectable ? std::optional<int>(under.row()) : std::nullopt);
    if (event.type() == QEvent::MouseButtonRelease && isSelectable) {
        _chooseCurrent();
    }
    return true;
}

void MenuPanel::_select(std::optional<int> row) {
    if (!row) {
        _list->selectionModel()->clear();
        return;
    }
    _list->setCurrentIndex(_rows.index(*row));
}

QModelIndex MenuPanel::_selected() const {
    // A list that gets the keyboard has a current row at once; it is not highlighted until the user says so.
    const QModelIndexList selected = _list->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? QModelIndex() : selected.first();
}

void MenuPanel::_goToLetters() {
    const QString typed = _line->text();
    _rows.setFilter(typed);
    _select(typed.isEmpty() ? std::nullopt : _rows.bestRow(typed));
}

void MenuPanel::_chooseCurrent() {
    const QModelIndex current = _selected();
    if (current.isValid() && current.flags().testFlag(Qt::ItemIsSelectable)) {
        const MenuItem item = _rows.item(current.row());
        _finish([this, item] {
            if (chosen) {
                chosen(item);
            }
        });
    }
}

void MenuPanel::_finish(const std::function<void()> &how) {
    if (!_isFinished) {
        _isFinished = true;
        const std::function<void()> call = how;
        if (call) {
            call();
        }
    }
}

} // namespace orvane
