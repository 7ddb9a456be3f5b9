#include "FileManagerProgram.h"

#include <QCoreApplication>
#include <QProcessEnvironment>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orvane::testing {

bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit) {
    const Deadline deadline(limit);
    while (!condition()) {
        if (deadline.passed()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QProcess::execute(QStringLiteral("sleep"), {QStringLiteral("0.02")});
    }
    return true;
}

std::string outputOf(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed().toStdString();
}

std::set<long> processesOfDesktop() {
    const char *scratch = std::getenv("DESKTOP_SCRATCH");
    const std::string mark = "DESKTOP_SCRATCH=" + std::string(scratch != nullptr ? scratch : "?");
    std::set<long> processes;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/proc", error)) {
        std::ifstream file(entry.path() / "environ", std::ios::binary);
        const std::string environment{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (environment.find(mark) != std::string::npos) {
            processes.insert(std::strtol(entry.path().filename().c_str(), nullptr, 10));
        }
    }
    return processes;
}

FileManagerRecipe recipeFor(const std::string &name) {
    FileManagerRecipe recipe;
    recipe.program = QString::fromStdString(name);
    if (name == "pcmanfm") {
        recipe.before = QStringList{QStringLiteral("--new-win")};
        recipe.environment = QStringList{QStringLiteral("GTK_MODULES=gail:atk-bridge")};
    } else if (name == "nautilus") {
        recipe.before = QStringList{QStringLiteral("--new-window")};
        recipe.environment = QStringList{QStringLiteral("GSK_RENDERER=cairo")};
    } else if (name == "dolphin") {
        recipe.before = QStringList{QStringLiteral("--new-window")};
    }
    return recipe;
}

FileManagerProgram::~FileManagerProgram() {
    close();
}

void FileManagerProgram::close() {
    for (const long pid : _pids) {
        ::kill(static_cast<pid_t>(pid), SIGCONT);
        ::kill(static_cast<pid_t>(pid), SIGTERM);
    }
    for (const auto &process : _processes) {
        process->terminate();
        if (!process->waitForFinished(2000)) {
            process->kill();
            process->waitForFinished(2000);
        }
    }
    const auto allGone = [this] {
        return std::none_of(_pids.begin(), _pids.end(), [](long pid) { return ::kill(static_cast<pid_t>(pid), 0) == 0; });
    };
    if (!waitUntil(allGone, std::chrono::seconds(2))) {
        for (const long pid : _pids) {
            ::kill(static_cast<pid_t>(pid), SIGKILL);
        }
        (void)waitUntil(allGone);
    }
    _pids.clear();
    _processes.clear();
}

long FileManagerProgram::pidOf(xcb_window_t window) {
    const auto description = _windows.describe(window);
    return description ? static_cast<long>(description->pid) : 0;
}

xcb_window_t FileManagerProgram::open(const std::string &folder) {
    // A window that is gone may still be called active, and the next one may get its number.
    const xcb_window_t active = _windows.activeWindow();
    const xcb_window_t before = _windows.isViewable(active) ? active : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("X-Test"));
    for (const QString &setting : _recipe.environment) {
        environment.insert(setting.section(QLatin1Char('='), 0, 0), setting.section(QLatin1Char('='), 1));
    }
    process->setProcessEnvironment(environment);
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(_recipe.program, QStringList(_recipe.before) << QString::fromStdString(folder));
    _processes.push_back(std::move(process));
    // The last component without what the shell of the titles may add.
    const std::string name = std::filesystem::path(folder).filename();
    xcb_window_t window = 0;
    const bool isThere = waitUntil([&] {
        window = _windows.activeWindow();
        const bool isNew = window != before && _windows.isViewable(window);
        const auto description = isNew ? _windows.describe(window) : std::nullopt;
        return description && description->pid != 0 && description->title.starts_with(name);
    });
    if (!isThere) {
        return 0;
    }
    _pids.insert(pidOf(window));
    return window;
}

void FileManagerProgram::key(const char *keys) {
    outputOf(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("--clearmodifiers"), QString::fromLatin1(keys)});
}

void FileManagerProgram::typeLocation(const std::string &folder) {
    key("ctrl+l");
    key("ctrl+a");
    outputOf(QStringLiteral("xdotool"),
             {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), QString::fromStdString(folder)});
    // What completion put behind the cursor.
    key("shift+End");
    key("Delete");
    key("Return");
}

void FileManagerProgram::activate(xcb_window_t window) {
    outputOf(QStringLiteral("xdotool"), {QStringLiteral("windowactivate"), QString::number(window)});
    (void)waitUntil([&] { return _windows.activeWindow() == window; });
}

std::string AskedFrontWindow::becomes(const std::string &folder, const std::string &previous) {
    std::string wrong;
    std::optional<std::string> last;
    const bool came = waitUntil([&] {
        last = _front.folder();
        if (last && *last != folder && *last != previous) {
            wrong += " gave " + *last + ";";
        }
        return last == folder;
    });
    if (!came) {
        wrong += " never gave " + folder + ", at last " + last.value_or("nothing") + "; title: ";
        const auto window = _active.window();
        wrong += window ? window->title : "no window";
        for (const std::string &entry : _log.entries()) {
            wrong += "; " + entry;
        }
    }
    return wrong;
}

} // namespace orvane::testing
