#include "QtUiThread.h"

#include <QMetaObject>
#include <QThread>
#include <QTimer>

namespace loomcrest::gui {

void QtUiThread::perform(Work work) {
    QMetaObject::invokeMethod(context_, std::move(work), Qt::QueuedConnection);
}

void QtUiThread::performAndWait(Work work) {
    if (QThread::currentThread() == context_->thread()) {
        work();
        return;
    }
    QMetaObject::invokeMethod(context_, std::move(work), Qt::BlockingQueuedConnection);
}

void QtUiThread::performAfter(std::chrono::milliseconds delay, Work work) {
    // Timers belong to the thread that starts them, so the timer is started on the
    // interface thread whoever asks.
    perform([context = context_, delay, work = std::move(work)]() mutable {
        QTimer::singleShot(delay, context, std::move(work));
    });
}

}  // namespace loomcrest::gui
