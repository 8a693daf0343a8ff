#include "sitemap/LastModified.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "platform/Http.h"

namespace loomcrest {

std::string lastModifiedDate(std::string_view url, const http::Session* session) {
    http::Request request;
    request.url = url;
    request.session = session;
    request.method = "HEAD";
    request.timeout = kLastModifiedTimeout;
    const http::Response response = http::send(request);
    return response.lastModified ? weekYearDate(*response.lastModified) : std::string();
}

std::string weekYearDate(std::chrono::system_clock::time_point when) {
    const time_t seconds = std::chrono::system_clock::to_time_t(when);
    std::tm local{};
    if (localtime_r(&seconds, &local) == nullptr) {
        return {};
    }
    int weekYear = local.tm_year + 1900;
    constexpr int kDecember = 11;
    constexpr int kSaturday = 6;
    // The week runs on to Saturday; when that Saturday lies in January the week holds
    // 1 January and so belongs to the next year.
    if (local.tm_mon == kDecember && local.tm_mday + (kSaturday - local.tm_wday) > 31) {
        ++weekYear;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", weekYear, local.tm_mon + 1,
                  local.tm_mday);
    return text.data();
}

}  // namespace loomcrest
