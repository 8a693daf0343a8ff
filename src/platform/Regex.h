#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct pcre2_real_code_8;
struct pcre2_real_match_data_8;

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

// Where a match lies in the subject: [begin, end).
struct MatchSpan {
    size_t begin = 0;
    size_t end = 0;
};

// A compiled PCRE2 pattern over UTF-8 text: case-sensitive unless asked otherwise,
// quantifiers greedy unless written lazy, and "." matching anything but a line feed.
// Patterns are compiled to machine code where the platform allows, so a search costs one
// pass over the subject. A compiled pattern may be shared between threads.
class Regex {
public:
    enum class Case { Sensitive, Insensitive };

    explicit Regex(std::string_view pattern, Case caseMode = Case::Sensitive);
    Regex(Regex&&) noexcept;
    Regex& operator=(Regex&&) noexcept;
    ~Regex();

    bool isValid() const { return code_ != nullptr; }
    std::optional<RegexMatch> firstMatch(std::string_view subject) const;
    // The first match that starts at or after `start`, as offsets into `subject`.
    std::optional<MatchSpan> find(std::string_view subject, size_t start = 0) const;
    // Every match replaced by `replacement`, taken literally.
    std::string replaceAll(std::string_view subject, std::string_view replacement) const;

private:
    void compile(std::string_view pattern, uint32_t options);
    // pcre2_match, falling back to the interpreter when compiled code runs out of stack.
    int match(std::string_view subject, size_t start, pcre2_real_match_data_8* data) const;

    struct CodeDeleter {
        void operator()(pcre2_real_code_8* code) const;
    };
    std::unique_ptr<pcre2_real_code_8, CodeDeleter> code_;
};

}  // namespace loomcrest
