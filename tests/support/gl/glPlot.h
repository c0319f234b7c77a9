#pragma once
#include "glStripChartWidget.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "testCase.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <deque>
#include <qopengl.h>

class QOpenGLContext;

namespace zorbin_qt_gui {
class glCurveRenderer_t;
class glStripChartImpl_t;
} // namespace zorbin_qt_gui

/// What tests of OpenGL charts share: a chart on screen, what its context holds, and how much of
/// both a platform gives.
namespace gl_tests {
using points_t = std::deque<zorbin_qt_gui::stripChartCurve_t::point_t>;

/// Finds out whether the platform gives contexts, and fails where it must but doesn't.
class glTestCase_t : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
};

constexpr char noContextWarning[] =
    "glStripChartImpl_t::glStripChartImpl_t: No usable OpenGL context - Charts stay empty";

/// Whether the platform gives contexts. False until initTestCase() has found out.
extern bool hasContext;

#define REQUIRE_CONTEXT()                                                                          \
    do {                                                                                           \
        if (!hasContext)                                                                           \
            QSKIP("This platform has no OpenGL context to draw in; what holds without one is "     \
                  "tested by staysEmptyWithoutAContext() and the functions on records.");          \
    } while (false)

zorbin_qt_gui::glStripChartWidget_t& canvasOf(zorbin_qt_gui::stripChart_t& chart);
zorbin_qt_gui::glStripChartImpl_t& implOf(zorbin_qt_gui::stripChart_t& chart);
zorbin_qt_gui::glCurveRenderer_t& rendererOf(zorbin_qt_gui::stripChartCurve_t& curve);
/// The chart's context, which is made current.
QOpenGLContext* contextOf(zorbin_qt_gui::stripChart_t& chart);

void processEvents();

/// Returns false if the chart doesn't come on screen.
bool show(zorbin_qt_gui::stripChart_t& chart);

/// What the chart's context holds.
QImage inContext(zorbin_qt_gui::stripChart_t& chart);
/// The same once all that is due has been painted.
QImage drawn(zorbin_qt_gui::stripChart_t& chart);

/// The display lists in the current context.
QList<GLuint> listNames();
int listCount();
int listCount(zorbin_qt_gui::stripChart_t& chart);

/// A chart of 300 x 100 pixels, 20 pixels a second from 0 s to 15 s, 10 pixels a unit from -5 to
/// 5, on white, with one red curve. A point at time (x + 0.5) / 20 and value (y + 0.5) / 10 - 5 is
/// in the middle of the pixel x columns from the left and y rows from the bottom.
struct plotted_t
{
    explicit plotted_t(QColor canvas = Qt::white);

    static double time(int column) { return (column + 0.5) / 20; }
    /// \p row counts from the top.
    static double value(int row) { return (99 - row + 0.5) / 10 - 5; }
    static zorbin_qt_gui::stripChartCurve_t::point_t at(int column, int row)
    {
        return {time(column), value(row), Qt::green};
    }

    QImage blankCanvas() const;

    zorbin_qt_gui::stripChart_t chart{nullptr};
    zorbin_qt_gui::stripChartCurve_t* const curve; // the chart's
};

/// A point in every second column of one row, 0.1 s apart.
points_t levelPoints(int count, int row = 49, double from = 0.025);

/// The columns [from, end) of a row that aren't white, e.g. "40-59 80-99".
QString paintedColumns(const QImage& picture, int row);
} // namespace gl_tests
