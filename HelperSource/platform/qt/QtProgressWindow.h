#pragma once

#include <cstdint>

#include <QWidget>

class QLabel;

namespace orvane {

/// Says that a creation is under way and how many items there are so far. Closing it hides it, the creation goes on.
class QtProgressWindow final : public QWidget {
public:
    QtProgressWindow();
    void setNodes(std::uint64_t nodes);

private:
    QLabel *_nodes = nullptr;
};

/// A whole program: shows the window without taking the keyboard, and the newest of the numbers that come as 64-bit integers of the
/// machine on `input`, until that ends. The exit status. Nothing else of Qt may be running in the process.
[[nodiscard]] int QtRunProgressWindow(int &argc, char **argv, int input);

} // namespace orvane
