#include "crawler/PageList.h"

namespace loomcrest {

void PageList::append(std::string url) {
    urls_.push_back(std::move(url));
    index_.insert(urls_.back());
}

void PageList::clear() {
    index_.clear();
    urls_.clear();
}

}  // namespace loomcrest
