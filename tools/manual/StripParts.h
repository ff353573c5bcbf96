#pragma once

#include "Pagination.h"

class QTextDocument;

// What a document that is laid out without pages consists of: lines, rows of tables and pictures, from its
// top down, and what of it belongs together.
std::vector<StripPart> partsOf(const QTextDocument &document);
