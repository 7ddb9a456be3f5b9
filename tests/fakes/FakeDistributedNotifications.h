#pragma once

#include "ports/DistributedNotifications.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// A centre inside the process: whatever is posted arrives at once, unless suspended.
class FakeDistributedNotifications final : public DistributedNotifications {
public:
    void addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) override {
        _changeObservers();
        ++additions;
        _observers.push_back({++_lastNumber, observer, std::string(name), behavior, std::move(handler)});
    }

    void removeObserver(const void *observer, std::string_view name) override {
        _changeObservers();
        ++removals;
        std::erase_if(_observers, [&](const Observer &each) { return each.key == observer && each.name == name; });
    }

    bool post(std::string_view name) override {
        posted.emplace_back(name);
        if (reachable) {
            arrive(name);
        }
        return reachable;
    }

    /// What a notification from another program does.
    void arrive(std::string_view name) {
        for (const Observer &observer : std::vector(_observers)) {
            if (observer.name != name) {
                continue;
            }
            if (!_suspended || observer.behavior == Suspension::DeliverImmediately) {
                _call(observer.number);
                continue;
            }
            if (observer.behavior == Suspension::Coalesce) {
                std::erase(_waiting, observer.number);
            }
            if (observer.behavior != Suspension::Drop) {
                _waiting.push_back(observer.number);
            }
        }
    }

    void suspend() { _suspended = true; }
    /// Delivers what was kept, in order of arrival; of coalesced ones the last counts.
    void resume() {
        _suspended = false;
        for (const std::size_t number : std::exchange(_waiting, {})) {
            _call(number);
        }
    }

    [[nodiscard]] std::size_t observerCount() const { return _observers.size(); }

    /// Suspension behaviours of the observers of that name, in order of registration.
    [[nodiscard]] std::vector<Suspension> behaviors(std::string_view name) const {
        std::vector<Suspension> result;
        for (const Observer &observer : _observers) {
            if (observer.name == name) {
                result.push_back(observer.behavior);
            }
        }
        return result;
    }

    std::vector<std::string> posted; ///< names, also those that reached nobody
    bool reachable = true;
    int additions = 0;                    ///< calls of `addObserver`
    int removals = 0;                     ///< calls of `removeObserver`, those that removed nothing included
    std::function<void()> whileObserving; ///< runs at the beginning of both

private:
    struct Observer {
        std::size_t number;
        const void *key;
        std::string name;
        Suspension behavior;
        Handler handler;
    };

    void _changeObservers() const {
        if (whileObserving) {
            whileObserving();
        }
    }

    void _call(std::size_t number) {
        const auto found = std::find_if(_observers.begin(), _observers.end(), [&](const Observer &each) { return each.number == number; });
        if (found == _observers.end()) {
            return; // removed meanwhile
        }
        const Handler handler = found->handler;
        handler();
    }

    std::vector<Observer> _observers;
    std::vector<std::size_t> _waiting;
    std::size_t _lastNumber = 0;
    bool _suspended = false;
};

} // namespace orvane
