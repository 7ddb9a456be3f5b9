#pragma once

#include "ports/DistributedNotifications.h"

#include <string>
#include <vector>

namespace orvane {

/// Notifications through `orvane-bus`, a program of its own for the session bus: loading the library for that takes longer than
/// making a small hierarchy, and hardly any run of `orvane` needs it.
class BusProgramNotifications final : public DistributedNotifications {
public:
    /// Does nothing: a command ends before anything could arrive.
    void addObserver(const void * /*observer*/, std::string_view /*name*/, Suspension /*behavior*/, Handler /*handler*/) override {}
    void removeObserver(const void * /*observer*/, std::string_view /*name*/) override {}
    /// Starts the program and waits for its end; its own limit for the bus is a second.
    bool post(std::string_view name) override;
};

/// Puts `orvane-bus` with these words in the place of this program. Returns only when that is impossible, with `errno`.
void becomeBusProgram(const std::vector<std::string> &words);

} // namespace orvane
