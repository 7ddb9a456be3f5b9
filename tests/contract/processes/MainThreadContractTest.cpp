// What every main thread promises, run on the fake; Qt's has it in tests/desktop.

#include "MainThreadContract.h"

#include "fakes/FakeMainThread.h"

namespace orvane::test {
namespace {

class FakeMainThreadHarness {
public:
    MainThread &mainThread() { return _mainThread; }
    bool serveUntil(const std::function<bool()> &done) { return _mainThread.runUntil(done, std::chrono::seconds(20)); }
    void wake() { _mainThread.wake(); }
    void handleEvent(const std::function<void()> &work) {
        work();
        _mainThread.endEvent();
    }

private:
    FakeMainThread _mainThread;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MainThreadContract, FakeMainThreadHarness);

} // namespace
} // namespace orvane::test
