#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace loomcrest {

// Named notifications without payload, delivered synchronously on the posting thread
// (the user-interface thread) to every observer of that name, in order of registration.
class NotificationCenter {
public:
    using Observer = std::function<void()>;
    using Token = unsigned long;

    Token addObserver(std::string_view name, Observer observer);
    void removeObserver(Token token);
    void post(std::string_view name);

private:
    struct Registration {
        std::string name;
        Observer observer;
    };
    std::map<Token, Registration> registrations_;
    Token nextToken_ = 1;
};

// Keeps an observer registered for as long as it lives.
class ScopedObserver {
public:
    ScopedObserver(NotificationCenter& center, std::string_view name,
                   NotificationCenter::Observer observer)
        : center_(center), token_(center.addObserver(name, std::move(observer))) {}
    ScopedObserver(const ScopedObserver&) = delete;
    ScopedObserver& operator=(const ScopedObserver&) = delete;
    ~ScopedObserver() { center_.removeObserver(token_); }

private:
    NotificationCenter& center_;
    NotificationCenter::Token token_;
};

}  // namespace loomcrest
