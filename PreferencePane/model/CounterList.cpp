#include "CounterList.h"

#include "PresetDocument.h"

#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

namespace orvane {

CounterList::CounterList(EditHistory &history)
    : _history(history), _values(history, [this](const std::string &) {
          const std::vector<CounterListObserver *> observers = _observers;
          for (CounterListObserver *observer : observers) {
              observer->countersDidChange();
          }
      }) {}

std::string CounterList::value(const std::string &name) const {
    const auto value = _values.value(name);
    return value ? ORVTextValue(&value->root()) : "";
}

std::string CounterList::nextValue(const std::string &name) const {
    ORVAutomaticVariables variables;
    if (const auto value = _values.value(name)) {
        variables.storage = *value;
        variables.emplace(name, value->root());
    }
    return ORVPresetManager::defaultValueForVariable(name, variables);
}

void CounterList::setValue(const std::string &name, std::string_view value) {
    const EditHistory::Step step(_history, "Change Counter", "counter " + name);
    const auto before = _values.value(name);
    if (!before || !ORVHasText(&before->root()) || ORVTextValue(&before->root()) != value) {
        _values.set(name, propertyListOfText(value));
    }
}

void CounterList::reset(const std::string &name) {
    const EditHistory::Step step(_history, "Reset Counter");
    _values.set(name, propertyListOfText(""));
}

void CounterList::remove(const std::string &name) {
    const EditHistory::Step step(_history, "Delete Counter");
    _values.set(name, std::nullopt);
}

void CounterList::copy(const std::string &from, const std::string &to) {
    if (const auto value = _values.value(from)) {
        _values.set(to, *value);
    }
}

} // namespace orvane
