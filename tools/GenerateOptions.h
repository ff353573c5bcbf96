#pragma once

#include "tools/ArchiveWriter.h"
#include "tools/DataFileWriter.h"
#include "tools/RunLength.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

// A command line that cannot be followed; the text names the option.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class OutputKind { Qa330, Qa34xx, Archives };

// What the command line asks for.
struct GenerateOptions {
    bool help = false;
    OutputKind kind = OutputKind::Qa330;
    RecordingOptions recording;
    RunLength length = RunLength::ofSlots(0); // of a plain file
    ArchiveOptions archives;
    std::string zone;
    std::string output;
};

// Reads the arguments behind the program's name. Throws UsageError.
GenerateOptions parseGenerateOptions(std::span<const char *const> arguments);

std::string_view generateHelp();
