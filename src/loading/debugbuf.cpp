#include "loading/debugbuf.h"

#include <QDebug>

#include <utility>

// There is no put area, so block writes come here too, one character at a time.
debugbuf::int_type debugbuf::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) {
        return c;
    }
    if (const char character = traits_type::to_char_type(c); character != '\n') {
        line_ += character;
    } else {
        // Taken out first: whoever handles the line may write to this stream again.
        const std::string line = std::exchange(line_, {});
        output(line.c_str());
    }
    return c;
}

void debugbuf::output(const char *line) {
    // The line is the format on purpose: streams that were made for the debug log may hold "%%" for a percent
    // sign. Text from outside the program belongs into a messagebuf.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
    qDebug(line);
#pragma GCC diagnostic pop
}
