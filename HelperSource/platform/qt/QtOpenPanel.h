#pragma once

#include "platform/qt/QtApplication.h"
#include "ports/OpenPanel.h"

#include <string>

#include <QString>

namespace orvane {

/// The desktop's own panel where Qt knows it, else Qt's; both take title and button title. Opens in the folder that was chosen
/// last, also before a restart; when that is gone, in the nearest one above it that is still there.
class QtOpenPanel final : public OpenPanel {
public:
    /// `memoryFile` keeps the last folder; it and the folder it lies in are made when needed. Empty for no memory beyond the process.
    QtOpenPanel(QtApplication &application, std::string memoryFile);
    QtOpenPanel(const QtOpenPanel &) = delete;
    QtOpenPanel &operator=(const QtOpenPanel &) = delete;

    /// While a panel is up already, it comes to the front and nothing is chosen here.
    [[nodiscard]] std::optional<std::vector<std::string>> runModal(const OpenPanelSettings &settings) override;

private:
    [[nodiscard]] QString _lastFolder() const;
    void _remember(const QString &folder);

    QtApplication &_application;
    std::string _memoryFile;
    QString _folder; ///< chosen last in this process
    bool _isUp = false;
};

} // namespace orvane
