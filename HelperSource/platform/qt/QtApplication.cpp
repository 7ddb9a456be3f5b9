#include "platform/qt/QtApplication.h"

#include "platform/qt/QtX11Activation.h"
#include "ports/AssertionHandler.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QIcon>
#include <QWidget>
#include <QWindow>

namespace orvane {

namespace {

std::string_view environment(const char *name) {
    const char *value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

/// Whether a Wayland compositor answers (protocol: WAYLAND_DISPLAY is a path, relative ones below XDG_RUNTIME_DIR).
bool waylandAnswers() {
    std::string path(environment("WAYLAND_DISPLAY"));
    if (path.empty()) {
        return false;
    }
    if (path.front() != '/') {
        path.insert(0, std::string(environment("XDG_RUNTIME_DIR")) + '/');
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        return false;
    }
    const bool answers = ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(descriptor);
    return answers;
}

/// Whether Qt would find a display. An unknown platform that the user asked for is trusted.
bool displayIsThere() {
    const std::string_view platform = environment("QT_QPA_PLATFORM");
    if (platform.empty()) {
        return waylandAnswers() || QtX11DisplayAnswers();
    }
    if (platform.substr(0, 3) == "xcb") {
        return QtX11DisplayAnswers();
    }
    return platform.substr(0, 7) != "wayland" || waylandAnswers();
}

/// Ends what an event began when an invariant is found broken, and goes on with the next event, as the Mac's event loop does.
class GuardedApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const AssertionFailure &) { // the handler has told of it
            return true;
        }
    }
};

} // namespace

/// Notices that ending was asked for.
class QtApplication::QuitFilter final : public QObject {
public:
    bool eventFilter(QObject *watched, QEvent *event) override {
        isQuitting = isQuitting || (event->type() == QEvent::Quit && watched == qApp);
        return false;
    }
    bool isQuitting = false;
};

QtApplication::QtApplication(int &argc, char **argv) : _argc(argc), _argv(argv), _quitFilter(std::make_unique<QuitFilter>()) {}

QtApplication::~QtApplication() = default;

bool QtApplication::load() {
    if (qApp == nullptr) {
        if (!displayIsThere()) {
            return false;
        }
        QCoreApplication::setApplicationName(QStringLiteral("Orvane"));
        QGuiApplication::setDesktopFileName(QStringLiteral("org.orvane.Helper"));
        _application = std::make_unique<GuardedApplication>(_argc, _argv);
    }
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Libraries lock the event loop while they work (KDE's behind its panel for folders); the last lock's end is no reason to quit.
    QCoreApplication::setQuitLockEnabled(false);
    qApp->removeEventFilter(_quitFilter.get());
    qApp->installEventFilter(_quitFilter.get());
    return true;
}

void QtApplication::activateIgnoringOtherApps(bool ignoring) {
    QWidget *window = modalWindow();
    if (window == nullptr) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        // Menus are not windows to be worked in, be they pop-ups or, on Wayland, covers of the screen.
        const auto shown = std::find_if(windows.rbegin(), windows.rend(), [](const QWidget *each) {
            return each->isVisible() && each->windowType() != Qt::Popup && !each->windowFlags().testFlag(Qt::BypassWindowManagerHint) &&
                   !each->testAttribute(Qt::WA_ShowWithoutActivating);
        });
        window = shown == windows.rend() ? nullptr : *shown;
    }
    if (window != nullptr && (ignoring || QGuiApplication::applicationState() == Qt::ApplicationActive)) {
        bringToFront(*window);
    }
}

int QtApplication::run() {
    return QApplication::exec();
}

void QtApplication::quit() {
    _quitFilter->isQuitting = true;
    QCoreApplication::quit();
}

bool QtApplication::isQuitting() const {
    return _quitFilter->isQuitting;
}

void QtApplication::bringToFront(QWidget &window) {
    _setWindowIcon();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    QtX11ActivateWindow(*window.windowHandle());
}

void QtApplication::showQuietly(QWidget &window) {
    _setWindowIcon();
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    window.show();
    QApplication::alert(&window);
}

void QtApplication::_setWindowIcon() {
    if (const std::string folder = std::exchange(_resourceFolder, {}); !folder.empty()) {
        QGuiApplication::setWindowIcon(QtProgramIcon(folder));
    }
}

QIcon QtProgramIcon(const std::string &resourceFolder) {
    const QString file = QFile::decodeName((resourceFolder + "/icons/hicolor/scalable/apps/org.orvane.Helper.svg").c_str());
    return QFile::exists(file) ? QIcon(file) : QIcon::fromTheme(QStringLiteral("org.orvane.Helper"));
}

QWidget *QtApplication::modalWindow() {
    QWidget *window = QApplication::activeModalWidget();
    return window != nullptr && window->isVisible() ? window : nullptr;
}

} // namespace orvane
