#pragma once

#include "support/RandomNumbers.h"

#include <string>

// Texts that look like numbers, nearly like numbers, or like nothing: every shape that strtof takes apart,
// each with a random beginning (white space, signs) and a random tail.
class RandomNumberTexts {
public:
    explicit RandomNumberTexts(std::uint64_t seed) : random_(seed) {}

    std::string number();
    std::string integer();

private:
    std::string digits(std::size_t most);
    std::string exponent(char mark, std::int64_t limit);
    std::string decimal();
    std::string shortest();
    double halfway();
    std::string nearHalfway();
    std::string shortNearHalfway();
    std::string hexadecimal();
    std::string word();
    std::string soup();
    std::string mutated(std::string text);
    std::string beginning();
    std::string tail();

    RandomNumbers random_;
};
