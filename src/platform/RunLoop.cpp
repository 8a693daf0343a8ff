#include "platform/RunLoop.h"

#include <future>
#include <memory>

namespace loomcrest {

bool RunLoop::onLoopThread() {
    const std::lock_guard lock(mutex_);
    return loopThread_ == std::this_thread::get_id();
}

void RunLoop::perform(Work work) {
    {
        const std::lock_guard lock(mutex_);
        queue_.push_back(std::move(work));
    }
    wake_.notify_all();
}

void RunLoop::performAndWait(Work work) {
    if (onLoopThread()) {
        work();
        return;
    }
    // The promise lives in the queued work, not on this stack: the loop thread may still be
    // inside set_value when this thread wakes up and returns.
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> finished = done->get_future();
    perform([work = std::move(work), done] {
        work();
        done->set_value();
    });
    finished.wait();
}

void RunLoop::performAfter(std::chrono::milliseconds delay, Work work) {
    {
        const std::lock_guard lock(mutex_);
        timers_.emplace(Clock::now() + delay, std::move(work));
    }
    wake_.notify_all();
}

void RunLoop::run(const Work& idle, std::chrono::milliseconds tick) {
    std::unique_lock lock(mutex_);
    loopThread_ = std::this_thread::get_id();
    stopping_ = false;
    auto lastIdle = Clock::now();
    while (true) {
        const auto now = Clock::now();
        if (idle && now - lastIdle >= tick) {
            lastIdle = now;
            lock.unlock();
            idle();
            lock.lock();
            continue;
        }
        if (!timers_.empty() && timers_.begin()->first <= now) {
            Work work = std::move(timers_.begin()->second);
            timers_.erase(timers_.begin());
            lock.unlock();
            work();
            lock.lock();
            continue;
        }
        if (!queue_.empty()) {
            Work work = std::move(queue_.front());
            queue_.pop_front();
            lock.unlock();
            work();
            lock.lock();
            continue;
        }
        if (stopping_) {
            break;
        }
        auto deadline = idle ? lastIdle + tick : now + tick;
        if (!timers_.empty() && timers_.begin()->first < deadline) {
            deadline = timers_.begin()->first;
        }
        wake_.wait_until(lock, deadline, [&] {
            return stopping_ || !queue_.empty() ||
                   (!timers_.empty() && timers_.begin()->first <= Clock::now());
        });
    }
    timers_.clear();
    loopThread_ = {};
}

void RunLoop::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
}

}  // namespace loomcrest
