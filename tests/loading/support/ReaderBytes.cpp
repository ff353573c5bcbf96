#include "loading/support/ReaderBytes.h"

std::string clusteredLines(std::mt19937 &random) {
    const auto upTo = [&random](std::size_t most) { return std::size_t{random()} % (most + 1); };
    std::string text;
    const std::size_t pieces = 1 + upTo(2);
    for (std::size_t k = 1; k <= pieces; ++k) {
        // Long lines first, so that few bytes of any line are left to the piece's end.
        const std::size_t near = k * piece - upTo(1) * (limit - 3 + upTo(6)) - upTo(40);
        if (near > text.size()) {
            text += filler(near - text.size(), 1 + upTo(300'000));
        }
        while (text.size() < k * piece + 200) {
            const bool isLong = upTo(60) == 0;
            const std::size_t length = isLong ? limit - 2 + upTo(2) : upTo(30);
            text.append(length, static_cast<char>(upTo(5) == 0 ? '\r' : 'x'));
            text.append(upTo(1) == 0 ? "\n" : "\r\n");
        }
    }
    if (upTo(3) == 0) {
        text.append(limit + 1 + upTo(3), 'L').push_back('\n');
    }
    text.append(upTo(50), 'u'); // no line feed behind it
    return text;
}
