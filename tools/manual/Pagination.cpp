#include "Pagination.h"

#include <algorithm>

namespace {

// Fills one page after the other.
class Paginator {
public:
    Paginator(const std::vector<StripPart> &parts, double pageHeight) : parts_(parts), height_(pageHeight) {}

    std::vector<StripPage> run() {
        std::vector<StripPage> pages;
        for (std::size_t first = 0; first < parts_.size();) {
            const std::size_t end = endOfPage(first);
            pages.push_back(pageOf(first, end));
            first = end;
        }
        return pages;
    }

private:
    double headerHeight(std::size_t first) const {
        const auto &header = parts_[first].repeatedHeader;
        return header ? parts_[*header + 1].top - parts_[*header].top : 0;
    }

    // Behind the last part of the page that begins with `first`.
    std::size_t endOfPage(std::size_t first) const {
        const double pageEnd = parts_[first].top + height_ - headerHeight(first);
        std::size_t end = first + 1;
        while (end < parts_.size() && parts_[end].bottom <= pageEnd &&
               parts_[end].top + parts_[end].wantedRoom <= pageEnd) {
            ++end;
        }
        if (end == parts_.size()) {
            return end;
        }
        std::size_t kept = end;
        while (kept > first + 1 && parts_[kept - 1].keepsWithNext) {
            --kept;
        }
        return parts_[kept - 1].keepsWithNext ? end : kept;
    }

    StripPage pageOf(std::size_t first, std::size_t end) const {
        StripPage page;
        if (const auto &header = parts_[first].repeatedHeader) {
            page.push_back({parts_[*header].top, parts_[*header + 1].top});
        }
        page.push_back({parts_[first].top, parts_[end - 1].bottom});
        return page;
    }

    const std::vector<StripPart> &parts_;
    double height_;
};

} // namespace

std::vector<StripPage> paginate(const std::vector<StripPart> &parts, double pageHeight) {
    return Paginator(parts, pageHeight).run();
}
