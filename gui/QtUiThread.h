#pragma once

#include <QObject>

#include "platform/UiThread.h"

namespace loomcrest::gui {

// The core's user-interface thread is Qt's main thread: work is posted to its event loop.
class QtUiThread : public UiThread {
public:
    explicit QtUiThread(QObject* context) : context_(context) {}

    void perform(Work work) override;
    void performAndWait(Work work) override;
    void performAfter(std::chrono::milliseconds delay, Work work) override;

private:
    QObject* context_;
};

}  // namespace loomcrest::gui
