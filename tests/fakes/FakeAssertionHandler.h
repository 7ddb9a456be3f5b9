#pragma once

#include "ports/AssertionHandler.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Keeps the failures, each as "METHOD FILE:LINE DESCRIPTION", and throws when told to.
class FakeAssertionHandler final : public AssertionHandler {
public:
    std::vector<std::string> failures;
    std::vector<const void *> objects;
    bool raises = false;

    void handleFailureInMethod(std::string_view method, const void *object, std::string_view file, int lineNumber,
                               std::string_view description) override {
        failures.push_back(std::string(method) + " " + std::string(file) + ":" + std::to_string(lineNumber) + " " +
                           std::string(description));
        objects.push_back(object);
        if (raises) {
            throw AssertionFailure(std::string(description));
        }
    }
};

} // namespace orvane
