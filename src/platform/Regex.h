#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct pcre2_real_code_8;

namespace loomcrest {

// One match: group 0 is the whole match; a group that did not take part is empty.
class RegexMatch {
public:
    explicit RegexMatch(std::vector<std::optional<std::string>> groups)
        : groups_(std::move(groups)) {}

    const std::string& whole() const { return *groups_.front(); }
    // Text of capture `index`, or nothing when the group did not take part.
    std::optional<std::string> capture(size_t index) const {
        return index < groups_.size() ? groups_[index] : std::nullopt;
    }

private:
    std::vector<std::optional<std::string>> groups_;
};

// A compiled PCRE2 pattern over UTF-8 text: case-sensitive unless asked otherwise,
// quantifiers greedy unless written lazy, and "." matching anything but a line feed.
// A compiled pattern may be shared between threads.
class Regex {
public:
    enum class Case { Sensitive, Insensitive };

    explicit Regex(std::string_view pattern, Case caseMode = Case::Sensitive);
    Regex(Regex&&) noexcept;
    Regex& operator=(Regex&&) noexcept;
    ~Regex();

    bool isValid() const { return code_ != nullptr; }
    std::optional<RegexMatch> firstMatch(std::string_view subject) const;
    // Every match replaced by `replacement`, taken literally.
    std::string replaceAll(std::string_view subject, std::string_view replacement) const;

private:
    struct CodeDeleter {
        void operator()(pcre2_real_code_8* code) const;
    };
    std::unique_ptr<pcre2_real_code_8, CodeDeleter> code_;
};

}  // namespace loomcrest
