#pragma once

#include "platform/qt/QtApplication.h"
#include "ports/PromptInterface.h"

#include <memory>
#include <string>

namespace orvane {

class QtPromptWindow;

/// Interface files of Qt's designer, loaded at run time: "NAME.ui" in a folder of resources. False for a file that is missing, broken,
/// or lacks what the prompt needs (see `QtPromptWindow`), and while a prompt is up, which then comes to the front.
class QtPromptInterface final : public PromptInterface {
public:
    QtPromptInterface(QtApplication &application, std::string resourcesFolder);
    QtPromptInterface(const QtPromptInterface &) = delete;
    QtPromptInterface &operator=(const QtPromptInterface &) = delete;
    ~QtPromptInterface() override;

    [[nodiscard]] bool loadNibNamedOwner(std::string_view name, PromptOwner &owner) override;

private:
    QtApplication &_application;
    std::string _resourcesFolder;
    std::unique_ptr<QtPromptWindow> _window; ///< of the last load
};

} // namespace orvane
