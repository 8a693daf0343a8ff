#define PCRE2_CODE_UNIT_WIDTH 8
#include "platform/Regex.h"

#include <pcre2.h>

namespace loomcrest {

namespace {

struct CompileContextDeleter {
    void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
};

struct MatchDataDeleter {
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};

}  // namespace

void Regex::CodeDeleter::operator()(pcre2_code* code) const {
    pcre2_code_free(code);
}

Regex::Regex(std::string_view pattern, Case caseMode) {
    compile(pattern, PCRE2_UTF | PCRE2_MATCH_INVALID_UTF |
                         (caseMode == Case::Insensitive ? PCRE2_CASELESS : 0U));
}

void Regex::compile(std::string_view pattern, uint32_t options) {
    std::unique_ptr<pcre2_compile_context, CompileContextDeleter> context(
        pcre2_compile_context_create(nullptr));
    if (!context) {
        return;
    }
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                              &errorCode, &errorOffset, context.get()));
    if (code_) {
        // Where machine code cannot be made, the interpreter matches instead.
        pcre2_jit_compile(code_.get(), PCRE2_JIT_COMPLETE);
    }
}

int Regex::match(std::string_view subject, size_t start, pcre2_match_data* data) const {
    const auto* bytes = reinterpret_cast<PCRE2_SPTR>(subject.data());
    const int result = pcre2_match(code_.get(), bytes, subject.size(), start, 0, data, nullptr);
    if (result == PCRE2_ERROR_JIT_STACKLIMIT) {
        return pcre2_match(code_.get(), bytes, subject.size(), start, PCRE2_NO_JIT, data, nullptr);
    }
    return result;
}

Regex::Regex(Regex&&) noexcept = default;
Regex& Regex::operator=(Regex&&) noexcept = default;
Regex::~Regex() = default;

std::optional<RegexMatch> Regex::firstMatch(std::string_view subject) const {
    if (!code_) {
        return std::nullopt;
    }
    std::unique_ptr<pcre2_match_data, MatchDataDeleter> data(
        pcre2_match_data_create_from_pattern(code_.get(), nullptr));
    if (!data) {
        return std::nullopt;
    }
    const int result = match(subject, 0, data.get());
    if (result <= 0) {
        return std::nullopt;
    }
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data.get());
    const uint32_t pairs = pcre2_get_ovector_count(data.get());
    std::vector<std::optional<std::string>> groups;
    groups.reserve(pairs);
    for (uint32_t i = 0; i < pairs; ++i) {
        const PCRE2_SIZE start = offsets[2 * i];
        const PCRE2_SIZE end = offsets[(2 * i) + 1];
        if (start == PCRE2_UNSET || i >= static_cast<uint32_t>(result)) {
            groups.emplace_back(std::nullopt);
        } else {
            groups.emplace_back(std::string(subject.substr(start, end - start)));
        }
    }
    return RegexMatch(std::move(groups));
}

std::optional<MatchSpan> Regex::find(std::string_view subject, size_t start) const {
    if (!code_ || start > subject.size()) {
        return std::nullopt;
    }
    std::unique_ptr<pcre2_match_data, MatchDataDeleter> data(
        pcre2_match_data_create_from_pattern(code_.get(), nullptr));
    if (!data || match(subject, start, data.get()) <= 0) {
        return std::nullopt;
    }
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data.get());
    return MatchSpan{offsets[0], offsets[1]};
}

std::string Regex::replaceAll(std::string_view subject, std::string_view replacement) const {
    if (!code_) {
        return std::string(subject);
    }
    std::string result;
    size_t start = 0;
    std::unique_ptr<pcre2_match_data, MatchDataDeleter> data(
        pcre2_match_data_create_from_pattern(code_.get(), nullptr));
    while (data && start <= subject.size()) {
        const int found = match(subject, start, data.get());
        if (found <= 0) {
            break;
        }
        const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data.get());
        result.append(subject.substr(start, offsets[0] - start)).append(replacement);
        if (offsets[1] == offsets[0]) {
            // An empty match: keep the next character and move past it.
            if (offsets[1] < subject.size()) {
                result += subject[offsets[1]];
            }
            start = offsets[1] + 1;
        } else {
            start = offsets[1];
        }
    }
    if (start < subject.size()) {
        result.append(subject.substr(start));
    }
    return result;
}

}  // namespace loomcrest
