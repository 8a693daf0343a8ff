#include "sitemap/XmlSitemapFormat.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "sitemap/LastModified.h"
#include "sitemap/SitemapFiles.h"
#include "support/Golden.h"

namespace loomcrest {
namespace {

TEST(XmlSitemap, HeaderEntriesAndClosingMakeTheSharedSample) {
    EXPECT_EQ(std::string(xmlSitemapHeader()) +
                  xmlSitemapEntry("http://host/a.html", "2024-05-17") +
                  xmlSitemapEntry("Not Found", "") + "\n</urlset>",
              test::golden("sitemap.xml"));
}

TEST(XmlSitemapEntry, EscapesInOrderAndEscapesEscapesAgain) {
    EXPECT_EQ(escapeLocation("http://h/?a=1&b='2'&c=\"<3>\""),
              "http://h/?a=1&amp;b=&apos;2&apos;&amp;c=&quot;&lt;3&gt;&quot;");
    EXPECT_EQ(escapeLocation("http://h/?a&amp;b"), "http://h/?a&amp;amp;b");
}

// Dates as the local clock shows them; the tests run in UTC.
class WeekYear : public testing::Test {
protected:
    void SetUp() override {
        if (const char* tz = std::getenv("TZ")) {
            previous_ = tz;
            hadTz_ = true;
        }
        setenv("TZ", "UTC", 1);
        tzset();
    }
    void TearDown() override {
        if (hadTz_) {
            setenv("TZ", previous_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    static std::string on(int year, int month, int day) {
        std::tm date{};
        date.tm_year = year - 1900;
        date.tm_mon = month - 1;
        date.tm_mday = day;
        date.tm_hour = 12;
        return weekYearDate(std::chrono::system_clock::from_time_t(timegm(&date)));
    }

private:
    std::string previous_;
    bool hadTz_ = false;
};

TEST_F(WeekYear, TheWeekHoldingNewYearsDayBelongsToTheNewYear) {
    EXPECT_EQ(on(2023, 12, 30), "2023-12-30");  // Saturday: the week ends in December
    EXPECT_EQ(on(2023, 12, 31), "2024-12-31");  // Sunday: its week holds 1 January 2024
    EXPECT_EQ(on(2024, 12, 28), "2024-12-28");
    EXPECT_EQ(on(2024, 12, 29), "2025-12-29");
    EXPECT_EQ(on(2022, 12, 31), "2022-12-31");  // Saturday; 1 January 2023 is a Sunday
    EXPECT_EQ(on(2021, 1, 1), "2021-01-01");
    EXPECT_EQ(on(2024, 5, 17), "2024-05-17");
}

}  // namespace
}  // namespace loomcrest
