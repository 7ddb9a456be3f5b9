#include "QtTestSupport.h"

#include "platform/qt/QtProgressWindow.h"
#include "platform/qt/QtX11Events.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QStyleFactory>
#include <QWidget>

#include <xcb/xcb.h>

namespace orvane::test {

namespace {

using namespace std::chrono_literals;

constexpr auto Patience = 20s;
QtApplication *theApplication = nullptr;

std::map<std::string, int (*)(QtApplication &)> &programs() {
    static std::map<std::string, int (*)(QtApplication &)> all;
    return all;
}

/// In device pixels; asked of the server, which has had all of this program's requests by then.
QSize sizeOnServer(const QWidget &window) {
    xcb_connection_t *const connection = QtX11Events::connection();
    const auto request = xcb_get_geometry(connection, static_cast<xcb_drawable_t>(window.winId()));
    const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> answer(xcb_get_geometry_reply(connection, request, nullptr),
                                                                                 &std::free);
    return answer == nullptr ? QSize() : QSize(answer->width, answer->height);
}

} // namespace

QtApplication &application() {
    return *theApplication;
}

std::string environment(const char *name) {
    const char *value = std::getenv(name);
    EXPECT_NE(value, nullptr) << name;
    return value == nullptr ? std::string() : std::string(value);
}

bool waitUntil(const std::function<bool()> &holds) {
    QTimer tick; // so that a condition that no event announces is asked as well
    tick.start(5);
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        QEventLoop().processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

bool waitUntilSettled(const QWidget &widget) {
    QRect last;
    return waitUntil([&] {
        QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // what came up or went has its place now
        const QRect place(widget.mapTo(widget.window(), QPoint()), widget.size());
        const bool isKept = std::exchange(last, place) == place;
        return isKept && sizeOnServer(*widget.window()) == widget.window()->size() * widget.devicePixelRatio();
    });
}

User::User() {
    QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] { _look(); });
}

User::~User() {
    EXPECT_TRUE(hasFinished()) << "the user did not come to: " << (_next < _steps.size() ? _steps[_next].what : std::string());
}

User &User::when(std::function<bool()> holds, std::function<void()> acts, std::string what) {
    _steps.push_back({std::move(holds), std::move(acts), std::move(what)});
    if (_next + 1 == _steps.size()) {
        _deadline = std::chrono::steady_clock::now() + Patience;
    }
    _timer.start(10);
    return *this;
}

User &User::then(std::function<void()> acts) {
    return when([] { return true; }, std::move(acts), "then");
}

void User::_look() {
    const bool isOver = std::chrono::steady_clock::now() > _deadline;
    if (hasFinished()) {
        const bool isOpen = QtApplication::modalWindow() != nullptr || QApplication::activePopupWidget() != nullptr;
        if (!isOpen) {
            _timer.stop();
        } else if (isOver) {
            _giveUp("what is open to go away");
        }
    } else if (_steps[_next].holds()) {
        const Step step = _steps[_next++];
        _deadline = std::chrono::steady_clock::now() + Patience;
        step.acts();
    } else if (isOver) {
        _giveUp(_steps[_next].what);
    }
}

void User::_giveUp(const std::string &what) {
    ADD_FAILURE() << "the user waited in vain for: " << what;
    _timer.stop();
    _steps.resize(_next);
    while (QWidget *const open = QApplication::activePopupWidget()) {
        open->close();
    }
    QApplication::closeAllWindows();
}

std::string outputOf(const std::string &command) {
    FILE *const pipe = ::popen(command.c_str(), "re");
    std::string output;
    std::array<char, 4096> chunk{};
    while (const std::size_t size = std::fread(chunk.data(), 1, chunk.size(), pipe)) {
        output.append(chunk.data(), size);
    }
    ::pclose(pipe);
    while (!output.empty() && output.back() == '\n') {
        output.pop_back();
    }
    return output;
}

void xdotool(const std::string &arguments) {
    const std::string command = "xdotool " + arguments;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

unsigned long activeWindow() {
    // "_NET_ACTIVE_WINDOW(WINDOW): window id # 0x600007, 0x0": the first one counts.
    const std::string answer = outputOf("xprop -root _NET_ACTIVE_WINDOW 2>/dev/null");
    const std::size_t place = answer.find("0x");
    return place == std::string::npos ? 0 : std::stoul(answer.substr(place), nullptr, 16);
}

QWidget *shownWindow(const char *objectName) {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->objectName() == QLatin1String(objectName)) {
            return window;
        }
    }
    return nullptr;
}

bool isActive(const char *objectName) {
    const QWidget *const window = shownWindow(objectName);
    return window != nullptr && window->isActiveWindow() && activeWindow() == window->winId();
}

