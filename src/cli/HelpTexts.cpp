#include "cli/HelpTexts.h"

namespace {

constexpr std::string_view generalHelp =
    R"(Usage: fvqa300-cli [--zoneinfo DIR] [--jobs N] [--quiet] COMMAND [OPTIONS] FILE...
       fvqa300-cli --help | COMMAND --help | --version

Reads data files of gas analysers (.data, .ghg, .zip) without a window. A FILE that is a
folder stands for the data files in it and below, in the order of their names. Links to folders
in it are not followed; a line on standard error names each.

Commands:
  summary    where each block of records comes from, and its time range
  variables  the variables and their units
  messages   what is wrong with the files: checksum errors, parse errors
  series     the points of one variable
  plot       a picture of variables against time
  export     the records, written to a text, TOB1 or diagnostics file

Options:
  --zoneinfo DIR  folder of the compiled time zones (default: zoneinfo beside the program)
  --jobs N        threads that read files (default: one for each core, at most 10)
  --quiet         no progress bar
  --              what follows is no option
  --help, --version

Exit status: 0 when all was done, 1 when something could not be read, found or written,
2 for wrong usage.
)";

constexpr std::string_view summaryHelp = R"(Usage: fvqa300-cli summary FILE...

Prints a block of lines for each block of records, in the order of their times.
)";

constexpr std::string_view variablesHelp = R"(Usage: fvqa300-cli variables FILE...

Prints a line for each variable: its key, a tab, its unit.
)";

constexpr std::string_view messagesHelp = R"(Usage: fvqa300-cli messages FILE...

Prints what is to be said about each file, as "FILE: TEXT". The exit status is 1 when there
are checksum or parse errors, or when a file cannot be read.
)";

constexpr std::string_view seriesHelp =
    R"(Usage: fvqa300-cli series --variable KEY [OPTIONS] FILE...

Prints a line for each point: its time (UTC seconds), a tab, its value. Longer ranges of time
give the points of longer averaging periods; up to 5000 s give the records themselves.

Options:
  --variable KEY    the variable, as the command "variables" names it
  --statistic WHAT  average (default), maximum or minimum of each period
  --from T, --to T  UTC seconds, both included (default: the whole range)
)";

constexpr std::string_view plotHelp =
    R"(Usage: fvqa300-cli plot --variable KEY [--variable KEY]... [--right KEY]... --output PATH
                        [OPTIONS] FILE...

Draws what a plot window shows of these variables, without a display. The path's ending
chooses the format: .png, .svg or .pdf.

Options:
  --variable KEY    a variable for the left axis, as the command "variables" names it
  --right KEY       a variable for the right axis
  --output PATH     the picture; an earlier one is replaced
  --from T, --to T  UTC seconds (default: the whole range)
  --size WxH        pixels, of 96 to the inch (default: 1200x600)
)";

constexpr std::string_view exportHelp =
    R"(Usage: fvqa300-cli export --data INSTRUMENT:TAG --format FORMAT --output PATH [OPTIONS] FILE...

Writes all records of one kind to a file, or to a series of files, as the viewer does.

Options:
  --data INSTRUMENT:TAG  the kind of data: a variable's key up to its second ":"
  --format FORMAT        text, tob1 or diagnostics
  --output PATH          the file, taken as given: no extension is added. It must not be one of
                         the files that are read
  --time-columns MASK    of text: seconds, nanoseconds, date, time, timestamp, offset, joined by
                         commas, or the sum of 1, 2, 4, 8, 16, 32 (default: 3)
  --split SECONDS        begin a new file, named by the local time of its first record, each
                         1800, 3600, 7200, 14400 or 86400 s (UTC; default: 0, one file).
                         Diagnostics are never split
)";

} // namespace

std::string_view helpText(Command command) {
    switch (command) {
    case Command::none:
        break;
    case Command::summary:
        return summaryHelp;
    case Command::variables:
        return variablesHelp;
    case Command::messages:
        return messagesHelp;
    case Command::series:
        return seriesHelp;
    case Command::plot:
        return plotHelp;
    case Command::exportData:
        return exportHelp;
    }
    return generalHelp;
}
