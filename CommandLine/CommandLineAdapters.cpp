#include "CommandLineAdapters.h"

#include "Command.h"

#include <utility>

namespace orvane {

namespace {

/// A child whose exit status is noted when it is asked for.
class RecordedChild final : public ChildProcess {
public:
    RecordedChild(std::unique_ptr<ChildProcess> child, std::shared_ptr<std::optional<int>> status)
        : _child(std::move(child)), _status(std::move(status)) {}

    [[nodiscard]] bool isRunning() override { return _child->isRunning(); }
    [[nodiscard]] int terminationStatus() const override {
        *_status = _child->terminationStatus();
        return **_status;
    }
    [[nodiscard]] std::string readStandardErrorToEnd() override { return _child->readStandardErrorToEnd(); }
    [[nodiscard]] std::string readStandardErrorToEndDroppingOutput() override { return _child->readStandardErrorToEndDroppingOutput(); }
    [[nodiscard]] std::string readStandardOutputToEnd() override { return _child->readStandardOutputToEnd(); }

private:
    std::unique_ptr<ChildProcess> _child;
    std::shared_ptr<std::optional<int>> _status;
};

} // namespace

void CommandLineAlerts::runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) {
    if (_gate && !_gate()) {
        return;
    }
    alert(title.value_or(""), message.value_or(""));
    _shown.push_back({title, message});
}

std::unique_ptr<ChildProcess> RecordingProcessLauncher::launch(const std::string &path,
                                                               const std::map<std::string, std::string> &environment) {
    _status->reset();
    std::unique_ptr<ChildProcess> child = _launcher.launch(path, environment);
    return child ? std::make_unique<RecordedChild>(std::move(child), _status) : nullptr;
}

} // namespace orvane
