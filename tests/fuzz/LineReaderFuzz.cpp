// Lines and their offsets follow from the bytes alone, however a device hands them out; what a device cannot
// give is told.

#include "FuzzCheck.h"
#include "FuzzInput.h"
#include "loading/support/ReaderBytes.h"
#include "loading/support/ReadingCheck.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The text of an input: its bytes as they are, but for two marks, a few of each, that stand for what no short
// input could hold.
class ExpandedText {
public:
    // In memory that is kept, as getting it takes longer than filling it. Of one text at a time.
    explicit ExpandedText(FuzzInput &input) : text_(room()) {
        text_.clear();
        while (!input.isUsedUp()) {
            take(static_cast<char>(input.byte()), input);
        }
    }

    std::string_view text() const { return text_; }

private:
    static constexpr char toReadBoundary = '\xFE';
    static constexpr char longLine = '\xFD';

    void take(char c, FuzzInput &input) {
        if (c == toReadBoundary && boundaries_ < 2) {
            ++boundaries_;
            fillUpTo(static_cast<std::ptrdiff_t>(boundaries_ * piece) - 1000 +
                     static_cast<std::ptrdiff_t>(input.number(2) % 2000));
        } else if (c == longLine && longLines_ < 2) {
            ++longLines_;
            text_.append(limit - 128 + input.byte(), 'x');
        } else {
            text_ += c;
        }
    }

    // With lines of many lengths.
    void fillUpTo(std::ptrdiff_t size) {
        for (std::size_t i = 0; static_cast<std::ptrdiff_t>(text_.size()) < size; ++i) {
            const auto left = static_cast<std::size_t>(size) - text_.size();
            text_.append(std::min(left - 1, i * i % 30011), 'y').append(1, '\n');
        }
    }

    static std::string &room() {
        static std::string kept;
        return kept;
    }

    std::string &text_;
    std::size_t boundaries_ = 0;
    std::size_t longLines_ = 0;
};

// The lines that come, by text and true offset.
void checkLines(ChunkLineReader &reader, const std::vector<ReferenceLine> &lines) {
    for (const ReferenceLine &line : lines) {
        require(reader.nextLine(), "every line comes");
        require(reader.line() == line.text, "as it is");
        require(trueOffset(reader) == line.trueOffset, "and from where it is");
    }
    require(!reader.nextLine() && !reader.nextLine(), "the end is final");
}

void checkReading(std::string_view text, const PiecewiseDevice::Behaviour &behaviour, std::size_t start) {
    ChunkLineReader reader;
    require(openBytes(reader, text, behaviour, start), "a device is opened");
    require(reader.size() == static_cast<qint64>(text.size()), "its size is known");
    require(readsByTheRules(reader, text, start), "lines come by the rules");
}

void checkJump(std::string_view text, const PiecewiseDevice::Behaviour &behaviour, std::uint64_t offset,
               std::size_t linesBefore) {
    const ReferenceReading reference = referenceReading(text);
    if (reference.endsAtLongLine) {
        return; // a jump may pass over the line that ends the reading
    }
    ChunkLineReader reader;
    openBytes(reader, text, behaviour);
    linesBefore = std::min(linesBefore, reference.lines.size());
    for (std::size_t i = 0; i < linesBefore; ++i) {
        require(reader.nextLine(), "every line comes before a jump");
    }
    if (linesBefore > 0 && reference.lines[linesBefore - 1].trueOffset >= offset) {
        return; // what has been read does not come again
    }
    reader.jumpTo(offset);
    require(givesAllLinesFrom(reader, reference.lines, offset), "a jump loses no line behind it");
}

void checkSkip(std::string_view text, const PiecewiseDevice::Behaviour &behaviour, std::size_t start,
               std::size_t count) {
    ChunkLineReader reader;
    openBytes(reader, text, behaviour, start);
    const bool isSkipped = reader.skip(static_cast<qint64>(count));
    require(!isSkipped || start + count <= text.size(), "no more is skipped than there is");
    const std::size_t from = std::min(start + (isSkipped ? count : 0), text.size());
    checkLines(reader, referenceReading(text, from).lines);
}

// A device that fails, or ends, at `end`.
void checkEarlyEnd(std::string_view text, PiecewiseDevice::Behaviour behaviour, std::size_t start,
                   std::size_t end, bool fails) {
    (fails ? behaviour.failsAt : behaviour.endsAt) = static_cast<qint64>(end);
    ChunkLineReader reader;
    openBytes(reader, text, behaviour, start);
    checkLines(reader, referenceReading(text.substr(0, end), start).lines);
    if (end < text.size() && start < text.size()) {
        require(!reader.problem().isEmpty(), "what a device did not give is told");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const std::uint8_t mode = input.below(5);
    PiecewiseDevice::Behaviour behaviour{.isSequential = input.flag()};
    behaviour.largestPiece = static_cast<qint64>(input.number(3));
    behaviour.seed = input.byte();
    const std::size_t somewhere = input.number(4);
    const std::size_t few = input.byte();
    const ExpandedText expanded(input);
    const std::string_view text = expanded.text();
    if (behaviour.largestPiece > 0) {
        // Not so many that they take all the time.
        behaviour.largestPiece += static_cast<qint64>(text.size() / 1000);
    }
    const std::size_t place = somewhere % (text.size() + 3);
    switch (mode) {
    case 0:
        checkReading(text, behaviour, few % 2 == 0 ? 0 : place);
        break;
    case 1:
        checkJump(text, behaviour, place, few);
        break;
    case 2:
        checkSkip(text, behaviour, std::min(few, text.size()), place);
        break;
    default:
        checkEarlyEnd(text, behaviour, std::min(few, text.size()), place, mode == 3);
        break;
    }
    return 0;
}
