#pragma once

#include <string>
#include <string_view>

// The program's own path from argument 0 of the process: argument 0 itself when it holds a separator; when
// the program was started through PATH, the path that was found there, with links resolved.
std::string executablePath(const std::string &argument0);

// The zone folder beside the executable: the path cut behind its last backslash or, when it has none, behind
// its last "/", with "zoneinfo" appended.
std::string zoneDirectoryFor(std::string_view executable);
