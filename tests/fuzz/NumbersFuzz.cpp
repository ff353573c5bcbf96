// Numbers and fields: whatever is read or written in a fast way gives, bit for bit, what the plain way gives.

#include "FuzzCheck.h"
#include "FuzzInput.h"
#include "data/AlignedDoubles.h"
#include "data/ClockLines.h"
#include "data/EveryLevel.h"
#include "data/LibraryNumbers.h"
#include "data/NumberRuns.h"
#include "data/PlainFields.h"
#include "data/RecordKernels.h"
#include "data/ShortDecimal.h"
#include "export/GeneralNumber.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <iterator>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t longestText = 2000;

void checkSingleNumbers(std::string_view text) {
    // From every place in a short text, and from each field of a long one.
    for (std::size_t from = 0; from <= text.size(); ++from) {
        if (from > 40 && text[from - 1] != '\t') {
            continue;
        }
        const std::string rest(text.substr(from));
        require(readsAsStrtof(rest), "a float is read as strtof reads it");
        require(readsAsStrtoll(rest), "an integer is read as strtoll reads it");
    }
}

// Passing over numbers moves as far as reading them.
void checkPassing(std::string_view line, std::ptrdiff_t from, std::uint32_t count) {
    const HeapText text(line);
    const NumbersFound expected = readOneByOne(text, from, count);
    TextCursor cursor{text.begin() + from, text.end()};
    PlainFields plain(cursor);
    const bool good = passFloats(cursor, count, plain);
    require(good == expected.good, "numbers are passed over where they can be read");
    require(!good || cursor.at - text.begin() == expected.end, "as far as they are read");
}

bool isDecimalOfEightBytes(std::string_view field) {
    field.remove_prefix(field.starts_with('-') ? 1 : 0);
    const auto points = std::count(field.begin(), field.end(), '.');
    return field.size() <= 8 && points <= 1 && field.size() > static_cast<std::size_t>(points) &&
           field.find_first_not_of("0123456789.") == std::string_view::npos;
}

void checkConversion(const HeapText &text, std::ptrdiff_t from, const FieldEnds &fields,
                     std::uint32_t count) {
    std::array<double, FieldEnds::most> values{};
    const char *const begin = text.begin() + from;
    const std::uint64_t leftOut = recordKernels().convertFields(begin, fields, count, values.data());
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string_view field(begin + fields.ends[i] + 1,
                                     static_cast<std::size_t>(fields.ends[i + 1] - fields.ends[i] - 1));
        if ((leftOut >> i & 1U) != 0) {
            require(!isDecimalOfEightBytes(field) || field.size() > 8 || !canTakeEightBytes,
                    "a short decimal is not left out");
            continue;
        }
        const auto number = readFloatFrom(field);
        require(number.length == static_cast<std::ptrdiff_t>(field.size()),
                "a field that is no number is left out");
        require(bitsOf(values[i]) == bitsOf(static_cast<double>(number.value)),
                "a field that is not left out reads as it does alone");
    }
}

void checkKernels(std::string_view line, std::ptrdiff_t from, std::uint32_t wanted) {
    const HeapText text(line);
    const char *const begin = text.begin() + from;
    FieldEnds expected;
    const std::uint32_t count = plainKernels()->findFields(text.begin(), begin, text.end(), wanted, expected);
    const std::uint8_t sum = plainKernels()->sumBytes(begin, text.end());
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        FieldEnds fields;
        std::fill(std::begin(fields.ends), std::end(fields.ends), -7); // nothing that is left from before
        require(recordKernels().findFields(text.begin(), begin, text.end(), wanted, fields) == count,
                "every level finds as many fields");
        require(std::equal(fields.ends, fields.ends + count + 1, expected.ends),
                "every level finds the same fields");
        require(recordKernels().sumBytes(begin, text.end()) == sum, "every level sums up the same bytes");
        if (from >= 8 && count > 0) {
            checkConversion(text, from, fields, count);
        }
    }
}

