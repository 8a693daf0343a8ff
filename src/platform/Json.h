#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// JSON (RFC 8259) for the few small files and outputs that need it: a value type, a strict
// parser that says where and why a text is refused, and a writer.
namespace loomcrest::json {

class Value;
using Array = std::vector<Value>;
// Members in the order they were written or added; names are unique.
using Object = std::vector<std::pair<std::string, Value>>;

class Value {
public:
    enum class Type { Null, Boolean, Number, String, Array, Object };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool boolean) : data_(boolean) {}
    Value(double number) : data_(number) {}
    Value(int number) : data_(static_cast<double>(number)) {}
    Value(int64_t number) : data_(static_cast<double>(number)) {}
    Value(std::string text) : data_(std::move(text)) {}
    Value(std::string_view text) : data_(std::string(text)) {}
    Value(const char* text) : data_(std::string(text)) {}
    Value(json::Array array) : data_(std::move(array)) {}
    Value(json::Object object) : data_(std::move(object)) {}

    Type type() const { return static_cast<Type>(data_.index()); }
    bool isNull() const { return type() == Type::Null; }

    // The value when it has that type; nothing (or null) otherwise.
    std::optional<bool> boolean() const;
    std::optional<double> number() const;
    // A number that is a whole number and fits in 64 bits.
    std::optional<int64_t> integer() const;
    const std::string* string() const { return std::get_if<std::string>(&data_); }
    const json::Array* array() const { return std::get_if<json::Array>(&data_); }
    const json::Object* object() const { return std::get_if<json::Object>(&data_); }

    // The member of an object with that name; null when there is none or this is no object.
    const Value* find(std::string_view name) const;
    // Sets the member of that name, adding it at the end when it is new. A value that is not
    // an object becomes an empty one first.
    Value& set(std::string_view name, Value value);

    bool operator==(const Value&) const = default;

private:
    std::variant<std::nullptr_t, bool, double, std::string, json::Array, json::Object> data_;
};

// Where a text was refused: line and column count from 1, columns in characters.
struct ParseError {
    int line = 0;
    int column = 0;
    std::string reason;

    // "line 3, column 14: expected ',' or '}'".
    std::string describe() const;
};

struct ParseResult {
    std::optional<Value> value;
    ParseError error;  // meaningful when there is no value
};

// Accepts exactly one JSON value with blanks around it: no comments, no trailing commas,
// no duplicate names, UTF-8 only, at most 100 levels of nesting.
ParseResult parse(std::string_view text);

enum class Layout {
    Compact,  // no blanks at all
    Indented  // two blanks a level, one member or element a line, "name": value
};

// The value as JSON text, without a final line feed. Strings that are not valid UTF-8 have
// each bad byte written as U+FFFD; numbers that are not finite are written as null.
std::string write(const Value& value, Layout layout = Layout::Compact);

// `text` as a JSON string literal, quotes included.
std::string quoted(std::string_view text);

}  // namespace loomcrest::json
