#include "platform/Json.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace loomcrest::json {

namespace {

constexpr int kMaxDepth = 100;
constexpr uint32_t kReplacementCharacter = 0xFFFD;

// The code point of the UTF-8 sequence at `text[at]` and its length in bytes, or nothing
// when the bytes there are not a well-formed, shortest-form sequence of a scalar value.
std::optional<std::pair<uint32_t, size_t>> decodeUtf8(std::string_view text, size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) {
        return std::pair<uint32_t, size_t>{lead, 1};
    }
    size_t length = 0;
    uint32_t codePoint = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        codePoint = lead & 0x1Fu;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        codePoint = lead & 0x0Fu;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        codePoint = lead & 0x07u;
    } else {
        return std::nullopt;
    }
    if (at + length > text.size()) {
        return std::nullopt;
    }
    for (size_t k = 1; k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[at + k]);
        if ((next & 0xC0) != 0x80) {
            return std::nullopt;
        }
        codePoint = (codePoint << 6) | (next & 0x3Fu);
    }
    constexpr std::array<uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < kSmallest[length] || codePoint > 0x10FFFF ||
        (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        return std::nullopt;
    }
    return std::pair<uint32_t, size_t>{codePoint, length};
}

void appendUtf8(std::string& out, uint32_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// A recursive-descent reader over the text. Each read function either consumes what it
// reads or records the first error, after which everything fails.
class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    ParseResult run() {
        skipBlanks();
        std::optional<Value> value = readValue(0);
        if (value) {
            skipBlanks();
            if (at_ != text_.size()) {
                fail("unexpected text after the value");
                value.reset();
            }
        }
        ParseResult result;
        if (value) {
            result.value = std::move(value);
        } else {
            result.error = error_;
        }
        return result;
    }

private:
    std::optional<Value> readValue(int depth) {
        if (at_ == text_.size()) {
            return fail("unexpected end of text");
        }
        switch (text_[at_]) {
            case '{':
                return readObject(depth + 1);
            case '[':
                return readArray(depth + 1);
            case '"': {
                auto text = readString();
                return text ? std::optional<Value>(std::move(*text)) : std::nullopt;
            }
            case 't':
                return readWord("true", Value(true));
            case 'f':
                return readWord("false", Value(false));
            case 'n':
                return readWord("null", Value());
            default:
                if (text_[at_] == '-' || isDigit(text_[at_])) {
                    return readNumber();
                }
                return fail(unexpectedHere());
        }
    }

    std::optional<Value> readObject(int depth) {
        if (depth > kMaxDepth) {
            return fail("nested too deeply");
        }
        ++at_;  // '{'
        Object members;
        skipBlanks();
        if (consume('}')) {
            return Value(std::move(members));
        }
        while (true) {
            skipBlanks();
            if (at_ == text_.size() || text_[at_] != '"') {
                return fail(at_ == text_.size() ? "unexpected end of text"
                                                : "expected a member name in double quotes");
            }
            const size_t nameStart = at_;
            auto name = readString();
            if (!name) {
                return std::nullopt;
            }
            for (const auto& member : members) {
                if (member.first == *name) {
                    at_ = nameStart;
                    return fail("duplicate member \"" + *name + "\"");
                }
            }
            skipBlanks();
            if (!consume(':')) {
                return fail("expected ':'");
            }
            skipBlanks();
            auto value = readValue(depth);
            if (!value) {
                return std::nullopt;
            }
            members.emplace_back(std::move(*name), std::move(*value));
            skipBlanks();
            if (consume('}')) {
                return Value(std::move(members));
            }
            if (!consume(',')) {
                return fail("expected ',' or '}'");
            }
        }
    }

    std::optional<Value> readArray(int depth) {
        if (depth > kMaxDepth) {
            return fail("nested too deeply");
        }
        ++at_;  // '['
        Array elements;
        skipBlanks();
        if (consume(']')) {
            return Value(std::move(elements));
        }
        while (true) {
            skipBlanks();
            auto value = readValue(depth);
            if (!value) {
                return std::nullopt;
            }
            elements.push_back(std::move(*value));
            skipBlanks();
            if (consume(']')) {
                return Value(std::move(elements));
            }
            if (!consume(',')) {
                return fail("expected ',' or ']'");
            }
        }
    }

    std::optional<std::string> readString() {
        ++at_;  // opening quote
        std::string text;
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (c == '"') {
                ++at_;
                return text;
            }
            if (c == '\\') {
                if (!readEscape(text)) {
                    return std::nullopt;
                }
                continue;
            }
            if (static_cast<unsigned char>(c) < 0x20) {
                fail("control character in a string");
                return std::nullopt;
            }
            const auto sequence = decodeUtf8(text_, at_);
            if (!sequence) {
                fail("text that is not UTF-8");
                return std::nullopt;
            }
            text.append(text_.substr(at_, sequence->second));
            at_ += sequence->second;
        }
        fail("unterminated string");
        return std::nullopt;
    }

    bool readEscape(std::string& text) {
        const size_t start = at_;
        ++at_;  // backslash
        if (at_ == text_.size()) {
            fail("unterminated string");
            return false;
        }
        const char kind = text_[at_++];
        switch (kind) {
            case '"':
            case '\\':
            case '/':
                text += kind;
                return true;
            case 'b':
                text += '\b';
                return true;
            case 'f':
                text += '\f';
                return true;
            case 'n':
                text += '\n';
                return true;
            case 'r':
                text += '\r';
                return true;
            case 't':
                text += '\t';
                return true;
            case 'u':
                return readUnicodeEscape(text, start);
            default:
                at_ = start;
                fail("unknown escape");
                return false;
        }
    }

    bool readUnicodeEscape(std::string& text, size_t escapeStart) {
        auto unit = readHex4();
        if (!unit) {
            return false;
        }
        uint32_t codePoint = *unit;
        if (codePoint >= 0xDC00 && codePoint <= 0xDFFF) {
            at_ = escapeStart;
            fail("lone surrogate in \\u escape");
            return false;
        }
        if (codePoint >= 0xD800 && codePoint <= 0xDBFF) {
            if (text_.substr(at_, 2) != "\\u") {
                at_ = escapeStart;
                fail("lone surrogate in \\u escape");
                return false;
            }
            at_ += 2;
            auto low = readHex4();
            if (!low) {
                return false;
            }
            if (*low < 0xDC00 || *low > 0xDFFF) {
                at_ = escapeStart;
                fail("lone surrogate in \\u escape");
                return false;
            }
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (*low - 0xDC00);
        }
        appendUtf8(text, codePoint);
        return true;
    }

    std::optional<uint32_t> readHex4() {
        uint32_t unit = 0;
        const char* first = text_.data() + at_;
        if (text_.size() - at_ < 4 ||
            std::from_chars(first, first + 4, unit, 16).ptr != first + 4) {
            fail("expected four hex digits after \\u");
            return std::nullopt;
        }
        at_ += 4;
        return unit;
    }

    std::optional<Value> readNumber() {
        const size_t start = at_;
        consume('-');
        if (consume('0')) {
            if (at_ < text_.size() && isDigit(text_[at_])) {
                return fail("leading zero in a number");
            }
        } else if (!skipDigits()) {
            return fail("expected a digit");
        }
        if (consume('.') && !skipDigits()) {
            return fail("expected a digit after '.'");
        }
        if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) {
            ++at_;
            if (!consume('+')) {
                consume('-');
            }
            if (!skipDigits()) {
                return fail("expected a digit in the exponent");
            }
        }
        double number = 0;
        const auto [end, status] =
            std::from_chars(text_.data() + start, text_.data() + at_, number);
        if (status != std::errc() || end != text_.data() + at_ || !std::isfinite(number)) {
            at_ = start;
            return fail("number out of range");
        }
        return Value(number);
    }

    std::optional<Value> readWord(std::string_view word, Value value) {
        if (text_.substr(at_, word.size()) != word) {
            return fail(unexpectedHere());
        }
        at_ += word.size();
        return value;
    }

    bool skipDigits() {
        const size_t start = at_;
        while (at_ < text_.size() && isDigit(text_[at_])) {
            ++at_;
        }
        return at_ > start;
    }

    bool consume(char c) {
        if (at_ < text_.size() && text_[at_] == c) {
            ++at_;
            return true;
        }
        return false;
    }

    void skipBlanks() {
        while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t' ||
                                      text_[at_] == '\n' || text_[at_] == '\r')) {
            ++at_;
        }
    }

    std::string unexpectedHere() const {
        const char c = text_[at_];
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7F) {
            return "unexpected character";
        }
        return std::string("unexpected character '") + c + "'";
    }

    // Records the error at the current position; returns nothing for the caller to return.
    std::nullopt_t fail(std::string reason) {
        error_.line = 1;
        error_.column = 1;
        for (size_t i = 0; i < at_ && i < text_.size(); ++i) {
            if (text_[i] == '\n') {
                ++error_.line;
                error_.column = 1;
            } else if ((static_cast<unsigned char>(text_[i]) & 0xC0) != 0x80) {
                ++error_.column;
            }
        }
        error_.reason = std::move(reason);
        return std::nullopt;
    }

    std::string_view text_;
    size_t at_ = 0;
    ParseError error_;
};