QRect frameOf(const QWidget &window) {
    return window.frameGeometry().united(window.geometry());
}

bool takePicture(const QWidget &window, const std::string &name) {
    const QString folder = QString::fromStdString(environment("ORVANE_TEST_SCREENSHOTS"));
    const QRect frame = frameOf(window);
    const QImage image = window.screen()->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height()).toImage();
    if (image.isNull() || !QDir().mkpath(folder)) {
        return false;
    }
    bool isOfOneColour = true;
    for (int y = 0; y < image.height() && isOfOneColour; ++y) {
        for (int x = 0; x < image.width() && isOfOneColour; ++x) {
            isOfOneColour = image.pixel(x, y) == image.pixel(0, 0);
        }
    }
    return image.save(folder + QLatin1Char('/') + QString::fromStdString(name) + QLatin1String(".png")) && !isOfOneColour;
}

Program::Program(const char *name, int (*run)(QtApplication &)) {
    programs()[name] = run;
}

RunningProgram::RunningProgram(const char *name) {
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t files{};
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_adddup2(&files, pipe[1], STDOUT_FILENO);
    std::vector<std::string> words = {"/proc/self/exe", "--program", name};
    std::vector<char *> arguments;
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    EXPECT_EQ(::posix_spawn(&_process, arguments.front(), &files, nullptr, arguments.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&files);
    ::close(pipe[1]);
    _output = pipe[0];
}

RunningProgram::~RunningProgram() {
    if (_process > 0) {
        ::kill(_process, SIGKILL);
        ::waitpid(_process, nullptr, 0);
    }
    ::close(_output);
}

std::string RunningProgram::line() {
    std::string line;
    pollfd output{_output, POLLIN, 0};
    char byte = 0;
    while (::poll(&output, 1, static_cast<int>(std::chrono::milliseconds(Patience).count())) == 1 && ::read(_output, &byte, 1) == 1 &&
           byte != '\n') {
        line += byte;
    }
    return line;
}

void RunningProgram::signal(int number) const {
    EXPECT_EQ(::kill(_process, number), 0);
}

int RunningProgram::status() {
    int status = 0;
    if (!waitUntil([&] { return ::waitpid(_process, &status, WNOHANG) == _process; })) {
        return -1;
    }
    _process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void say(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

OtherProgram::OtherProgram() {
    std::array<char, 6> program{"xterm"};
    std::array<char *, 2> arguments{program.data(), nullptr};
    EXPECT_EQ(::posix_spawnp(&_process, program.data(), nullptr, nullptr, arguments.data(), environ), 0);
    EXPECT_TRUE(waitUntil([this] { return isActive(); }));
    _window = activeWindow();
}

OtherProgram::~OtherProgram() {
    ::kill(_process, SIGTERM);
    ::waitpid(_process, nullptr, 0);
    // Until the window manager has seen it: what it does about the keyboard then must not hit the next window that comes up.
    EXPECT_TRUE(waitUntil([this] {
        char number[32] = {};
        std::snprintf(number, sizeof number, "0x%lx", _window);
        return outputOf("xprop -root _NET_CLIENT_LIST 2>/dev/null").find(number) == std::string::npos;
    }));
}

bool OtherProgram::isActive() const {
    const unsigned long window = activeWindow();
    // openbox goes on naming a window that is gone, and the server gives the next program's the same number: the server must agree.
    return window != 0 && outputOf("xdotool getwindowfocus -f 2>/dev/null") == std::to_string(window) &&
           outputOf("xprop -id " + std::to_string(window) + " _NET_WM_PID 2>/dev/null").find(" = " + std::to_string(_process)) !=
               std::string::npos;
}

} // namespace orvane::test

int main(int argc, char **argv) {
    if (argc > 1 && std::strcmp(argv[1], "--progress-window") == 0) {
        return orvane::QtRunProgressWindow(argc, argv, STDIN_FILENO);
    }
    if (argc > 2 && std::strcmp(argv[1], "--program") == 0) {
        orvane::QtApplication itself(argc, argv);
        return itself.load() ? orvane::test::programs().at(argv[2])(itself) : 1;
    }
    testing::InitGoogleTest(&argc, argv);
    orvane::QtApplication application(argc, argv);
    orvane::test::theApplication = &application;
    if (!application.load()) {
        std::fputs("no display\n", stderr);
        return 1;
    }
    int status = 0;
    // The tests run inside the event loop, as the helper's code does.
    QTimer::singleShot(0, qApp, [&] {
        status = RUN_ALL_TESTS();
        QCoreApplication::exit();
    });
    static_cast<void>(QApplication::exec());
    return status;
}
