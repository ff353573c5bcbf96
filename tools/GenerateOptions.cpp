#include "tools/GenerateOptions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace {

constexpr std::string_view help =
    R"(Usage: fvqa300-generate --kind KIND (--hours H | --megabytes M | --count N) --output PATH [OPTION]...

Writes data as the analysers write it. The same options give the same bytes on every machine.

  --kind qa330           one QA-330 file: DATA at 10 Hz, DATASTAT, events, diagnostic bits
  --kind qa34xx          one QA-34xx file: 45 value columns at 20 Hz
  --kind archives        half-hour .ghg archives of the QA-34xx kind
  --output PATH          the file to write or, for archives, the folder; what is there is replaced

How much:
  --hours H              length of the plain file, such as 0.25
  --megabytes M          the plain file ends with the line that reaches M * 1,000,000 bytes
  --count N              number of archives

Of what:
  --seed N               another seed, another day (default 1)
  --start EPOCH          first record, UTC seconds since 1970 (default 1559368800, 2019-06-01 in Denver);
                         archives begin at the half-hour at or before it
  --zone NAME            time zone of the local columns (default America/Denver)
  --instrument NAME      the instrument's name (default QA330 or AIU-0412)
  --rate HZ              records a second, a divisor of 1000 up to 100 (default 10 or 20)
  --nameless-every K     leave the instrument's name out of every K-th archive, or with 1 out of the plain file
  --compression LEVEL    of archives, 1 (quick) to 9 (small), default 6

For tests, in each file or archive:
  --blocks N             N header blocks spread evenly, every second one with other columns (default 1)
  --bad-checksums N      damage the checksums of N records, spread evenly (default 0)

  --help                 this text
)";

constexpr std::int64_t defaultStart = 1559368800;
constexpr std::int64_t halfHour = 1800;
constexpr std::int64_t lastSecond = std::numeric_limits<std::uint32_t>::max(); // record times are 32-bit

using Values = std::map<std::string_view, std::string_view>;

constexpr std::string_view optionNames[] = {
    "--kind", "--output",     "--hours", "--megabytes",      "--count",       "--seed",   "--start",
    "--zone", "--instrument", "--rate",  "--nameless-every", "--compression", "--blocks", "--bad-checksums",
};

[[noreturn]] void fail(std::string_view option, std::string_view why) {
    throw UsageError(std::string(option) + ": " + std::string(why));
}

Values collect(std::span<const char *const> arguments) {
    Values values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        const std::size_t equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        if (std::find(std::begin(optionNames), std::end(optionNames), name) == std::end(optionNames)) {
            fail(argument, "no such option");
        }
        std::string_view value;
        if (equals != std::string_view::npos) {
            value = argument.substr(equals + 1);
        } else if (++i < arguments.size()) {
            value = arguments[i];
        } else {
            fail(name, "needs a value");
        }
        if (!values.emplace(name, value).second) {
            fail(name, "given twice");
        }
    }
    return values;
}

template <typename Number>
Number number(std::string_view option, std::string_view text, Number lowest, Number highest) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    // Written so that "nan" is refused too.
    if (error != std::errc() || end != text.data() + text.size() || !(value >= lowest && value <= highest)) {
        fail(option, "not a number in its range: " + std::string(text));
    }
    return value;
}

template <typename Number>
void setNumber(const Values &values, std::string_view option, Number lowest, Number highest, Number &target) {
    if (const auto found = values.find(option); found != values.end()) {
        target = number(option, found->second, lowest, highest);
    }
}

void setText(const Values &values, std::string_view option, std::string &target) {
    const auto found = values.find(option);
    if (found == values.end()) {
        return;
    }
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 32; };
    if (found->second.empty() || std::any_of(found->second.begin(), found->second.end(), isControl)) {
        fail(option, "empty, or holds control characters");
    }
    target = found->second;
}

OutputKind kindOf(const Values &values) {
    const auto found = values.find("--kind");
    if (found == values.end()) {
        fail("--kind", "is needed");
    }
    if (found->second == "qa330") {
        return OutputKind::Qa330;
    }
    if (found->second == "qa34xx") {
        return OutputKind::Qa34xx;
    }
    if (found->second == "archives") {
        return OutputKind::Archives;
    }
    fail("--kind", "qa330, qa34xx or archives, not " + std::string(found->second));
}

void refuse(const Values &values, std::initializer_list<std::string_view> options, std::string_view why) {
    for (const std::string_view option : options) {
        if (values.contains(option)) {
            fail(option, why);
        }
    }
}

void setLength(const Values &values, GenerateOptions &options) {
    if (options.kind == OutputKind::Archives) {
        refuse(values, {"--hours", "--megabytes"}, "archives take --count");
        if (!values.contains("--count")) {
            fail("--count", "is needed for archives");
        }
        setNumber<std::uint64_t>(values, "--count", 1, 1000000, options.archives.count);
        return;
    }
    refuse(values, {"--count", "--compression"}, "only for archives");
    if (values.contains("--hours") == values.contains("--megabytes")) {
        fail("--hours", "exactly one of --hours and --megabytes is needed");
    }
    if (values.contains("--hours")) {
        double hours = 0;
        setNumber(values, "--hours", 1e-6, 200000.0, hours);
        options.length = RunLength::ofSlots(
            static_cast<std::uint64_t>(std::llround(hours * 3600 * options.recording.rate)));
    } else {
        double megabytes = 0;
        setNumber(values, "--megabytes", 1e-6, 100000.0, megabytes);
        options.length = RunLength::ofBytes(static_cast<std::uint64_t>(std::llround(megabytes * 1e6)));
    }
}

} // namespace

std::string_view generateHelp() {
    return help;
}

GenerateOptions parseGenerateOptions(std::span<const char *const> arguments) {
    GenerateOptions options;
    const auto isHelp = [](const char *argument) { return std::string_view(argument) == "--help"; };
    if (std::any_of(arguments.begin(), arguments.end(), isHelp)) {
        options.help = true;
        return options;
    }
    const Values values = collect(arguments);
    options.kind = kindOf(values);
    const bool isQa330 = options.kind == OutputKind::Qa330;

    RecordingOptions &recording = options.recording;
    recording.start = defaultStart;
    recording.rate = isQa330 ? 10 : 20;
    recording.instrument = isQa330 ? "QA330" : "AIU-0412";
    options.zone = "America/Denver";

    setNumber<std::uint64_t>(values, "--seed", 0, std::numeric_limits<std::uint64_t>::max(), recording.seed);
    setNumber<std::int64_t>(values, "--start", 0, lastSecond, recording.start);
    setNumber<unsigned>(values, "--rate", 1, 100, recording.rate);
    if (1000 % recording.rate != 0) {
        fail("--rate", "must divide 1000");
    }
    setNumber<unsigned>(values, "--blocks", 1, 1000, recording.blocks);
    setNumber<std::uint64_t>(values, "--bad-checksums", 0, 1000000, recording.badChecksums);
    setNumber<std::uint64_t>(values, "--nameless-every", 1, 1000000, options.archives.namelessEvery);
    setNumber<int>(values, "--compression", 1, 9, options.archives.compression);
    setText(values, "--zone", options.zone);
    setText(values, "--instrument", recording.instrument);
    if (options.kind == OutputKind::Archives) {
        recording.start -= recording.start % halfHour;
        if (recording.instrument.find('/') != std::string::npos) {
            fail("--instrument", "names the archives and cannot hold a slash");
        }
    }
    setLength(values, options);
    setText(values, "--output", options.output);
    if (options.output.empty()) {
        fail("--output", "is needed");
    }
    return options;
}