void checkShortDecimal(std::string_view field) {
    const std::string room = std::string(8, '\t') + std::string(field);
    const HeapText text(room);
    ShortDecimal decimal;
    if (!field.empty() && field.size() <= 8 &&
        readShortDecimal(text.end(), static_cast<unsigned>(field.size()), decimal)) {
        const auto number = readFloatFrom(field);
        require(number.length == static_cast<std::ptrdiff_t>(field.size()) &&
                    bitsOf(valueOf(decimal)) == bitsOf(number.value),
                "a short decimal has the value of its text");
    }
}

// Columns of sums, and what is added to them record by record.
class Columns {
public:
    explicit Columns(std::size_t count) : count_(count) {
        for (AlignedDoubles &part : parts_) {
            part = AlignedDoubles(count);
        }
    }

    void add(const RecordKernels &kernels, const double *values) {
        kernels.addColumns(count_, values,
                           {parts_[0].data(), parts_[1].data(), parts_[2].data(), parts_[3].data()});
    }
    bool isSameAs(const Columns &other) const {
        for (std::size_t part = 0; part < parts_.size(); ++part) {
            if (!std::equal(parts_[part].data(), parts_[part].data() + count_, other.parts_[part].data(),
                            isSameNumber)) {
                return false;
            }
        }
        return true;
    }

private:
    std::size_t count_;
    std::array<AlignedDoubles, 4> parts_;
};

void checkSums(const std::vector<double> &values, std::size_t columns) {
    if (columns == 0) {
        return;
    }
    Columns expected(columns);
    for (std::size_t i = 0; i + columns <= values.size(); i += columns) {
        expected.add(*plainKernels(), values.data() + i);
    }
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        Columns added(columns);
        for (std::size_t i = 0; i + columns <= values.size(); i += columns) {
            added.add(recordKernels(), values.data() + i);
        }
        require(added.isSameAs(expected), "every level adds and widens the same");
    }
}

void checkWriting(double value) {
    static std::ostringstream stream = [] {
        std::ostringstream made;
        made.imbue(std::locale::classic());
        return made;
    }();
    stream.str({});
    stream << (std::isnan(value) ? std::fabs(value) : value);
    std::array<char, generalNumberRoom> room{};
    const char *const end = writeGeneral(room.data(), value);
    require(end <= room.data() + room.size(), "a number fits its room");
    require(std::string_view(room.data(), static_cast<std::size_t>(end - room.data())) == stream.str(),
            "a number is written as a stream writes it");
}

void checkRow(const std::vector<double> &values) {
    std::string expected;
    for (const double value : values) {
        std::array<char, generalNumberRoom> room{};
        expected.append(room.data(), writeGeneral(room.data(), value)) += '\t';
    }
    for (const VectorLevel level : EveryLevel::available()) {
        useVectorLevel(level);
        std::vector<char> room(values.size() * generalNumberRoom);
        const char *const end = writeGeneralFields(room.data(), values);
        require(std::string_view(room.data(), static_cast<std::size_t>(end - room.data())) == expected,
                "every level writes a row as its numbers alone");
    }
}

std::vector<double> numbersIn(std::string_view bytes, bool areSingles) {
    FuzzInput input(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    std::vector<double> values;
    while (!input.isUsedUp()) {
        values.push_back(areSingles
                             ? std::bit_cast<float>(static_cast<std::uint32_t>(input.number(sizeof(float))))
                             : std::bit_cast<double>(input.number(sizeof(double))));
    }
    return values;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    const EveryLevel levels;
    FuzzInput input(bytes, size);
    const std::size_t start = input.byte();
    const std::uint32_t count = input.byte();
    const std::string_view text = input.text(longestText);
    const auto from = static_cast<std::ptrdiff_t>(std::min(start, text.size()));

    checkSingleNumbers(text.substr(0, 300));
    require(readsAsOneByOne(text, from, count), "numbers are read together as they are one by one");
    checkPassing(text, from, count);
    checkKernels(text, from, 1 + count % FieldEnds::most);
    checkShortDecimal(text.substr(0, text.find('\t')));
    require(readsAsWithBlanks(std::string(text)), "plain dates and times are read as any others");
    for (const bool areSingles : {false, true}) {
        const std::vector<double> values = numbersIn(text, areSingles);
        for (const double value : values) {
            checkWriting(value);
        }
        checkRow(values);
        checkSums(values, count % 40);
    }
    return 0;
}
