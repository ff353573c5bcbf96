#pragma once

#include <QPolygonF>

#include <span>

class QwtScaleMap;

// The line in pixels through points that are many to a pixel. Of those that share half a pixel's width the
// first, the lowest, the highest and the last are kept, in their order, so that the line covers the same
// pixels as one through all of them. Both maps are linear; the spans have one length, 1 or more.
QPolygonF densePolyline(std::span<const double> times, std::span<const double> values,
                        const QwtScaleMap &xMap, const QwtScaleMap &yMap);
