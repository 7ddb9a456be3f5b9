#include "BenchSupport.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <utility>

namespace orvane::bench {

namespace {

constexpr std::array<const char *, 5> Variables = {"Client", "Project", "Camera", "Editor", "Date"};
constexpr std::array<const char *, 6> Words = {"Footage", "Audio", "Graphics", "Scene", "Shot", "Export"};
constexpr std::size_t DeepestFolder = 5;

/// Makes one tree, every choice from one seeded generator.
class TreeMaker {
public:
    TreeMaker(PropertyListBuilder &builder, TreeShape shape) : _builder(builder), _shape(shape) {}

    PropertyListValue root() {
        const std::size_t folders = _shape.nodes * 3 / 10;
        std::vector<Folder> tree(folders + 1);
        for (std::size_t i = 1; i <= folders; ++i) {
            std::size_t parent = _below(i);
            while (tree[parent].depth >= DeepestFolder) {
                parent = _below(i);
            }
            tree[i].depth = tree[parent].depth + 1;
            tree[parent].folders.push_back(i);
        }
        for (std::size_t i = 0; i < _shape.nodes - folders; ++i) {
            tree[i % tree.size()].children.push_back(_node(i, false, {}));
        }
        // A folder is always made after its parent, so backwards every folder's own contents are complete.
        for (std::size_t i = folders; i > 0; --i) {
            tree[i].made = _folder(tree, i);
        }
        return _folder(tree, 0);
    }

private:
    struct Folder {
        std::size_t depth = 0;
        std::vector<std::size_t> folders;
        std::vector<PropertyListValue> children;
        PropertyListValue made;
    };

    std::size_t _below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(_generator); }

    PropertyListValue _folder(std::vector<Folder> &tree, std::size_t at) {
        for (const std::size_t inner : tree[at].folders) {
            tree[at].children.push_back(tree[inner].made);
        }
        return _node(at, true, tree[at].children);
    }

    PropertyListValue _node(std::size_t serial, bool isFolder, const std::vector<PropertyListValue> &children) {
        std::string name = std::string(Words.at(_below(Words.size()))) + "_" + std::to_string(serial) + (isFolder ? "" : ".txt");
        if (_below(5) == 0) {
            name = "{" + std::string(Variables.at(_below(Variables.size()))) + "}_" + name;
        }
        std::vector<PropertyListEntry> entries;
        if (isFolder) {
            entries.push_back({"children", _builder.array(children)});
        } else {
            entries.push_back({"contentFilename", _builder.string(_shape.hasContents && _below(2) == 0 ? ContentName : "")});
        }
        entries.push_back({"color", _builder.string(_below(10) == 0 ? "red" : "")});
        entries.push_back({"filename", _builder.string(name)});
        entries.push_back({"isFolder", PropertyListValue::ofBoolean(isFolder)});
        entries.push_back({"permissions", _builder.string(_below(10) == 0 ? (isFolder ? "750" : "640") : "")});
        return _builder.dictionary(entries);
    }

    PropertyListBuilder &_builder;
    TreeShape _shape;
    std::mt19937 _generator{20261};
};

} // namespace

PropertyList treeOfShape(TreeShape shape) {
    PropertyListBuilder builder;
    return builder.finish(TreeMaker(builder, shape).root());
}

PropertyList preferencesWithPresets(std::size_t count, TreeShape shape) {
    PropertyListBuilder builder;
    std::vector<PropertyListValue> presets;
    for (std::size_t i = 0; i < count; ++i) {
        const std::array<PropertyListEntry, 3> preset = {{{"directoryName", builder.string("{Client}_{Project}")},
                                                          {"fileHierarchy", TreeMaker(builder, shape).root()},
                                                          {"label", builder.string("Preset " + std::to_string(i))}}};
        presets.push_back(builder.dictionary(preset));
    }
    const std::array<PropertyListEntry, 1> root = {{{ORVPresetsKey, builder.array(presets)}}};
    return builder.finish(builder.dictionary(root));
}