void writeString(std::string& out, std::string_view text) {
    static constexpr std::string_view kHex = "0123456789abcdef";
    out += '"';
    size_t at = 0;
    while (at < text.size()) {
        const auto sequence = decodeUtf8(text, at);
        const uint32_t codePoint = sequence ? sequence->first : kReplacementCharacter;
        at += sequence ? sequence->second : 1;
        switch (codePoint) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\b':
                out += "\\b";
                break;
            case '\f':
                out += "\\f";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (codePoint < 0x20) {
                    out += "\\u00";
                    out += kHex[codePoint >> 4];
                    out += kHex[codePoint & 0xF];
                } else {
                    appendUtf8(out, codePoint);
                }
        }
    }
    out += '"';
}

void writeNumber(std::string& out, double number) {
    if (!std::isfinite(number)) {
        out += "null";
        return;
    }
    std::array<char, 32> digits{};
    // Whole numbers of the exactly representable range are written without a fraction or
    // an exponent; anything else in the shortest form that reads back to the same double.
    constexpr double kExactLimit = 9007199254740992.0;  // 2^53
    std::to_chars_result written{};
    if (number == std::trunc(number) && std::fabs(number) <= kExactLimit) {
        written = std::to_chars(digits.data(), digits.data() + digits.size(),
                                static_cast<int64_t>(number));
    } else {
        written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    }
    out.append(digits.data(), written.ptr);
}

