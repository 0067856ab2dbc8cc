// SPDX-License-Identifier: MIT
// Part of every program under ThreadSanitizer, which does not see the locks of Qt's event queues
// and thread pools: calls that wait in them are announced by hand. These functions stand before
// Qt's own.
#include <QMetaObject>
#include <QThreadPool>

#include <functional>
#include <utility>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

template <typename Function>
Function* next(const char* symbol) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, symbol));
}

/// A call that happens after whatever the calling thread did before.
class AnnouncedCall : public QtPrivate::QSlotObjectBase {
public:
    explicit AnnouncedCall(QSlotObjectBase* call) : QSlotObjectBase(&handle), m_call(call) {
        __tsan_release(this);
    }

private:
    static void handle(int operation, QSlotObjectBase* self, QObject* receiver, void** arguments,
                       bool* /*isEqual*/) {
        auto* const announced = static_cast<AnnouncedCall*>(self);
        __tsan_acquire(announced);
        if (operation == Call) {
            announced->m_call->call(receiver, arguments);
            __tsan_release(receiver);  // for those who wait for the call
        } else if (operation == Destroy) {
            announced->m_call->destroyIfLastRef();
            delete announced;
        }
    }

    QSlotObjectBase* const m_call;
};

}  // namespace

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot,
                                   Qt::ConnectionType type, void* result) {
    static auto* const original = next<bool(QObject*, QtPrivate::QSlotObjectBase*,
                                            Qt::ConnectionType, void*)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14Connect"
        "ionTypeEPv");
    const bool isTaken = original(object, new AnnouncedCall(slot), type, result);
    if (type == Qt::BlockingQueuedConnection)
        __tsan_acquire(object);
    return isTaken;
}

void QThreadPool::start(std::function<void()> function, int priority) {
    static auto* const original = next<void(QThreadPool*, std::function<void()>, int)>(
        "_ZN11QThreadPool5startESt8functionIFvvEEi");
    auto* const task = new std::function<void()>(std::move(function));
    __tsan_release(task);
    original(
        this,
        [this, task] {
            __tsan_acquire(task);
            (*task)();
            delete task;
            __tsan_release(this);
        },
        priority);
}

bool QThreadPool::waitForDone(int milliseconds) {
    static auto* const original = next<bool(QThreadPool*, int)>("_ZN11QThreadPool11waitForDoneEi");
    const bool isDone = original(this, milliseconds);
    __tsan_acquire(this);
    return isDone;
}
