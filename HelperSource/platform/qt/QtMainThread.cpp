#include "platform/qt/QtMainThread.h"

#include <utility>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace orvane {

namespace {

/// Waiting threads would hang for ever if work could leave by an exception: it ends the program instead.
void perform(const std::function<void()> &work) noexcept {
    work();
}

/// Keeps an object until Qt returns to the event loop in which it was deferred, not to one nested in the present event.
class Holder final : public QObject {
public:
    Holder(std::shared_ptr<const void> object, QObject *parent) : QObject(parent), _object(std::move(object)) {}

private:
    std::shared_ptr<const void> _object;
};

/// Keeps an object until the event has been handled. Nothing else holds it: a functor on its way to another thread is copied (Qt 6.4),
/// and the copy that is left behind could be the last one.
class ReleaseEvent final : public QEvent {
public:
    explicit ReleaseEvent(std::shared_ptr<const void> object) : QEvent(static_cast<Type>(User + 1)), _object(std::move(object)) {}

private:
    std::shared_ptr<const void> _object;
};

} // namespace

class QtMainThread::Receiver final : public QObject {
public:
    explicit Receiver(QtMainThread &mainThread) : _mainThread(mainThread) {}
    bool event(QEvent *event) override {
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        _mainThread._serveWaiting();
        return true;
    }

    void holdUntilEventIsHandled(std::shared_ptr<const void> object) {
        (new Holder(std::move(object), this))->deleteLater();
        // After a nested loop Qt looks at what was put off there only when some other event is posted: have it look before it sleeps.
        QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
        if (dispatcher != nullptr && !static_cast<bool>(_looksBeforeSleep)) {
            _looksBeforeSleep = connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
                if (!children().isEmpty()) {
                    QCoreApplication::sendPostedEvents();
                }
            });
        }
    }

private:
    QtMainThread &_mainThread;
    QMetaObject::Connection _looksBeforeSleep;
};

QtMainThread::QtMainThread() : _receiver(std::make_unique<Receiver>(*this)) {}

QtMainThread::~QtMainThread() = default;

bool QtMainThread::isCurrent() {
    return std::this_thread::get_id() == _main;
}

void QtMainThread::performAndWait(const std::function<void()> &work) {
    if (isCurrent()) {
        perform(work);
        return;
    }
    Item item{&work};
    std::unique_lock lock(_mutex);
    _queue.push_back(&item);
    _callReceiver();
    _done.wait(lock, [&] { return item.done; });
}

void QtMainThread::releaseAfterCurrentEvent(std::shared_ptr<const void> object) {
    if (!isCurrent()) {
        QCoreApplication::postEvent(_receiver.get(), new ReleaseEvent(std::move(object)));
    } else if (_deferred != nullptr) {
        _deferred->push_back(std::move(object));
    } else {
        _receiver->holdUntilEventIsHandled(std::move(object));
    }
}

void QtMainThread::_callReceiver() {
    QCoreApplication::postEvent(_receiver.get(), new QEvent(QEvent::User));
}

void QtMainThread::_serveWaiting() {
    for (;;) {
        Item *item = nullptr;
        {
            const std::lock_guard lock(_mutex);
            if (_pauses > 0 || _queue.empty()) {
                return;
            }
            item = _queue.front();
            _queue.pop_front();
        }
        _serve(*item);
    }
}

void QtMainThread::_serve(Item &item) {
    {
        std::vector<std::shared_ptr<const void>> deferred;
        std::vector<std::shared_ptr<const void>> *const outer = std::exchange(_deferred, &deferred);
        perform(*item.work);
        while (!deferred.empty()) { // a destructor may defer others
            const std::vector<std::shared_ptr<const void>> ending = std::exchange(deferred, {});
        }
        _deferred = outer;
    }
    const std::lock_guard lock(_mutex);
    item.done = true;
    _done.notify_all();
}

QtMainThread::Pause::Pause(QtMainThread &mainThread) : _mainThread(mainThread) {
    ++_mainThread._pauses;
}

QtMainThread::Pause::~Pause() {
    if (--_mainThread._pauses == 0) {
        _mainThread._callReceiver();
    }
}

} // namespace orvane
