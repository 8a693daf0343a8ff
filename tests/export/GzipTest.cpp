#include "export/Gzip.h"

#include <gtest/gtest.h>

#include <string>

namespace loomcrest {
namespace {

TEST(Gzip, ReadsBackUpToTheLimitAndSaysWhenThereWasMore) {
    const std::string plain = "<urlset>" + std::string(100000, 'u') + "</urlset>";
    const auto gzip = gzipCompressed(plain);
    ASSERT_TRUE(gzip.has_value());
    EXPECT_TRUE(isGzip(*gzip));
    EXPECT_FALSE(isGzip(plain));

    const auto whole = gunzip(*gzip, plain.size());
    ASSERT_TRUE(whole.has_value());
    EXPECT_EQ(whole->bytes, plain);
    EXPECT_FALSE(whole->truncated) << "exactly the limit is not more than it";

    const auto cut = gunzip(*gzip, plain.size() - 1);
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->bytes, plain.substr(0, plain.size() - 1));
    EXPECT_TRUE(cut->truncated);

    EXPECT_EQ(gunzip(gzip->substr(0, gzip->size() / 2), plain.size()), std::nullopt);
    EXPECT_EQ(gunzip(plain, plain.size()), std::nullopt);
}

}  // namespace
}  // namespace loomcrest