std::vector<PromptValueRow> rowsOfTrees() {
    std::vector<PromptValueRow> rows;
    for (const char *name : Variables) {
        rows.push_back({name, std::string("Value of ") + name});
    }
    return rows;
}

ScratchFolder::ScratchFolder() : _path("/dev/shm/orvane-bench-XXXXXX") {
    if (mkdtemp(_path.data()) == nullptr) {
        throw std::runtime_error("no folder can be made in /dev/shm");
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

// Surroundings that do nothing. A benchmark never gets that far that one of them would have to.

namespace {

class NullAlerts final : public Alerts {
    void runAlertPanel(const std::optional<std::string> &, const std::optional<std::string> &) override {}
};
class NullApplication final : public Application {
    bool load() override { return true; }
    void activateIgnoringOtherApps(bool) override {}
};
class NullClock final : public Clock {
    std::uint64_t nowInSeconds() override { return 0; }
    void sleep(std::chrono::microseconds) override {}
};
class NullNotifications final : public DistributedNotifications {
    void addObserver(const void *, std::string_view, Suspension, Handler) override {}
    void removeObserver(const void *, std::string_view) override {}
    bool post(std::string_view) override { return false; }
};
class NullMainThread final : public MainThread {
    bool isCurrent() override { return true; }
    void performAndWait(const std::function<void()> &work) override { work(); }
    void releaseAfterCurrentEvent(std::shared_ptr<const void>) override {}
};
class NullPreferences final : public PreferencesStore {
    bool synchronize() override { return true; }
    std::optional<PropertyList> copyAppValue(std::string_view) override { return {}; }
    void setAppValue(std::string_view, const PropertyList &) override {}
    bool canStoreText(std::string_view) override { return true; }
    std::optional<PropertyList> dictionaryWithContentsOfFile() override { return {}; }
    std::unique_ptr<Lock> lock() override { return nullptr; }
    bool isHeldElsewhere() const override { return false; }
};
class NullProcesses final : public ProcessLauncher {
    std::unique_ptr<ChildProcess> launch(const std::string &, const std::map<std::string, std::string> &) override { return nullptr; }
};
class NullLog final : public SystemLog {
    void log(std::string_view) override {}
};
class NullTextCase final : public TextCase {
    std::string uppercase(std::string_view text) override { return std::string(text); }
};
class NullThreads final : public ThreadLauncher {
    bool detachNewThread(std::function<void()>) override { return false; }
};
class NullPrompt final : public PromptInterface {
    bool loadNibNamedOwner(std::string_view, PromptOwner &) override { return false; }
};
class NullWorkspace final : public Workspace {
    bool openFile(std::string_view) override { return false; }
};
class FixedFolders final : public UserFolders {
public:
    explicit FixedFolders(std::string folder) : _folder(std::move(folder)) {}
    std::string applicationSupportDirectory() override { return _folder; }
    std::string homeDirectory() override { return _folder; }

private:
    std::string _folder;
};

} // namespace

struct Engine::Surroundings {
    explicit Surroundings(std::string folder) : folders(std::move(folder)) {}
    NullAlerts alerts;
    NullApplication application;
    NullClock clock;
    NullNotifications notifications;
    NullMainThread mainThread;
    NullPreferences preferences;
    NullProcesses processes;
    NullLog log;
    NullTextCase textCase;
    NullThreads threads;
    FixedFolders folders;
    NullPrompt prompt;
    NullWorkspace workspace;
};

Engine::Engine(FileSystem &fileSystem, std::string supportFolder)
    : _surroundings(std::make_unique<Surroundings>(std::move(supportFolder))) {
    Surroundings &all = *_surroundings;
    _manager = ORVPresetManager::create(ORVPresetManagerPorts{all.alerts, all.application, all.clock, all.notifications, fileSystem,
                                                              all.mainThread, all.preferences, all.processes, all.log, all.textCase,
                                                              all.threads, all.folders, all.prompt, all.workspace});
    if (_manager == nullptr) {
        throw std::runtime_error("no manager");
    }
}

Engine::~Engine() = default;

} // namespace orvane::bench
