#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

// A copy of a text that fills a heap block of its own, with nothing behind it: under the address sanitizer no
// byte outside the text can be read unseen.
class HeapText {
public:
    explicit HeapText(std::string_view text) : bytes_(new char[text.size()]), size_(text.size()) {
        std::copy(text.begin(), text.end(), bytes_.get());
    }

    std::string_view view() const { return {bytes_.get(), size_}; }
    const char *begin() const { return bytes_.get(); }
    const char *end() const { return bytes_.get() + size_; }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_;
};
