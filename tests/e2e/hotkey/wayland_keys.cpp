// A mouse and a keyboard for the tests on compositors: does what it reads from standard input, a line each, and answers "done".
//   move X Y | down CODE... | up CODE... | press CODE...     (codes of linux/input-event-codes.h)
#include "desktop/wayland/WaylandInput.h"

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

bool handle(orvane::WaylandInput &input, const std::string &line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t number = 0; words >> number;) {
        numbers.push_back(number);
    }
    if (verb == "move" && numbers.size() == 2) {
        input.movePointer(numbers[0], numbers[1]);
    } else if (verb == "press") {
        input.press(numbers);
    } else if (verb == "down" || verb == "up") {
        for (const std::uint32_t number : numbers) {
            input.key(number, verb == "down");
        }
    } else {
        return false;
    }
    return true;
}

} // namespace

int main() {
    const auto input = orvane::WaylandInput::open(1280, 800);
    if (input == nullptr) {
        std::fprintf(stderr, "wayland_keys: the compositor takes no input from programs\n");
        return 1;
    }
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        if (!handle(*input, line)) {
            std::fprintf(stderr, "wayland_keys: what is '%s'?\n", line.c_str());
            return 2;
        }
        std::cout << "done" << std::endl;
    }
    return 0;
}
