#include "platform/LargeText.h"

#include <sys/mman.h>

#include <cstdint>

namespace loomcrest {

namespace {

constexpr size_t kHugePage = size_t{2} * 1024 * 1024;

}  // namespace

void reserveLargeText(std::string& text, size_t size) {
    if (size <= text.capacity()) {
        return;
    }
    // Room to spare, so that an edit that lengthens the text a little stays in this buffer.
    size += size / 64;
    text.reserve(size);
    if (size < 2 * kHugePage) {
        return;
    }
    // The whole huge pages inside the new buffer; advice only, so a refusal changes nothing.
    const auto begin = reinterpret_cast<uintptr_t>(text.data());
    const uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
    const uintptr_t last = (begin + size) & ~(kHugePage - 1);
    if (first < last) {
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
    }
}

void assignLargeText(std::string& to, std::string_view from) {
    if (to.capacity() < from.size()) {
        std::string().swap(to);
        reserveLargeText(to, from.size());
    }
    to.assign(from);
}

}  // namespace loomcrest