void writeValue(std::string& out, const Value& value, Layout layout, int depth) {
    const bool indented = layout == Layout::Indented;
    const auto newLine = [&](int level) {
        if (indented) {
            out += '\n';
            out.append(static_cast<size_t>(level) * 2, ' ');
        }
    };
    switch (value.type()) {
        case Value::Type::Null:
            out += "null";
            return;
        case Value::Type::Boolean:
            out += *value.boolean() ? "true" : "false";
            return;
        case Value::Type::Number:
            writeNumber(out, *value.number());
            return;
        case Value::Type::String:
            writeString(out, *value.string());
            return;
        case Value::Type::Array: {
            out += '[';
            const Array& elements = *value.array();
            for (size_t i = 0; i < elements.size(); ++i) {
                out += i == 0 ? "" : ",";
                newLine(depth + 1);
                writeValue(out, elements[i], layout, depth + 1);
            }
            if (!elements.empty()) {
                newLine(depth);
            }
            out += ']';
            return;
        }
        case Value::Type::Object: {
            out += '{';
            const Object& members = *value.object();
            for (size_t i = 0; i < members.size(); ++i) {
                out += i == 0 ? "" : ",";
                newLine(depth + 1);
                writeString(out, members[i].first);
                out += indented ? ": " : ":";
                writeValue(out, members[i].second, layout, depth + 1);
            }
            if (!members.empty()) {
                newLine(depth);
            }
            out += '}';
            return;
        }
    }
}

}  // namespace

std::optional<bool> Value::boolean() const {
    const bool* flag = std::get_if<bool>(&data_);
    return flag ? std::optional<bool>(*flag) : std::nullopt;
}

std::optional<double> Value::number() const {
    const double* number = std::get_if<double>(&data_);
    return number ? std::optional<double>(*number) : std::nullopt;
}

std::optional<int64_t> Value::integer() const {
    const auto value = number();
    // 2^63 is exactly representable; anything from there on does not fit.
    constexpr double kLimit = 9223372036854775808.0;
    if (!value || *value != std::trunc(*value) || *value < -kLimit || *value >= kLimit) {
        return std::nullopt;
    }
    return static_cast<int64_t>(*value);
}

const Value* Value::find(std::string_view name) const {
    if (const json::Object* members = object()) {
        for (const auto& member : *members) {
            if (member.first == name) {
                return &member.second;
            }
        }
    }
    return nullptr;
}

Value& Value::set(std::string_view name, Value value) {
    if (type() != Type::Object) {
        data_ = json::Object{};
    }
    auto& members = std::get<json::Object>(data_);
    for (auto& member : members) {
        if (member.first == name) {
            member.second = std::move(value);
            return member.second;
        }
    }
    members.emplace_back(std::string(name), std::move(value));
    return members.back().second;
}

std::string ParseError::describe() const {
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + reason;
}

ParseResult parse(std::string_view text) {
    return Parser(text).run();
}

std::string write(const Value& value, Layout layout) {
    std::string out;
    writeValue(out, value, layout, 0);
    return out;
}

std::string quoted(std::string_view text) {
    std::string out;
    writeString(out, text);
    return out;
}

}  // namespace loomcrest::json
