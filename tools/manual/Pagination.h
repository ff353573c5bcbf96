#pragma once

#include <optional>
#include <vector>

// Cutting a long text that is laid out on one endless strip into pages. Lengths are the strip's own units.

// What is never cut: a line of text, a row of a table, a picture. Strips are made of these from top to
// bottom.
struct StripPart {
    double top = 0;
    double bottom = 0;          // of what is drawn; the next part may begin further down
    bool keepsWithNext = false; // a heading, a picture above its caption, all but the last lines of a block
    double wantedRoom = 0;      // begins a page where less is left, as a chapter does
    // The first part of the table's header that is repeated when a page begins with this one.
    std::optional<std::size_t> repeatedHeader;
};

struct StripRange {
    double top = 0;
    double bottom = 0;
};

// What stands on one page, from its top down.
using StripPage = std::vector<StripRange>;

// Every part is on one page, whole; a part that is higher than a page has one of its own. Parts that are to
// be kept together are, unless they are higher than a page.
std::vector<StripPage> paginate(const std::vector<StripPart> &parts, double pageHeight);
