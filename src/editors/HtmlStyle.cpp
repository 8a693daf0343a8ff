#include "editors/HtmlStyle.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cstdio>

#include "platform/Regex.h"
#include "platform/Text.h"

namespace loomcrest::htmlstyle {

namespace {

std::string className(Group group) {
    return group == Group::PageTitle ? ".zplPageTitle" : ".zplPageLink";
}

// The whole rule, lazily up to its first closing brace across lines.
std::optional<std::string> rule(std::string_view html, Group group) {
    static const Regex titleRule(".zplPageTitle a {[^>]*?}");
    static const Regex linkRule(".zplPageLink a {[^>]*?}");
    const auto match = (group == Group::PageTitle ? titleRule : linkRule).firstMatch(html);
    return match ? std::optional<std::string>(match->whole()) : std::nullopt;
}

std::string capture(std::string_view text, std::string_view pattern) {
    const auto match = Regex(pattern).firstMatch(text);
    return match ? match->capture(1).value_or("") : std::string();
}

std::string wholeMatch(std::string_view text, std::string_view pattern) {
    const auto match = Regex(pattern).firstMatch(text);
    return match ? match->whole() : std::string();
}

std::string stateRule(Group group, std::string_view state, std::string_view value) {
    return className(group) + " a:" + std::string(state) +
           " { text-decoration:" + std::string(value) + " }";
}

}  // namespace

GroupStyle readGroupStyle(std::string_view html, Group group) {
    GroupStyle style;
    const std::string text = rule(html, group).value_or("");
    style.colour = capture(text, "color: (.*?);");
    style.fontFamily = capture(text, "font-family: (.*?);");
    style.fontSize = capture(text, "font-size: (.*?);");
    style.fontWeight = capture(text, "font-weight: (.*?);");
    style.fontStyle = capture(text, "font-style: (.*?);");

    const std::string hover =
        wholeMatch(html, className(group) + " a:hover { text-decoration:.*? }");
    const std::string visited =
        wholeMatch(html, className(group) + " a:visited { text-decoration:.*? }");
    const auto is = [&](const std::string& found, std::string_view state, std::string_view value) {
        return found == stateRule(group, state, value);
    };
    if (is(hover, "hover", "none") && is(visited, "visited", "none")) {
        style.underline = Underline::None;
    } else if (is(hover, "hover", "underline") && is(visited, "visited", "underline")) {
        style.underline = Underline::Always;
    } else if (is(hover, "hover", "underline") && is(visited, "visited", "none")) {
        style.underline = Underline::OnHover;
    }
    return style;
}

void rewriteProperty(const std::string& html, Group group, std::string_view propertyPattern,
                     std::string_view newProperty, const Replace& replace) {
    const auto oldRule = rule(html, group);
    if (!oldRule) {
        return;
    }
    const auto property = Regex(propertyPattern).firstMatch(*oldRule);
    if (!property) {
        return;
    }
    replace(*oldRule, replaceAll(*oldRule, property->whole(), newProperty));
}

void rewriteUnderline(const std::string& html, Group group, Underline mode,
                      const Replace& replace) {
    const bool always = mode == Underline::Always;
    for (const std::string_view state : {"active", "link", "visited", "hover"}) {
        const std::string value =
            always || (mode == Underline::OnHover && state == "hover") ? "underline" : "none";
        // "All" searches greedily, the other two lazily.
        const std::string pattern =
            className(group) + " a:" + std::string(state) +
            (always ? " { text-decoration:.* }" : " { text-decoration:.*? }");
        if (const auto found = Regex(pattern).firstMatch(html)) {
            replace(found->whole(), stateRule(group, state, value));
        }
    }
}

std::string hexValue(const Rgb& colour) {
    const auto component = [](double value) { return static_cast<unsigned>(value * 255.0); };
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", component(colour.red),
                  component(colour.green), component(colour.blue));
    return text.data();
}

std::optional<Rgb> colourFromHex(std::string_view text) {
    if (text.starts_with('#')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0) {
        text.remove_prefix(1);
    }
    size_t digits = 0;
    while (digits < text.size() && std::isxdigit(static_cast<unsigned char>(text[digits])) != 0) {
        ++digits;
    }
    if (digits != 6) {
        return std::nullopt;
    }
    unsigned long value = 0;
    std::from_chars(text.data(), text.data() + 6, value, 16);
    return Rgb{static_cast<double>((value >> 16) & 0xFF) / 255.0,
               static_cast<double>((value >> 8) & 0xFF) / 255.0,
               static_cast<double>(value & 0xFF) / 255.0};
}

bool containsHexColour(std::string_view text) {
    static const Regex pattern("(#?[A-Fa-f0-9]{3}([A-Fa-f0-9]){3})");
    return pattern.firstMatch(text).has_value();
}

}  // namespace loomcrest::htmlstyle
