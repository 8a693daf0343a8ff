#include "crawler/PageList.h"

namespace loomcrest {

void PageList::append(std::string url) {
    urls_.push_back(std::move(url));
    index_.try_emplace(urls_.back(), urls_.size() - 1);
}

void PageList::clear() {
    index_.clear();
    urls_.clear();
}

}  // namespace loomcrest
