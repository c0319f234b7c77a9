#pragma once
#include <QColor>
#include <QFont>
#include <QImage>
#include <QSize>
#include <QString>
#include <QWidget>
#include <functional>
#include <ruler.h>
#include <string>
#include <vector>

/// What tests of rulers share: a ruler with labels of many kinds on show, what it should look like,
/// and where it has drawn its ticks.
namespace ruler_tests {
using zorbin_qt_gui::ruler_t;
using tickTable_t = std::vector<ruler_t::tickEntry_t>;

/// No edge at all.
constexpr auto nowhere = static_cast<ruler_t::location_t>(7);

/// What a subclass makes of a value.
enum class labels_t
{
    NUMBERS,     ///< as the ruler itself
    NOTHING,     ///< never a label
    SAME,        ///< always one text
    TIMES,       ///< hours, minutes, seconds
    ODD_LONGER,  ///< a whole odd number makes a longer text
    BY_DECIMALS, ///< as many digits as the ruler's decimals
};

/// A label other than NUMBERS.
std::string labelText(labels_t labels, const std::string& same, double value, unsigned decimals);

class testRuler_t : public ruler_t
{
public:
    using ruler_t::ruler_t;

    std::string textFromValue(double value) const override;

    labels_t labels = labels_t::NOTHING;
    std::string same = "8";
    mutable int labelsMade = 0;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A ruler on show, so that it is resized at once, in a window that leaves its geometry alone.
class stage_t
{
public:
    explicit stage_t(QSize size = QSize(500, 60));

    static void settle();

    /// How often the ruler was painted because of an action.
    int paintsAfter(const std::function<void(ruler_t&)>& action);

    QWidget window;
    testRuler_t ruler{&window};
};

/// A picture of the ruler, drawn with the ruler's ink.
class drawing_t
{
public:
    explicit drawing_t(const ruler_t& ruler);

    void fill(int x, int y, int width, int height) { fill(x, y, width, height, ink); }
    void fill(int x, int y, int width, int height, const QColor& color);
    /// A label with its top left corner at a point.
    void write(int x, int y, const QString& text);

    QImage picture;
    const QColor ink;

private:
    const QFont m_font;
};

/// Where a horizontal ruler with ticks of 8 and 4 pixels has drawn the major ones, read from the
/// picture.
std::vector<int> majorColumns(ruler_t& ruler);
/// The same for all ticks.
std::vector<int> allColumns(ruler_t& ruler);
/// Columns from \p first on that are \p distance apart, a fraction dropped from each.
std::vector<int> columns(int first, int beyond, double distance);

/// Half of what a label takes along a horizontal ruler.
int halfWidth(const ruler_t& ruler, const QString& text);

/// E.g. "0 to 15".
QString boundsOf(const ruler_t& ruler);
} // namespace ruler_tests
