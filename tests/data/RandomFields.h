#pragma once

#include "RandomNumberTexts.h"
#include "support/RandomNumbers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

// Lines of nearly plain numbers, with something else now and then.
class RandomFields {
public:
    explicit RandomFields(std::uint64_t seed) : random_(seed), texts_(seed) {}

    std::string line(std::size_t fields) {
        const bool isPlain = random_.oneIn(2);
        std::string text;
        for (std::size_t i = 0; i < fields; ++i) {
            text += isPlain || !random_.oneIn(8) ? plain() : texts_.number();
            text += i + 1 == fields ? "" : random_.oneIn(isPlain ? 1000 : 50) ? odd() : "\t";
        }
        if (random_.oneIn(isPlain ? 20 : 4) && !text.empty()) {
            text[random_.below(text.size())] = static_cast<char>(random_.oneIn(2) ? random_.bits() : '\t');
        }
        return text;
    }

private:
    std::string plain() {
        std::string text = std::to_string(random_.between(random_.oneIn(2) ? -99999 : 0, 99999));
        if (random_.oneIn(3)) {
            return text;
        }
        text += '.';
        return text + std::to_string(random_.bits()).substr(0, random_.below(random_.oneIn(20) ? 20 : 7));
    }

    std::string odd() {
        static constexpr std::array<const char *, 9> separators{"\t\t", " ",    "\t ", "",     "\t\t\t",
                                                                "\r",   "\v\t", "x",   "\t-\t"};
        return random_.pick(separators);
    }

    RandomNumbers random_;
    RandomNumberTexts texts_;
};
