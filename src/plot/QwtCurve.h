#pragma once

// Qwt's curves. Every file that needs them takes them from here, because the order counts: see
// cmake/FindQwt.cmake.

// clang-format off
#include <mended/qwt_series_store.h>
#include <qwt_plot_curve.h>
// clang-format on
