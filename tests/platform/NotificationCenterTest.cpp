#include "platform/NotificationCenter.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace loomcrest {
namespace {

TEST(NotificationCenter, DeliversByNameInRegistrationOrderWhileObserved) {
    NotificationCenter center;
    std::vector<std::string> received;
    ScopedObserver first(center, "vrlmpLFF", [&] { received.push_back("first"); });
    ScopedObserver other(center, "other", [&] { received.push_back("other"); });
    {
        ScopedObserver second(center, "vrlmpLFF", [&] { received.push_back("second"); });
        center.post("vrlmpLFF");
    }
    center.post("vrlmpLFF");
    EXPECT_EQ(received, (std::vector<std::string>{"first", "second", "first"}));
}

TEST(NotificationCenter, AnObserverMayUnregisterWhileBeingNotified) {
    NotificationCenter center;
    int calls = 0;
    std::optional<NotificationCenter::Token> token;
    token = center.addObserver("once", [&] {
        ++calls;
        center.removeObserver(*token);
    });
    center.post("once");
    center.post("once");
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace loomcrest
