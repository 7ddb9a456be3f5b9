#include "platform/dbus/NotificationGate.h"

#include <algorithm>
#include <utility>

namespace orvane {

bool isNotificationName(std::string_view name) {
    const auto isLetter = [](char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_'; };
    const auto isAllowed = [&](char byte) { return isLetter(byte) || (byte >= '0' && byte <= '9'); };
    return !name.empty() && name.size() <= 255 && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isAllowed);
}

void NotificationGate::addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) {
    _registrations.push_back({++_lastNumber, observer, std::string(name), behavior, std::move(handler)});
}

void NotificationGate::removeObserver(const void *observer, std::string_view name) {
    std::erase_if(_registrations, [&](const Registration &each) { return each.observer == observer && each.name == name; });
    // What is kept for it stays in the row and finds nobody.
}

void NotificationGate::arrive(std::string_view name, bool follow) {
    std::vector<Registration> concerned; // a copy: handlers may change the list
    for (const Registration &each : _registrations) {
        if (each.name == name && !(follow && each.behavior == Suspension::Coalesce)) {
            concerned.push_back(each);
        }
    }
    for (const Registration &each : concerned) {
        _handle(each);
    }
}

void NotificationGate::resume() {
    _isSuspended = false;
    while (!_isSuspended && !_kept.empty()) {
        const std::size_t number = _kept.front();
        _kept.pop_front();
        _deliver(number);
    }
}

void NotificationGate::_handle(const Registration &registration) {
    if (!_isSuspended || registration.behavior == Suspension::DeliverImmediately) {
        _deliver(registration.number);
        return;
    }
    if (registration.behavior == Suspension::Drop) {
        return;
    }
    if (registration.behavior == Suspension::Coalesce) {
        std::erase(_kept, registration.number);
    }
    _kept.push_back(registration.number);
}

void NotificationGate::_deliver(std::size_t number) {
    const auto found =
        std::find_if(_registrations.begin(), _registrations.end(), [&](const Registration &each) { return each.number == number; });
    if (found == _registrations.end()) {
        return; // removed meanwhile
    }
    const Handler handler = found->handler; // it may remove itself
    handler();
}

} // namespace orvane
