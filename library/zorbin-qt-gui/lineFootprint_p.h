#pragma once
#include <QRect>
#include <vector>

namespace zorbin_qt_gui {

/// The pixels that QPainter gives a solid, aliased line of width 2 from (0, 0) to (\p dx, \p dy),
/// as disjoint rectangles. The line from (x, y) to (x + dx, y + dy) gets the same pixels, moved by
/// (x, y), as long as it doesn't leave the clip: there QPainter cuts it and rounds it anew.
///
/// The rectangles are learnt from QPainter at the first use of each step and kept. Only steps to
/// the right by 1 to maxFootprintStepX pixels, and up or down by at most maxFootprintStepY, are
/// learnt; for others null comes back. GUI thread only.
const std::vector<QRect>* lineFootprint(int dx, int dy);

constexpr int maxFootprintStepX = 8;
constexpr int maxFootprintStepY = 1000;

/// Every pixel of a line of width 2, cut by the clip or not, lies in this rectangle.
inline QRect lineFootprintBounds(int x1, int y1, int x2, int y2)
{
    return {QPoint(qMin(x1, x2) - 1, qMin(y1, y2) - 1), QPoint(qMax(x1, x2), qMax(y1, y2))};
}

} // namespace zorbin_qt_gui
