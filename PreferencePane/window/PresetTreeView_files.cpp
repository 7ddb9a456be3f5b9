#include "window/PresetTreeView.h"

#include "window/FolderContents.h"
#include "window/LastFolder.h"
#include "window/LocalFiles.h"
#include "window/Page.h"

#include <QFileDialog>
#include <QFileInfo>

// Files and folders of other programs that become items of the preset.

namespace orvane {

void PresetTreeView::addFilesAtPaths(const QStringList &paths) {
    const PresetDocument &document = _context.presets;
    const ItemID current = currentItem() == NoItem ? document.treeOf(_model->preset()) : currentItem();
    const bool goesInside = document.isFolder(current) && document.canInsert(current);
    _addFiles(paths, goesInside ? current : document.parentOf(current), -1);
}

/// Large folders are asked for, one after the other; meanwhile the document may change.
void PresetTreeView::_addFiles(const QStringList &paths, ItemID parent, int row) {
    std::vector<PresetTreeModel::FileToInsert> files;
    for (const QString &path : paths) {
        const FolderTaking taking = QFileInfo(path).isDir() ? takingOfFolder(path, this) : FolderTaking::WithContents;
        if (taking != FolderTaking::Nothing) {
            files.push_back({path, taking == FolderTaking::WithContents});
        }
    }
    selectItems(_model->insertFiles(files, parent, row));
}

void PresetTreeView::_chooseFiles() {
    const QStringList paths = QFileDialog::getOpenFileNames(this, translated("Add Files"), LastFolder::path());
    if (!paths.isEmpty()) {
        LastFolder::note(paths.front());
        addFilesAtPaths(paths);
    }
}

} // namespace orvane
