#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// The style block of an HTML sitemap layout, read and rewritten as text: the rule
// ".zplPageTitle a { ... }" styles page titles, ".zplPageLink a { ... }" links, and four
// one-line rules per class (active, link, visited, hover) set their underline.
namespace loomcrest::htmlstyle {

enum class Group { PageTitle, PageLink };

inline constexpr std::array<std::string_view, 7> kFontSizes = {"0.8em", "0.9em", "1em",  "1.1em",
                                                               "1.2em", "1.3em", "1.4em"};
inline constexpr std::array<std::string_view, 6> kFontFaces = {
    "Arial, Helvetica, sans-serif",
    "Times New Roman, Times, serif",
    "Courier New, Courier, mono",
    "Georgia, Times New Roman, Times, serif",
    "Verdana, Arial, Helvetica, sans-serif",
    "Geneva, Arial, Helvetica, sans-serif"};

// The three underline choices, numbered as the window's underline buttons are.
enum class Underline { OnHover = 0, None = 1, Always = 2 };

// The properties of one group as the style block holds them.
struct GroupStyle {
    std::string colour;
    std::string fontFamily;
    std::string fontSize;
    std::string fontWeight;
    std::string fontStyle;
    // Nothing when the hover and visited rules hold another combination.
    std::optional<Underline> underline;
};

GroupStyle readGroupStyle(std::string_view html, Group group);

// Replaces every occurrence of `from` in the layout's text by `to`.
using Replace = std::function<void(std::string_view from, std::string_view to)>;
// Rewrites one property line of the group's rule in `html` through `replace`, e.g.
// ("font-size:.*;", "font-size: 1em;").
void rewriteProperty(const std::string& html, Group group, std::string_view propertyPattern,
                     std::string_view newProperty, const Replace& replace);
// Rewrites the group's four underline rules, one after the other, in `html` through
// `replace`, each found in the text the one before left.
void rewriteUnderline(const std::string& html, Group group, Underline mode, const Replace& replace);

struct Rgb {
    double red = 0;
    double green = 0;
    double blue = 0;
    bool operator==(const Rgb&) const = default;
};

// "#RRGGBB" in upper case, each component times 255 truncated.
std::string hexValue(const Rgb& colour);
// The colour of a text holding exactly six hexadecimal digits after an optional "#" and
// leading blanks; nothing otherwise.
std::optional<Rgb> colourFromHex(std::string_view text);
// Whether the hex field's pattern finds six hexadecimal digits anywhere in the text.
bool containsHexColour(std::string_view text);

}  // namespace loomcrest::htmlstyle
