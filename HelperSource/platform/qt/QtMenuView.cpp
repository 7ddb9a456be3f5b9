#include "platform/qt/QtMenuView.h"

#include "platform/qt/QtText.h"

#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QScreen>
#include <QTimer>

namespace orvane {

namespace {

/// Widest title in average characters of the menu's font.
constexpr int WidestTitle = 60;
/// Letters typed within this time belong together.
constexpr qint64 TypingPauseInMilliseconds = 1000;
/// So many movements, wherever they lead, are enough for QMenu to take a click for one that was meant (the fixed number is Qt's, plus one).
constexpr int EnoughMovements = 7;

/// A long menu scrolls on every style; some would lay it out in columns that leave the screen.
class ScrollingStyle final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *data) const override {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QString plainTitle(const QAction &action) {
    return action.data().toString();
}

} // namespace

/// The menu with its search by typed letters.
class QtMenuView::View final : public QMenu {
public:
    View() {
        setToolTipsVisible(true);
        _style.setParent(this);
        setStyle(&_style);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Up && activeAction() == nullptr) {
            // QMenu takes the last item then as well, but leaves a long menu where it is, with that item out of sight.
            QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
            QMenu::keyPressEvent(&end);
            event->accept();
            return;
        }
        const QString text = event->text();
        const bool isLetter = !text.isEmpty() && text.at(0).isPrint() && !(event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier));
        const bool continues = _sinceKey.isValid() && _sinceKey.elapsed() < TypingPauseInMilliseconds && !_typed.isEmpty();
        if (!isLetter || (text == QLatin1String(" ") && !continues)) {
            QMenu::keyPressEvent(event);
            return;
        }
        _typed = continues ? _typed + text : text;
        _sinceKey.start();
        _goToTyped();
        event->accept();
    }
    void showEvent(QShowEvent *event) override {
        _pointerBefore = QCursor::pos();
        QMenu::showEvent(event);
    }
    void mousePressEvent(QMouseEvent *event) override {
        // A click where the pointer was when the menu came up only closes it. Qt 6.8 takes each for such a one until it has seen the
        // pointer over a window of this program, which a hot key does without: it calculates with a place at infinity.
        if ((event->globalPosition().toPoint() - _pointerBefore).manhattanLength() > QApplication::startDragDistance()) {
            for (int i = 0; i < EnoughMovements; ++i) {
                QMouseEvent movement(QEvent::MouseMove, event->position(), event->scenePosition(), event->globalPosition(), Qt::NoButton,
                                     event->buttons(), event->modifiers(), event->pointingDevice());
                QMenu::mouseMoveEvent(&movement);
            }
        }
        QMenu::mousePressEvent(event);
    }
    void hideEvent(QHideEvent *event) override {
        _typed.clear();
        QMenu::hideEvent(event);
    }

private:
    void _goToTyped() {
        const QList<QAction *> items = actions();
        const bool sameLetter = _typed.count(_typed.at(0), Qt::CaseInsensitive) == _typed.size();
        const QString wanted = sameLetter ? _typed.left(1) : _typed;
        const qsizetype present = items.indexOf(activeAction());
        const qsizetype first = sameLetter ? present + 1 : std::max<qsizetype>(present, 0);
        for (qsizetype i = 0; i < items.size(); ++i) {
            QAction *const item = items.at((first + i) % items.size());
            if (!item->isSeparator() && item->isEnabled() && plainTitle(*item).startsWith(wanted, Qt::CaseInsensitive)) {
                setActiveAction(item);
                return;
            }
        }
    }

    ScrollingStyle _style;
    QPoint _pointerBefore; ///< when the menu came up
    QString _typed;
    QElapsedTimer _sinceKey;
};

QtMenuView::QtMenuView(Menu &menu) : _menu(menu), _view(std::make_unique<View>()) {
    _menu.addObserver(*this);
    QObject::connect(_view.get(), &QMenu::aboutToShow, _view.get(), [this] {
        if (!_view->isVisible()) { // else it is only put in its place anew
            _rebuild();
        }
    });
    _rebuild();
}

QtMenuView::~QtMenuView() {
    _menu.removeObserver(*this);
}

QMenu &QtMenuView::menu() {
    return *_view;
}

void QtMenuView::menuDidChange() {
    // Many changes come at once: they are shown together.
    if (!_isStale) {
        _isStale = true;
        QTimer::singleShot(0, _view.get(), [this] { _rebuildIfStale(); });
    }
}

void QtMenuView::_rebuildIfStale() {
    if (_isStale) {
        _rebuild();
    }
}

void QtMenuView::_rebuild() {
    _isStale = false;
    // The old ones go last: a menu that is empty even for a moment goes from the screen.
    const QList<QAction *> old = _view->actions();
    const QString highlighted = _view->activeAction() == nullptr ? QString() : plainTitle(*_view->activeAction());
    QList<QAction *> actions;
    actions.reserve(static_cast<qsizetype>(_menu.numberOfItems()));
    for (std::size_t i = 0; i < _menu.numberOfItems(); ++i) {
        const MenuItem &item = _menu.itemAtIndex(i);
        QAction *const action = _actionFor(item);
        actions.append(action);
        QObject::connect(action, &QAction::triggered, _view.get(), [this, item] {
            _chosen = item;
            if (_performsChosen) {
                QTimer::singleShot(0, _view.get(), [this] { performChosen(); });
            }
        });
    }
    _view->addActions(actions);
    qDeleteAll(old);
    if (_view->isVisible() && !_view->screen()->geometry().contains(_view->geometry())) {
        _view->popup(_view->pos()); // on the screen again, and scrolling if it has to
    }
    const auto same = std::find_if(actions.begin(), actions.end(), [&](const QAction *each) { return plainTitle(*each) == highlighted; });
    if (_view->isVisible() && !highlighted.isEmpty() && same != actions.end()) {
        _view->setActiveAction(*same);
    }
}

QAction *QtMenuView::_actionFor(const MenuItem &item) const {
    auto *const action = new QAction(_view.get());
    if (item.isSeparator) {
        action->setSeparator(true);
        return action;
    }
    const QFontMetrics metrics = _view->fontMetrics();
    const QString title = QtSingleLine(QtTextOf(item.title));
    const QString shown = metrics.elidedText(title, Qt::ElideMiddle, WidestTitle * metrics.averageCharWidth());
    QString text = QtIsolated(shown);
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    action->setText(text);
    action->setData(title);
    action->setMenuRole(QAction::NoRole);
    action->setIconVisibleInMenu(false);
    // Qt takes what looks like rich text in a tool tip for rich text.
    action->setToolTip(shown == title ? QStringLiteral("\u200b") : QStringLiteral("<p>%1</p>").arg(title.toHtmlEscaped()));
    action->setEnabled(item.isEnabled());
    return action;
}

bool QtMenuView::_stillHolds(const MenuItem &item) const {
    for (std::size_t i = 0; i < _menu.numberOfItems(); ++i) {
        const MenuItem &present = _menu.itemAtIndex(i);
        if (present.title == item.title && present.tag == item.tag && present.representedObject == item.representedObject) {
            return true;
        }
    }
    return false;
}

void QtMenuView::performChosen() {
    if (!_chosen) {
        return;
    }
    const MenuItem item = std::move(*_chosen);
    _chosen.reset();
    if (_stillHolds(item) && item.isEnabled() && item.action && (!_mayPerform || _mayPerform(item))) {
        item.action(item);
    }
}

} // namespace orvane
