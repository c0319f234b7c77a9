#include "rulerStage.h"

#include "pictures.h"
#include "testCase.h"

#include <QPainter>
#include <cmath>

namespace ruler_tests {
namespace {

std::string twoDigits(qint64 number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::vector<int> columnsWithInk(ruler_t& ruler, int row)
{
    const QImage picture = snapshot(ruler);
    const QRgb ink = ruler.palette().color(QPalette::WindowText).rgb();
    std::vector<int> columns;
    for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixel(x, row) == ink)
            columns.push_back(x);
    }
    return columns;
}

} // namespace

std::string labelText(labels_t labels, const std::string& same, double value, unsigned decimals)
{
    const double floor = std::floor(value);
    const bool isSmall = std::abs(floor) < 1e15; // and not NaN
    switch (labels) {
    case labels_t::SAME:
        return same;
    case labels_t::TIMES: {
        if (!isSmall)
            return "?";
        const qint64 day = 86400;
        const qint64 second = (static_cast<qint64>(floor) % day + day) % day;
        return twoDigits(second / 3600) + ":" + twoDigits(second / 60 % 60) + ":" +
               twoDigits(second % 60);
    }
    case labels_t::ODD_LONGER: {
        const bool isOdd = isSmall && static_cast<qint64>(floor) % 2 != 0;
        return isOdd ? "an odd one \xb0" : "2";
    }
    case labels_t::BY_DECIMALS:
        return std::string(decimals + 1, '1');
    case labels_t::NUMBERS:
    case labels_t::NOTHING:
        break;
    }
    return std::string();
}

std::string testRuler_t::textFromValue(double value) const
{
    ++labelsMade;
    if (labels == labels_t::NUMBERS)
        return ruler_t::textFromValue(value);
    return labelText(labels, same, value, numDecimals());
}

void testRuler_t::paintEvent(QPaintEvent* event)
{
    ++paints;
    ruler_t::paintEvent(event);
}

stage_t::stage_t(QSize size)
{
    window.resize(900, 900);
    ruler.resize(size);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window, patienceMs()))
        qFatal("The window isn't shown");
    settle();
}

void stage_t::settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

int stage_t::paintsAfter(const std::function<void(ruler_t&)>& action)
{
    settle();
    ruler.paints = 0;
    action(ruler);
    settle();
    return ruler.paints;
}

drawing_t::drawing_t(const ruler_t& ruler)
    : picture(blank(ruler)), ink(ruler.palette().color(QPalette::WindowText)), m_font(ruler.font())
{
}

void drawing_t::fill(int x, int y, int width, int height, const QColor& color)
{
    QPainter(&picture).fillRect(x, y, width, height, color);
}

void drawing_t::write(int x, int y, const QString& text)
{
    QPainter painter(&picture);
    painter.setFont(m_font);
    painter.setPen(ink);
    const QRect rect = painter.fontMetrics().boundingRect(
        QRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignTop), text);
    painter.drawText(rect.translated(x, y), Qt::AlignCenter, text);
}

std::vector<int> majorColumns(ruler_t& ruler)
{
    return columnsWithInk(ruler, 8);
}

std::vector<int> allColumns(ruler_t& ruler)
{
    return columnsWithInk(ruler, 4);
}

std::vector<int> columns(int first, int beyond, double distance)
{
    std::vector<int> wanted;
    for (int i = 0; first + static_cast<int>(i * distance) < beyond; ++i)
        wanted.push_back(first + static_cast<int>(i * distance));
    return wanted;
}

int halfWidth(const ruler_t& ruler, const QString& text)
{
    return (ruler.fontMetrics().boundingRect(QRect(), Qt::AlignCenter, text).width() + 1) / 2;
}

QString boundsOf(const ruler_t& ruler)
{
    return QStringLiteral("%1 to %2").arg(ruler.start()).arg(ruler.end());
}
} // namespace ruler_tests
