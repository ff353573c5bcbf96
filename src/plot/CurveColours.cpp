#include "plot/CurveColours.h"

#include <array>

QColor curveColour(std::uint64_t index) {
    static constexpr std::array colours{
        Qt::red,     Qt::blue,      Qt::magenta,  Qt::darkYellow, Qt::black,
        Qt::darkRed, Qt::darkGreen, Qt::darkBlue, Qt::darkCyan,   Qt::darkMagenta,
    };
    return colours[index % colours.size()];
}
