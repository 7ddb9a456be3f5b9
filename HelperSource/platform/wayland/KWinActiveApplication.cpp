#include "platform/dbus/SdBusConnection.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/wayland/WaylandActiveApplication.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

// KWin says which window is active only to its own scripts: one is loaded, asks, calls back, and is unloaded. sd-bus and not QtDBus,
// because the answer is waited for here with nothing else of the program going on meanwhile.

namespace orvane {

namespace {

constexpr std::chrono::milliseconds Patience(200);
constexpr char Service[] = "org.kde.KWin";
constexpr char ScriptingPath[] = "/Scripting";
constexpr char ScriptingInterface[] = "org.kde.kwin.Scripting";
constexpr char ObjectPath[] = "/org/orvane/ActiveWindow";
constexpr char ScriptName[] = "orvane-active-window";

using Deadline = SdBusConnection::Deadline;

/// `workspace.activeWindow` is Plasma 6's name, `activeClient` that of 5.27.
std::string scriptFor(const std::string &busName) {
    return "var w = workspace.activeWindow !== undefined ? workspace.activeWindow : workspace.activeClient;\n"
           "callDBus('" +
           busName + "', '" + ObjectPath +
           "', 'org.orvane.ActiveWindow', 'tell', w ? 'yes' : '', w ? String(w.resourceClass) : '', w ? String(w.caption) : '', "
           "w ? String(w.pid) : '', w && w.desktopWindow ? 'yes' : '');\n";
}

/// A file with the script, gone with the object.
class ScriptFile {
public:
    explicit ScriptFile(const std::string &text) {
        const char *const folder = std::getenv("XDG_RUNTIME_DIR");
        _path = std::string(folder != nullptr && folder[0] == '/' ? folder : "/tmp") + "/orvane-active-window-XXXXXX";
        _file = FileDescriptor(::mkostemp(_path.data(), O_CLOEXEC));
        _isWritten = _file && ::write(_file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }
    ScriptFile(const ScriptFile &) = delete;
    ScriptFile &operator=(const ScriptFile &) = delete;
    ~ScriptFile() {
        if (_file) {
            ::unlink(_path.c_str());
        }
    }
    [[nodiscard]] bool isWritten() const { return _isWritten; }
    [[nodiscard]] const char *path() const { return _path.c_str(); }

private:
    std::string _path;
    FileDescriptor _file;
    bool _isWritten = false;
};

} // namespace

class KWinActiveApplication::Connection {
public:
    [[nodiscard]] static std::unique_ptr<Connection> open(Deadline deadline) {
        std::unique_ptr<Connection> connection(new Connection);
        connection->_bus = SdBusConnection::open({}, deadline);
        const char *name = nullptr;
        if (connection->_bus == nullptr || ::sd_bus_get_unique_name(connection->_bus->bus(), &name) < 0 ||
            ::sd_bus_add_object(connection->_bus->bus(), nullptr, ObjectPath, _told, connection.get()) < 0) {
            return nullptr;
        }
        connection->_name = name;
        return connection;
    }

    /// False when the connection is of no use any more.
    [[nodiscard]] bool ask(Deadline deadline, ActiveWindowAnswer &answer) {
        const ScriptFile script(scriptFor(_name));
        std::int32_t number = -1;
        if (!script.isWritten()) {
            return true;
        }
        _answer = {};
        _isAnswered = false;
        // One of the same name may be left of a helper that was killed.
        const bool isLoaded = _load(script.path(), number, deadline) || (_unload(deadline) && _load(script.path(), number, deadline));
        if (isLoaded && _run(number, deadline)) {
            while (!_isAnswered && std::chrono::steady_clock::now() < deadline) {
                if (!_bus->process() || (!_isAnswered && !_bus->wait(microsecondsUntil(deadline)))) {
                    return false;
                }
            }
        }
        answer = _answer;
        // However the rest went, also when the time is used up.
        return _unload(std::chrono::steady_clock::now() + Patience) || !isLoaded;
    }
    [[nodiscard]] bool hasKWin(Deadline deadline) {
        const SdBusMessage reply =
            _call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner", Service, nullptr, deadline);
        int isOwned = 0;
        return reply != nullptr && ::sd_bus_message_read(reply.get(), "b", &isOwned) > 0 && isOwned != 0;
    }

private:
    Connection() = default;

