#pragma once

#include <QStringList>

class QEvent;
class QMimeData;

namespace orvane {

/// The files and folders on this machine that another program hands over, as absolute paths; empty for anything else.
[[nodiscard]] QStringList localPaths(const QMimeData &data);

/// Says to the program that a drag comes from that its files are copied, whatever it proposed: nothing of theirs goes. Leaves drags of
/// this program and those that are not accepted as they are.
void takeAsCopy(QEvent &event);

/// An item view that files of other programs are dropped on.
template <typename View> class FileDropView : public View {
public:
    using View::View;

protected:
    bool viewportEvent(QEvent *event) override {
        const bool isHandled = View::viewportEvent(event);
        takeAsCopy(*event); // the base class has taken what was proposed
        return isHandled;
    }
};

} // namespace orvane
