#pragma once

#include "data/Record.h"

#include <cstdint>
#include <string>
#include <string_view>

// Names of export files: paths in UTF-8, of which only the ends are looked at.

// `name` with `extension` behind it, unless it ends with it already (in this letter case).
std::string withExtension(std::string name, std::string_view extension);
// `name` with the extension of another file type: `before` is taken off, where it stands, and `after` put on.
std::string withExtensionChanged(std::string name, std::string_view before, std::string_view after);

// The name to propose for the data `item` (instrument ":" tag), in the folder of `currentName`.
std::string proposedName(std::string_view item, std::string_view currentName, std::string_view extension);

// The target cut at its last ".", wherever in the path that stands.
struct TargetParts {
    std::string_view stem;
    std::string_view extension; // with its "."; empty without one
};
TargetParts splitTarget(std::string_view target);

// The name of the piece of a split export that begins with `first`: "flux-2021-06-30T1330.txt", without the
// time for pieces of a day or more. Local time.
std::string pieceName(std::string_view target, const RecordStamp &first, std::int32_t splitPeriod);
// The same for the `number`th piece of one export that has this name: "flux-2021-06-30T1330-2.txt". The first
// has none.
std::string numberedName(std::string_view name, unsigned number);

// The time, UTC seconds, at which the piece that begins at `utcSeconds` ends.
std::uint64_t pieceEnd(std::uint32_t utcSeconds, std::int32_t splitPeriod);
