#pragma once

#include "cli/Arguments.h"

#include <string_view>

// What --help prints: for Command::none about the whole program.
std::string_view helpText(Command command);
