#include "window/Hints.h"

#include "platform/qt/QtHintColor.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPalette>

namespace orvane {

namespace {

const QString KeeperName = QStringLiteral("hintKeeper");

/// Gives its label a new colour whenever what it stands on gets one.
class HintKeeper final : public QObject {
public:
    explicit HintKeeper(QLabel &label) : QObject(&label), _label(label) {
        setObjectName(KeeperName);
        _label.installEventFilter(this);
        _adjust();
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
            _adjust();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void _adjust() {
        const QWidget *const around = _label.parentWidget();
        const QColor color = QtHintColor(around == nullptr ? QApplication::palette() : around->palette());
        QPalette palette; // of which only this is the label's own; disabled ones look as such
        palette.setColor(QPalette::Active, QPalette::WindowText, color);
        palette.setColor(QPalette::Inactive, QPalette::WindowText, color);
        _label.setPalette(palette);
    }

    QLabel &_label;
};

} // namespace

void showAsHint(QLabel &label, bool isHint) {
    auto *const keeper = label.findChild<QObject *>(KeeperName, Qt::FindDirectChildrenOnly);
    if (isHint && keeper == nullptr) {
        new HintKeeper(label); // owned by the label
    } else if (!isHint && keeper != nullptr) {
        delete keeper;
        label.setPalette(QPalette());
    }
}

ReadablePlaceholders::ReadablePlaceholders(QObject *parent) : QObject(parent) {
    qApp->installEventFilter(this);
    _adjust();
}

bool ReadablePlaceholders::eventFilter(QObject *watched, QEvent *event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        _adjust();
    }
    return QObject::eventFilter(watched, event);
}

void ReadablePlaceholders::_adjust() {
    const QPalette before = QApplication::palette();
    QPalette palette = before;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QPalette ofGroup = before;
        ofGroup.setCurrentColorGroup(group);
        palette.setColor(group, QPalette::PlaceholderText, QtHintColor(ofGroup, QPalette::Text, QPalette::Base));
    }
    if (palette != before) { // what the change leads to comes by here again
        QApplication::setPalette(palette);
    }
}

} // namespace orvane
