#include "platform/wayland/ChooserPopUpMenus.h"

#include "platform/wayland/MenuPanel.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace orvane {

namespace {

/// Narrowest chooser in average characters of its font: the search line's hint must be readable.
constexpr int NarrowestInCharacters = 32;
/// Share of the screen that it takes at most.
constexpr double MostOfScreen = 0.6;

} // namespace

class MenuChooser::Window final : public QWidget {
public:
    Window(Menu &menu, End end)
        : QWidget(nullptr, Qt::Dialog | Qt::FramelessWindowHint), _end(std::move(end)), _panel(menu, MenuPanel::Search::Line, this) {
        setWindowTitle(QCoreApplication::translate("Orvane", "Orvane presets"));
        _panel.chosen = [this](const MenuItem &item) { _finish(item); };
        _panel.cancelled = [this] { _finish(std::nullopt); };
        const QSize most = screen()->availableGeometry().size() * MostOfScreen;
        QSize size = _panel.fittingSize(most);
        size.setWidth(std::max(size.width(), NarrowestInCharacters * fontMetrics().averageCharWidth()));
        // Of a size that cannot change: tiling compositors let such windows float. It stays while the search leaves fewer items.
        setFixedSize(size);
        _panel.setGeometry(rect());
        _panel.takeFocus();
    }

protected:
    bool event(QEvent *event) override {
        switch (event->type()) {
        case QEvent::WindowActivate:
            _wasActive = true;
            break;
        case QEvent::WindowDeactivate:
            if (_wasActive) {
                _finish(std::nullopt);
            }
            break;
        case QEvent::Close:
            _finish(std::nullopt);
            break;
        default:
            break;
        }
        return QWidget::event(event);
    }

private:
    void _finish(std::optional<MenuItem> chosen) {
        if (const End end = std::exchange(_end, nullptr)) {
            end(std::move(chosen));
        }
    }

    End _end;
    MenuPanel _panel;
    bool _wasActive = false;
};

MenuChooser::MenuChooser(Menu &menu, End end) : _window(std::make_unique<Window>(menu, std::move(end))) {
    _window->show();
    _window->raise();
    _window->activateWindow();
}

MenuChooser::~MenuChooser() = default;

ChooserPopUpMenus::~ChooserPopUpMenus() = default;

void ChooserPopUpMenus::_open(Menu &menu, const QPoint & /*offset*/) {
    _chooser = std::make_unique<MenuChooser>(menu, [this](std::optional<MenuItem> chosen) { _end(std::move(chosen)); });
}

void ChooserPopUpMenus::_close() {
    _chooser.reset();
    QGuiApplication::sync();
}

} // namespace orvane
