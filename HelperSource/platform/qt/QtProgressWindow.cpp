#include "platform/qt/QtProgressWindow.h"

#include "platform/qt/QtApplication.h"
#include "platform/qt/QtHintColor.h"
#include "platform/qt/QtResources.h"

#include <array>

#include <unistd.h>

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QSocketNotifier>
#include <QVBoxLayout>

namespace orvane {

QtProgressWindow::QtProgressWindow() : QWidget(nullptr, Qt::Dialog) {
    setObjectName(QStringLiteral("progressWindow"));
    setWindowTitle(QCoreApplication::applicationName());
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto *const what = new QLabel(QCoreApplication::translate("Orvane", "Creating the new folder…"), this);
    QFont bold = what->font();
    bold.setWeight(QFont::DemiBold);
    what->setFont(bold);
    auto *const bar = new QProgressBar(this);
    bar->setRange(0, 0); // nobody knows how long it takes
    bar->setTextVisible(false);
    bar->setAccessibleName(what->text());
    _nodes = new QLabel(this);
    QPalette quieter = _nodes->palette();
    quieter.setColor(QPalette::WindowText, QtHintColor(quieter));
    _nodes->setPalette(quieter);
    auto *const layout = new QVBoxLayout(this);
    const int room = fontMetrics().averageCharWidth() * 3;
    layout->setContentsMargins(room, room, room, room);
    layout->setSpacing(room / 2);
    layout->addWidget(what);
    layout->addWidget(bar);
    layout->addWidget(_nodes);
    setFixedSize(fontMetrics().averageCharWidth() * 52, layout->sizeHint().height());
    setNodes(0);
}

void QtProgressWindow::setNodes(std::uint64_t nodes) {
    _nodes->setText(QCoreApplication::translate("Orvane", "Items so far: %1").arg(QLocale().toString(static_cast<qulonglong>(nodes))));
}

int QtRunProgressWindow(int &argc, char **argv, int input) {
    qunsetenv("SESSION_MANAGER"); // a session does not have to remember this window
    QCoreApplication::setApplicationName(QStringLiteral("Orvane"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.orvane.Helper"));
    const QApplication application(argc, argv);
    QGuiApplication::setWindowIcon(QtProgramIcon(QtResources::folderOfProgram()));
    QtProgressWindow window;
    QSocketNotifier arrival(input, QSocketNotifier::Read);
    QObject::connect(&arrival, &QSocketNotifier::activated, &window, [&] {
        std::array<std::uint64_t, 64> numbers{};
        const ssize_t size = ::read(input, numbers.data(), sizeof numbers);
        const auto count = size < 0 ? 0 : static_cast<std::size_t>(size) / sizeof numbers.front();
        if (count == 0) {
            arrival.setEnabled(false);
            QCoreApplication::quit();
        } else {
            window.setNodes(numbers.at(count - 1));
        }
    });
    window.show();
    return QApplication::exec();
}

} // namespace orvane
