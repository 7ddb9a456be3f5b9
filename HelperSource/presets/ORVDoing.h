#pragma once

namespace orvane {

/// Sets a flag from its construction to its destruction: something is being done.
class ORVDoing {
public:
    explicit ORVDoing(bool &flag) : _flag(flag) { _flag = true; }
    ORVDoing(const ORVDoing &) = delete;
    ORVDoing &operator=(const ORVDoing &) = delete;
    ~ORVDoing() { _flag = false; }

private:
    bool &_flag;
};

} // namespace orvane
