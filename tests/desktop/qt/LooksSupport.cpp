#include "LooksSupport.h"

#include "QtTestSupport.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>

namespace orvane::test {

QPalette darkPalette() {
    const QColor text(230, 230, 232);
    const QColor faint(120, 120, 124);
    QPalette dark;
    for (const auto &[role, colour] : std::initializer_list<std::pair<QPalette::ColorRole, QColor>>{
             {QPalette::Window, QColor(43, 43, 46)},
             {QPalette::WindowText, text},
             {QPalette::Base, QColor(30, 30, 32)},
             {QPalette::AlternateBase, QColor(38, 38, 40)},
             {QPalette::Text, text},
             {QPalette::Button, QColor(56, 56, 60)},
             {QPalette::ButtonText, text},
             {QPalette::Light, QColor(76, 76, 80)},
             {QPalette::Highlight, QColor(61, 132, 224)},
             {QPalette::HighlightedText, Qt::white},
             {QPalette::ToolTipBase, QColor(56, 56, 60)},
             {QPalette::ToolTipText, text},
             {QPalette::PlaceholderText, QColor(150, 150, 154)},
         }) {
        dark.setColor(role, colour);
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(QPalette::Disabled, role, faint);
    }
    dark.setColor(QPalette::Disabled, QPalette::Light, QColor(30, 30, 32)); // of the text's shade
    return dark;
}

German::German() {
    QCoreApplication::installTranslator(this);
}

German::~German() {
    QCoreApplication::removeTranslator(this);
}

QString German::translate(const char * /*context*/, const char *source, const char * /*note*/, int /*number*/) const {
    static const QHash<QString, QString> texts = {
        {QStringLiteral("New Folder from Preset"), QStringLiteral("Neuer Ordner nach einer Vorlage")},
        {QStringLiteral("An item of this name already exists."), QStringLiteral("Ein Objekt dieses Namens ist bereits vorhanden.")},
        {QStringLiteral("The folder’s name is blank."), QStringLiteral("Der Name des Ordners ist leer.")},
        {QStringLiteral("The folder’s name is too long."), QStringLiteral("Der Name des Ordners überschreitet die zulässige Länge.")},
        {QStringLiteral("A folder cannot have this name."), QStringLiteral("Ein Ordner kann diesen Namen nicht bekommen.")},
        {QStringLiteral("Values of the variables"), QStringLiteral("Werte der Variablen")},
        {QStringLiteral("Creating the new folder…"), QStringLiteral("Der neue Ordner wird angelegt …")},
        {QStringLiteral("Items so far: %1"), QStringLiteral("Bisher angelegte Objekte: %1")},
        {QStringLiteral("&Cancel"), QStringLiteral("&Abbrechen")},
        {QStringLiteral("Cancel"), QStringLiteral("Abbrechen")},
    };
    return texts.value(QString::fromUtf8(source));
}

namespace {

/// Relative luminance (WCAG 2.1).
double luminance(const QColor &colour) {
    const auto linear = [](double value) { return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

std::string describe(const QWidget &widget) {
    return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
}

/// Widgets of our own and Qt's that show text or are used, without the parts that Qt makes for itself inside of them.
QList<const QWidget *> controls(const QWidget &window) {
    QList<const QWidget *> found;
    for (const QWidget *each : window.findChildren<QWidget *>()) {
        const bool shows = qobject_cast<const QLabel *>(each) != nullptr || qobject_cast<const QAbstractButton *>(each) != nullptr ||
                           qobject_cast<const QLineEdit *>(each) != nullptr;
        if (shows && each->isVisible() && each->window() == &window) {
            found.append(each);
        }
    }
    return found;
}

bool takesKeyboard(const QWidget &widget, const QWidget &window) {
    return widget.isVisible() && widget.isEnabled() && widget.window() == &window &&
           (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.focusProxy() == nullptr;
}

void walk(QAccessibleInterface &node, const std::function<void(QAccessibleInterface &)> &visit) {
    for (int i = 0; i < node.childCount(); ++i) {
        QAccessibleInterface *const child = node.child(i);
        if (child != nullptr && child->isValid() && !child->state().invisible) {
            visit(*child);
            walk(*child, visit);
        }
    }
}

} // namespace

double contrast(const QColor &one, const QColor &other) {
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QColor over(const QColor &below, const QColor &tint, int alpha) {
    const double share = alpha / 255.0;
    return QColor::fromRgbF(static_cast<float>(below.redF() * (1 - share) + tint.redF() * share),
                            static_cast<float>(below.greenF() * (1 - share) + tint.greenF() * share),
                            static_cast<float>(below.blueF() * (1 - share) + tint.blueF() * share));
}

void expectNothingIsCut(const QWidget &window) {
    EXPECT_TRUE(window.screen()->availableGeometry().contains(frameOf(window))) << describe(window);
    EXPECT_LE(window.minimumSizeHint().width(), window.width()) << describe(window);
    EXPECT_LE(window.minimumSizeHint().height(), window.height()) << describe(window);
    const QList<const QWidget *> all = controls(window);
    for (const QWidget *each : all) {
        const QRect place(each->mapTo(&window, QPoint()), each->size());
        EXPECT_TRUE(window.rect().contains(place)) << describe(*each);
        if (each->objectName() != QLatin1String("problemIcon")) { // all others show text
            EXPECT_GE(each->height(), each->fontMetrics().height()) << describe(*each);
        }
        if (const auto *label = qobject_cast<const QLabel *>(each); label != nullptr && !label->text().isEmpty()) {
            EXPECT_GE(label->width(), label->wordWrap() ? 0 : label->sizeHint().width()) << label->text().toStdString();
        }
        if (const auto *button = qobject_cast<const QAbstractButton *>(each)) {
            // Icons in Qt's own file dialog are squares as high as its fields.
            const bool isQtsOwn = qobject_cast<const QFileDialog *>(&window) != nullptr && button->text().isEmpty();
            EXPECT_GE(button->width(), isQtsOwn ? button->iconSize().width() + 2 : button->minimumSizeHint().width())
                << button->text().toStdString();
        }
        for (const QWidget *other : all) {
            const QRect there(other->mapTo(&window, QPoint()), other->size());
            EXPECT_TRUE(other == each || other->isAncestorOf(each) || each->isAncestorOf(other) || !place.intersects(there))
                << describe(*each) << " lies over " << describe(*other);
        }
    }
}

std::vector<std::string> whatScreenReadersFind(QWidget &window) {
    std::vector<std::string> found;
    walk(*QAccessible::queryAccessibleInterface(&window), [&](QAccessibleInterface &node) {
        found.push_back(std::to_string(node.role()) + ": " + node.text(QAccessible::Name).toStdString());
    });
    return found;
}

void expectEverythingHasAName(QWidget &window) {
    QAccessibleInterface *const whole = QAccessible::queryAccessibleInterface(&window);
    ASSERT_NE(whole, nullptr);
    EXPECT_FALSE(whole->text(QAccessible::Name).isEmpty()) << describe(window);
    int used = 0;
    walk(*whole, [&](QAccessibleInterface &node) {
        const auto *const widget = dynamic_cast<const QWidget *>(node.object());
        const bool isUsed = widget != nullptr ? takesKeyboard(*widget, window) : node.role() == QAccessible::Cell;
        EXPECT_NE(node.role(), QAccessible::NoRole);
        if (isUsed) {
            ++used;
            EXPECT_FALSE(node.text(QAccessible::Name).isEmpty())
                << "role " << node.role() << ' ' << (widget == nullptr ? std::string() : describe(*widget));
        }
    });
    EXPECT_GT(used, 0);
}

void expectTabReachesEverything(QWidget &window) {
    std::set<const QWidget *> wanted;
    for (const QWidget *each : window.findChildren<QWidget *>()) {
        if (takesKeyboard(*each, window)) {
            wanted.insert(each);
        }
    }
    std::set<const QWidget *> reached;
    const QWidget *const first = QApplication::focusWidget();
    ASSERT_NE(first, nullptr);
    for (std::size_t i = 0; i <= wanted.size(); ++i) {
        reached.insert(QApplication::focusWidget());
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
        QApplication::sendEvent(QApplication::focusWidget(), &down);
        if (QApplication::focusWidget() == first) {
            break;
        }
    }
    EXPECT_EQ(QApplication::focusWidget(), first) << "Tab leads in no circle";
    for (const QWidget *each : wanted) {
        EXPECT_TRUE(reached.count(each) == 1) << "Tab does not reach " << describe(*each);
    }
}

} // namespace orvane::test
