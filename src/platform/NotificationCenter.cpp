#include "platform/NotificationCenter.h"

#include <vector>

namespace loomcrest {

NotificationCenter::Token NotificationCenter::addObserver(std::string_view name,
                                                          Observer observer) {
    const Token token = nextToken_++;
    registrations_.emplace(token, Registration{std::string(name), std::move(observer)});
    return token;
}

void NotificationCenter::removeObserver(Token token) {
    registrations_.erase(token);
}

void NotificationCenter::post(std::string_view name) {
    // An observer may add or remove observers, so deliver to a snapshot.
    std::vector<Observer> receivers;
    for (const auto& [token, registration] : registrations_) {
        if (registration.name == name) {
            receivers.push_back(registration.observer);
        }
    }
    for (const auto& receiver : receivers) {
        receiver();
    }
}

}  // namespace loomcrest
