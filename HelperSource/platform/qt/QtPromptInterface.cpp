#include "platform/qt/QtPromptInterface.h"

#include "platform/qt/QtFolderNameView.h"
#include "platform/qt/QtInterfaceLoader.h"
#include "platform/qt/QtPromptTable.h"
#include "platform/qt/QtPromptWindow.h"
#include "platform/qt/QtText.h"

#include <utility>

#include <QFile>

namespace orvane {

namespace {

/// Makes our own classes where the file names them, and the window as the one that speaks the port.
class PromptLoader final : public QtInterfaceLoader {
public:
    explicit PromptLoader(QtApplication &application) : _application(application) {}

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override {
        QWidget *made = nullptr;
        if (className == QLatin1String("QDialog") && parent == nullptr) {
            made = new QtPromptWindow(_application);
        } else if (className == QLatin1String("QtPromptTable")) {
            made = new QtPromptTable(parent);
        } else if (className == QLatin1String("QtFolderNameView")) {
            made = new QtFolderNameView(parent);
        } else {
            return QUiLoader::createWidget(className, parent, name);
        }
        made->setObjectName(name);
        return made;
    }

private:
    QtApplication &_application;
};

} // namespace

QtPromptInterface::QtPromptInterface(QtApplication &application, std::string resourcesFolder)
    : _application(application), _resourcesFolder(std::move(resourcesFolder)) {}

QtPromptInterface::~QtPromptInterface() = default;

bool QtPromptInterface::loadNibNamedOwner(std::string_view name, PromptOwner &owner) {
    if (_application.isQuitting()) {
        return false;
    }
    if (_window && _window->isInSession()) {
        _application.activateIgnoringOtherApps(true);
        return false;
    }
    QFile file(QtTextOf(_resourcesFolder) + QLatin1Char('/') + QtTextOf(name) + QLatin1String(".ui"));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    PromptLoader loader(_application);
    std::unique_ptr<QWidget> root(loader.load(&file));
    auto *const window = dynamic_cast<QtPromptWindow *>(root.get());
    if (window == nullptr || !window->connectOutlets(owner)) {
        return false;
    }
    static_cast<void>(root.release());
    _window.reset(window);
    owner.awakeFromNib(*_window, _window->table());
    return true;
}

} // namespace orvane
