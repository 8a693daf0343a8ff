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
    std::unique_ptr<pcre2_compile_context, CompileContextDeleter> context(
        pcre2_compile_context_create(nullptr));
    if (!context) {
        return;
    }
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    uint32_t options = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
    if (caseMode == Case::Insensitive) {
        options |= PCRE2_CASELESS;
    }
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                              &errorCode, &errorOffset, context.get()));
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
    const int result = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(subject.data()),
                                   subject.size(), 0, 0, data.get(), nullptr);
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

}  // namespace loomcrest
