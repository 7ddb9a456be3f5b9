#include "presets/ORVPresetManager.h"

// The rows that the prompt shows, and the asking.

namespace orvane {

namespace {

constexpr std::string_view PromptValuesKey = "promptValues";
constexpr std::string_view PromptDirectoryNameKey = "promptDirectoryName";

/// Announces a change on construction and its end on destruction.
class ChangeOfValue {
public:
    ChangeOfValue(KeyValueObserver *observer, std::string_view key) : _observer(observer), _key(key) {
        if (_observer != nullptr) {
            _observer->willChangeValueForKey(_key);
        }
    }
    ChangeOfValue(const ChangeOfValue &) = delete;
    ChangeOfValue &operator=(const ChangeOfValue &) = delete;
    ~ChangeOfValue() {
        if (_observer != nullptr) {
            _observer->didChangeValueForKey(_key);
        }
    }

private:
    KeyValueObserver *_observer;
    std::string_view _key;
};

} // namespace

void ORVPresetManager::_setPromptRows(const std::vector<std::string> &names, const ORVAutomaticVariables &variables) {
    const ChangeOfValue change(_ports.observer, PromptValuesKey);
    for (const std::string &name : names) {
        _promptValues.push_back({name, defaultValueForVariable(name, variables)});
    }
}

void ORVPresetManager::_setPromptDirectoryName(std::string_view name) {
    const ChangeOfValue change(_ports.observer, PromptDirectoryNameKey);
    _promptDirectoryName = name;
}

bool ORVPresetManager::runPromptModally() {
    return _ports.prompt.runModally(_promptDirectoryName, _promptValues);
}

} // namespace orvane
