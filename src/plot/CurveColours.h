#pragma once

#include <QColor>

#include <cstdint>

// Colour of the variable that was added to a plot as number `index`, from 0. There are ten; then they start
// again.
QColor curveColour(std::uint64_t index);
