#include "editors/XmlSitemapEntries.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "platform/HtmlDocument.h"

namespace loomcrest::xmlentries {

namespace {

constexpr std::array<std::string_view, 4> kElements = {"loc", "lastmod", "changefreq", "priority"};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

bool startsWithTag(std::string_view text, std::string_view name) {
    return text.size() > name.size() + 1 && text[0] == '<' && text.substr(1, name.size()) == name &&
           text[name.size() + 1] == '>';
}

size_t skipBlanks(std::string_view text, size_t at) {
    while (at < text.size() && isBlank(text[at])) {
        ++at;
    }
    return at;
}

void appendUtf8(std::string& out, uint32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// A character the parser takes as it stands: no control character but tab and line feed
// (a carriage return would be turned into a line feed), no U+FFFE or U+FFFF.
bool isPlainCharacter(uint32_t code) {
    return (code >= 0x20 || code == '\t' || code == '\n') && !(code >= 0xD800 && code <= 0xDFFF) &&
           code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF;
}

// The reference at `at` ("&" ... ";") decoded into `out`; false for one the parser would
// read otherwise (a named entity beyond the five of XML, a character it refuses).
bool decodeReference(std::string_view text, size_t at, size_t end, std::string& out) {
    constexpr std::array<std::pair<std::string_view, char>, 5> kNamed = {
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    const std::string_view name = text.substr(at + 1, end - at - 1);
    for (const auto& [entity, character] : kNamed) {
        if (name == entity) {
            out += character;
            return true;
        }
    }
    if (name.size() < 2 || name[0] != '#') {
        return false;
    }
    const bool hex = name[1] == 'x';
    const std::string_view digits = name.substr(hex ? 2 : 1);
    uint32_t code = 0;
    const auto [stop, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
    if (digits.empty() || error != std::errc() || stop != digits.data() + digits.size() ||
        !isPlainCharacter(code)) {
        return false;
    }
    appendUtf8(out, code);
    return true;
}

// An element's text as the parser serialises it, or nothing when it is not plain.
bool appendSerialisedText(std::string_view text, std::string& out) {
    // Mostly plain ASCII with nothing to decode or escape, which stays as it is.
    if (std::all_of(text.begin(), text.end(), [](char c) {
            return (c >= 0x20 && c < 0x7F && c != '&' && c != '>') || c == '\t';
        })) {
        out.append(text);
        return true;
    }
    std::string decoded;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (text[i] == '&') {
            const size_t end = text.find(';', i);
            if (end == std::string_view::npos || !decodeReference(text, i, end, decoded)) {
                return false;
            }
            i = end;
        } else if (byte < 0x80 && !isPlainCharacter(byte)) {
            return false;
        } else if (byte == 0xEF && text.substr(i, 3) >= "\xEF\xBF\xBE" &&
                   text.substr(i, 3) <= "\xEF\xBF\xBF") {
            return false;
        } else {
            decoded += text[i];
        }
    }
    for (const char c : decoded) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            default:
                out += c;
        }
    }
    return true;
}

// The entry starting at `at` (just after "<url>"), serialised into `out`; the position after
// its "</url>", or nothing.
std::optional<size_t> readEntry(std::string_view text, size_t at, std::string& out) {
    out.reserve(std::min(text.find("</url>", at), text.size()) - at + 16);
    out = "<url>";
    while (true) {
        const size_t tag = skipBlanks(text, at);
        out.append(text.substr(at, tag - at));
        if (text.substr(tag).starts_with("</url>")) {
            out += "</url>";
            return tag + std::string_view("</url>").size();
        }
        const std::string_view* element = nullptr;
        for (const std::string_view& name : kElements) {
            if (startsWithTag(text.substr(tag), name)) {
                element = &name;
            }
        }
        if (element == nullptr) {
            return std::nullopt;
        }
        const size_t valueStart = tag + element->size() + 2;
        const size_t valueEnd = text.find('<', valueStart);
        const std::string close = "</" + std::string(*element) + ">";
        if (valueEnd == std::string_view::npos || !text.substr(valueEnd).starts_with(close)) {
            return std::nullopt;
        }
        out.append("<").append(*element).append(">");
        if (!appendSerialisedText(text.substr(valueStart, valueEnd - valueStart), out)) {
            return std::nullopt;
        }
        out += close;
        at = valueEnd + close.size();
    }
}

}  // namespace

std::optional<std::vector<std::string>> plainEntries(std::string_view original) {
    // As the parser is given it: a bare "&" taken as meant.
    const std::string text = escapeBareAmpersands(original);
    const size_t root = text.find("<urlset");
    const size_t rootEnd = text.find('>', root);
    if (root == std::string::npos || rootEnd == std::string::npos ||
        text.substr(0, root).find("<!") != std::string::npos ||
        std::string_view(text).substr(0, rootEnd).find('\r') != std::string::npos) {
        return std::nullopt;
    }
    std::vector<std::string> entries;
    entries.reserve(text.size() / 128);
    size_t at = rootEnd + 1;
    while (true) {
        at = skipBlanks(text, at);
        if (std::string_view(text).substr(at).starts_with("<url>")) {
            std::string entry;
            const auto next = readEntry(text, at + std::string_view("<url>").size(), entry);
            if (!next) {
                return std::nullopt;
            }
            entries.push_back(std::move(entry));
            at = *next;
            continue;
        }
        const std::string_view rest = std::string_view(text).substr(at);
        // Comments between entries, such as the one a scan writes, are no entries.
        if (rest.starts_with("<!--")) {
            const size_t end = rest.find("-->", 4);
            if (end == std::string_view::npos) {
                return std::nullopt;
            }
            at += end + std::string_view("-->").size();
            continue;
        }
        if (!rest.starts_with("</urlset>") ||
            skipBlanks(text, at + std::string_view("</urlset>").size()) != text.size()) {
            return std::nullopt;
        }
        return entries;
    }
}

}  // namespace loomcrest::xmlentries
