#include "platform/qt/QtMainInterface.h"

#include "platform/qt/QtInterfaceLoader.h"

#include <QAction>
#include <QFile>
#include <QMenu>

#include <memory>

namespace orvane {

namespace {

MenuItem itemOfAction(const QAction &action, const QtMainInterface::Actions &actions) {
    MenuItem item;
    item.isSeparator = action.isSeparator();
    // In an interface file an ampersand marks a mnemonic; the menu's titles know none.
    item.title = action.text().remove(QLatin1Char('&')).toStdString();
    const auto found = actions.find(action.property("selector").toString().toStdString());
    if (found != actions.end()) {
        item.action = found->second;
    }
    return item;
}

} // namespace

bool QtMainInterface::load(const std::string &path, Menu &menu, const Actions &actions, std::string &why) {
    QFile file(QFile::decodeName(path.c_str()));
    if (!file.open(QIODevice::ReadOnly)) {
        why = path + ": " + file.errorString().toStdString();
        return false;
    }
    QtInterfaceLoader loader;
    const std::unique_ptr<QWidget> root(loader.load(&file));
    if (root == nullptr) {
        why = path + ": " + loader.errorString().toStdString();
        return false;
    }
    const QString name = QStringLiteral("menuBarMenu");
    const QWidget *found = root->objectName() == name ? root.get() : root->findChild<QWidget *>(name);
    const auto *layout = qobject_cast<const QMenu *>(found);
    if (layout == nullptr || layout->actions().isEmpty()) {
        why = path + ": it holds no menu \"menuBarMenu\" with items";
        return false;
    }
    for (const QAction *action : layout->actions()) {
        menu.insertItemAtIndex(itemOfAction(*action, actions), menu.numberOfItems());
    }
    return true;
}

} // namespace orvane
