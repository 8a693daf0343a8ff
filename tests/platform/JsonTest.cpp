#include "platform/Json.h"

#include <gtest/gtest.h>

#include <limits>

namespace loomcrest {
namespace {

TEST(Json, ReadsValuesAndWritesThemBackCompactly) {
    // Each text and how it is written back.
    const std::vector<std::pair<std::string, std::string>> cases = {
        {" null ", "null"},
        {"\t[false]\r\n", "[false]"},
        {"-0", "0"},
        {"2.5E-3", "0.0025"},
        {"1e300", "1e+300"},
        {"9007199254740993", "9007199254740992"},
        {R"("a\"b\\c\/d\b\f\n\r\t")", R"("a\"b\\c/d\b\f\n\r\t")"},
        {R"("\u00e9\u20ac\ud83d\ude00")", "\"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\""},
        {"\"\xc3\xa9 caf\xc3\xa9\"", "\"\xc3\xa9 caf\xc3\xa9\""},
        {"\"\xf4\x8f\xbf\xbf\"", "\"\xf4\x8f\xbf\xbf\""},
        {R"("\u0001\u001f\u007f")", "\"\\u0001\\u001f\x7f\""},
        {R"({ "b" : [1, {"c": null}], "a": {} , "e": []})",
         R"({"b":[1,{"c":null}],"a":{},"e":[]})"},
    };
    for (const auto& [text, compact] : cases) {
        const json::ParseResult parsed = json::parse(text);
        ASSERT_TRUE(parsed.value) << text << ": " << parsed.error.describe();
        EXPECT_EQ(json::write(*parsed.value), compact) << text;
        EXPECT_EQ(json::parse(compact).value, parsed.value) << compact;
    }
}

TEST(Json, RefusesWhatIsNotStrictJsonAndSaysWhere) {
    // Each text and its ParseError::describe().
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"  \n ", "line 2, column 2: unexpected end of text"},
        {"{\"a\": 1,}", "line 1, column 9: expected a member name in double quotes"},
        {"[1, 2,]", "line 1, column 7: unexpected character ']'"},
        {"[1 2]", "line 1, column 4: expected ',' or ']'"},
        {"{\"a\" 1}", "line 1, column 6: expected ':'"},
        {"{\"a\": 1 \"b\": 2}", "line 1, column 9: expected ',' or '}'"},
        {"{\n  \"a\": 1,\n  \"a\": 2\n}", "line 3, column 3: duplicate member \"a\""},
        {"01", "line 1, column 2: leading zero in a number"},
        {"-", "line 1, column 2: expected a digit"},
        {"1.", "line 1, column 3: expected a digit after '.'"},
        {"1e", "line 1, column 3: expected a digit in the exponent"},
        {"1e400", "line 1, column 1: number out of range"},
        {"tru", "line 1, column 1: unexpected character 't'"},
        {"nulll", "line 1, column 5: unexpected text after the value"},
        {"\"abc", "line 1, column 5: unterminated string"},
        {"\"a\tb\"", "line 1, column 3: control character in a string"},
        {"\"\\x\"", "line 1, column 2: unknown escape"},
        {"\"\\u12g4\"", "line 1, column 4: expected four hex digits after \\u"},
        {"\"\\ud800\"", "line 1, column 2: lone surrogate in \\u escape"},
        {"\"\\udc00\\ud800\"", "line 1, column 2: lone surrogate in \\u escape"},
        {"\"\\ud800\\u0041\"", "line 1, column 2: lone surrogate in \\u escape"},
        {"\"caf\xe9\"", "line 1, column 5: text that is not UTF-8"},
        {"\xc3\xa9", "line 1, column 1: unexpected character"},
        {std::string(101, '[') + std::string(101, ']'), "line 1, column 101: nested too deeply"},
        {std::string(100, '[') + "{}" + std::string(100, ']'),
         "line 1, column 101: nested too deeply"},
    };
    for (const auto& [text, where] : cases) {
        const json::ParseResult parsed = json::parse(text);
        EXPECT_FALSE(parsed.value) << text;
        EXPECT_EQ(parsed.error.describe(), where) << text;
    }
    EXPECT_TRUE(json::parse(std::string(100, '[') + std::string(100, ']')).value);
    EXPECT_TRUE(json::parse(std::string(99, '[') + "{}" + std::string(99, ']')).value);
}

TEST(Json, WritesEveryStringAsValidEscapedUtf8AndIndentsOneItemALine) {
    EXPECT_EQ(json::quoted("say \"hi\"\\ \n\x01\x1f"), R"("say \"hi\"\\ \n\u0001\u001f")");
    EXPECT_EQ(json::quoted("caf\xe9!"), "\"caf\xef\xbf\xbd!\"");
    EXPECT_EQ(json::quoted("\xed\xa0\x80"), "\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\"");
    EXPECT_EQ(json::write(json::Value(std::numeric_limits<double>::infinity())), "null");

    // Indented: one member or element a line.
    json::Value file = json::Object{};
    file.set("name", "Tom & \"Jerry\"");
    file.set("count", 3);
    file.set("empty", json::Array{});
    file.set("list", json::Array{json::Value(true), json::Value(0.5), json::Object{}});
    file.set("count", 4);  // replaces in place
    EXPECT_EQ(json::write(file, json::Layout::Indented),
              "{\n  \"name\": \"Tom & \\\"Jerry\\\"\",\n  \"count\": 4,\n  \"empty\": [],\n"
              "  \"list\": [\n    true,\n    0.5,\n    {}\n  ]\n}");
}

}  // namespace
}  // namespace loomcrest
