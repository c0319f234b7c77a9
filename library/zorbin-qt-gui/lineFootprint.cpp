#include "lineFootprint_p.h"

#include <QImage>
#include <QPainter>
#include <QPen>
#include <cstdlib>
#include <unordered_map>

namespace zorbin_qt_gui {
namespace {

std::vector<QRect> learnFootprint(int dx, int dy)
{
    constexpr int border = 4; // keeps the line clear of the clip
    const QPoint start(border, dy < 0 ? border - dy : border);
    QImage image(dx + 2 * border, std::abs(dy) + 2 * border, QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    {
        QPainter painter(&image);
        painter.setPen(QPen(Qt::white, 2));
        painter.drawLine(start, start + QPoint(dx, dy));
    }

    // Each row holds one run of pixels; rows with equal runs make one rectangle.
    std::vector<QRect> rects;
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        int left = 0;
        while (left < image.width() && row[left] == 0)
            ++left;
        int right = left;
        while (right < image.width() && row[right] != 0)
            ++right;
        if (left == right)
            continue;
        const QRect run(QPoint(left, y) - start, QSize(right - left, 1));
        if (!rects.empty() && rects.back().left() == run.left() &&
            rects.back().right() == run.right() && rects.back().bottom() == run.top() - 1)
            rects.back().setBottom(run.bottom());
        else
            rects.push_back(run);
    }
    return rects;
}

} // namespace

const std::vector<QRect>* lineFootprint(int dx, int dy)
{
    if (dx < 1 || dx > maxFootprintStepX || dy < -maxFootprintStepY || dy > maxFootprintStepY)
        return nullptr;
    static std::unordered_map<int, std::vector<QRect>> footprints;
    const int key = dx * (2 * maxFootprintStepY + 1) + dy + maxFootprintStepY;
    const auto known = footprints.find(key);
    if (known != footprints.end())
        return &known->second;
    return &footprints.emplace(key, learnFootprint(dx, dy)).first->second;
}

} // namespace zorbin_qt_gui