    /// A call with up to two texts; null on any error.
    [[nodiscard]] SdBusMessage _call(const char *service, const char *path, const char *interface, const char *method, const char *first,
                                     const char *second, Deadline deadline) {
        sd_bus_message *message = nullptr;
        if (::sd_bus_message_new_method_call(_bus->bus(), &message, service, path, interface, method) < 0) {
            return nullptr;
        }
        const SdBusMessage owned(message);
        ::sd_bus_message_set_auto_start(message, 0);
        for (const char *const text : {first, second}) {
            if (text != nullptr && ::sd_bus_message_append(message, "s", text) < 0) {
                return nullptr;
            }
        }
        sd_bus_message *reply = nullptr;
        return ::sd_bus_call(_bus->bus(), message, microsecondsUntil(deadline), nullptr, &reply) < 0 ? nullptr : SdBusMessage(reply);
    }
    [[nodiscard]] bool _load(const char *path, std::int32_t &number, Deadline deadline) {
        const SdBusMessage reply = _call(Service, ScriptingPath, ScriptingInterface, "loadScript", path, ScriptName, deadline);
        return reply != nullptr && ::sd_bus_message_read(reply.get(), "i", &number) > 0 && number >= 0;
    }
    [[nodiscard]] bool _run(std::int32_t number, Deadline deadline) {
        // The first path is Plasma 6's, the second that of 5.27.
        for (const std::string &path : {"/Scripting/Script" + std::to_string(number), "/" + std::to_string(number)}) {
            if (_call(Service, path.c_str(), "org.kde.kwin.Script", "run", nullptr, nullptr, deadline) != nullptr) {
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] bool _unload(Deadline deadline) {
        return _call(Service, ScriptingPath, ScriptingInterface, "unloadScript", ScriptName, nullptr, deadline) != nullptr;
    }
    static int _told(sd_bus_message *message, void *connection, sd_bus_error * /*error*/) {
        std::array<const char *, 5> words{};
        if (::sd_bus_message_is_method_call(message, "org.orvane.ActiveWindow", "tell") <= 0 ||
            ::sd_bus_message_read(message, "sssss", words.data(), &words[1], &words[2], &words[3], &words[4]) <= 0) {
            return 0;
        }
        auto &self = *static_cast<Connection *>(connection);
        self._isAnswered = true;
        self._answer.who = words[0][0] == '\0' ? ActiveWindowAnswer::Who::Nobody : ActiveWindowAnswer::Who::Window;
        self._answer.window.className = words[1];
        self._answer.window.title = words[2];
        self._answer.window.pid = static_cast<std::uint32_t>(std::strtoul(words[3], nullptr, 10));
        self._answer.window.isDesktop = words[4][0] != '\0';
        self._answer.window.isOnX11 = false;
        return ::sd_bus_reply_method_return(message, nullptr);
    }

    std::unique_ptr<SdBusConnection> _bus;
    std::string _name;
    bool _isAnswered = false;
    ActiveWindowAnswer _answer;
};

KWinActiveApplication::KWinActiveApplication() = default;

KWinActiveApplication::~KWinActiveApplication() = default;

bool KWinActiveApplication::isUsable() {
    const Deadline deadline = std::chrono::steady_clock::now() + Patience;
    const std::unique_ptr<Connection> connection = Connection::open(deadline);
    return connection != nullptr && connection->hasKWin(deadline);
}

ActiveWindowAnswer KWinActiveApplication::_ask() {
    const Deadline deadline = std::chrono::steady_clock::now() + Patience;
    if (_connection == nullptr) {
        _connection = Connection::open(deadline);
    }
    ActiveWindowAnswer answer;
    if (_connection != nullptr && !_connection->ask(deadline, answer)) {
        _connection.reset();
    }
    return answer;
}

} // namespace orvane
