#pragma once

#include "QtTestSupport.h"

#include "platform/qt/QtPromptInterface.h"
#include "platform/qt/QtPromptTable.h"
#include "platform/qt/QtPromptWindow.h"
#include "unit/core/Desk.h"

#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QLineEdit>

namespace orvane::test {

inline constexpr const char *PromptWindowName = "_ui_promptWindow";

/// The real manager over fakes, but with the real prompt.
class PromptDesk : public Desk {
public:
    PromptDesk() : interface(test::application(), environment("ORVANE_TEST_RESOURCES")) {
        ORVPresetManagerPorts real{.alerts = alerts,
                                   .application = test::application(),
                                   .clock = clock,
                                   .notifications = notifications,
                                   .fileSystem = fileSystem,
                                   .mainThread = mainThread,
                                   .preferences = preferences,
                                   .processes = processes,
                                   .log = log,
                                   .textCase = textCase,
                                   .threads = threads,
                                   .folders = folders,
                                   .promptInterface = interface,
                                   .workspace = workspace};
        manager = ORVPresetManager::create(real);
        manager->setBasePath("/jobs");
    }

    /// Creates a folder of that name template; the user of the test answers the prompt meanwhile. Whether something was made.
    bool createFolder(std::string_view nameTemplate) {
        workspace.opened.clear();
        create(preset(nameTemplate));
        return !workspace.opened.empty();
    }
    [[nodiscard]] std::vector<std::string> values() const {
        std::vector<std::string> all;
        for (const PromptValueRow &row : manager->promptValues()) {
            all.push_back(row.value);
        }
        return all;
    }

    QtPromptInterface interface;
};

inline QtPromptTable *promptTable() {
    return child<QtPromptTable>(PromptWindowName, "_ui_variableEditor");
}
inline QLineEdit *promptField() {
    return child<QLineEdit>(PromptWindowName, "valueField");
}

} // namespace orvane::test
