#pragma once

#include "cli/Arguments.h"

class Output;
class StandardError;

// Runs the command that `arguments` ask for on their files. Results go to `output`, what fails to std::cerr,
// a progress bar to `standardError`. Throws OutputError.
void runCommand(const Arguments &arguments, Output &output, StandardError &standardError);
