#include "glPlot.h"

#include "glCurveRenderer.h"
#include "glStripChartImpl.h"
#include "messageRecorder.h"

#include <QOpenGLContext>
#include <utility>

using namespace zorbin_qt_gui;

namespace gl_tests {
namespace {

// Whether contexts must be had here: X servers give them, unless Qt is told not to ask.
bool isContextExpected()
{
    return QGuiApplication::platformName() == QLatin1String("xcb") &&
           qgetenv("QT_XCB_GL_INTEGRATION") != "none";
}

} // namespace

bool hasContext = false;

void glTestCase_t::initTestCase()
{
    QCOMPARE(stripChartImpl_t::implementationType(), std::string("gl"));
    messageRecorder_t messages;
    const stripChart_t chart(nullptr);
    hasContext = !messages.texts().contains(QString::fromLatin1(noContextWarning));
    if (isContextExpected())
        QCOMPARE(messages.texts(), QStringList());
}

glStripChartWidget_t& canvasOf(stripChart_t& chart)
{
    return *chart.findChild<glStripChartWidget_t*>();
}

glStripChartImpl_t& implOf(stripChart_t& chart)
{
    return *chart.findChild<glStripChartImpl_t*>();
}

glCurveRenderer_t& rendererOf(stripChartCurve_t& curve)
{
    return *qobject_cast<glCurveRenderer_t*>(curve.renderer());
}

QOpenGLContext* contextOf(stripChart_t& chart)
{
    canvasOf(chart).makeCurrent();
    return QOpenGLContext::currentContext();
}

void processEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

bool show(stripChart_t& chart)
{
    chart.show();
    if (!QTest::qWaitForWindowExposed(&chart, patienceMs()))
        return false;
    processEvents();
    return true;
}

QImage inContext(stripChart_t& chart)
{
    glStripChartWidget_t& canvas = canvasOf(chart);
    canvas.makeCurrent();
    QImage picture(canvas.size(), QImage::Format_RGBX8888);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, picture.width(), picture.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                 picture.bits());
    return picture.mirrored().convertToFormat(QImage::Format_RGB32);
}

QImage drawn(stripChart_t& chart)
{
    processEvents();
    return inContext(chart);
}

QList<GLuint> listNames()
{
    constexpr GLuint namesUsed = 20000; // far more than any test here takes
    QList<GLuint> names;
    for (GLuint name = 1; name <= namesUsed; ++name) {
        if (glIsList(name) == GL_TRUE)
            names << name;
    }
    return names;
}

int listCount()
{
    return static_cast<int>(listNames().size());
}

int listCount(stripChart_t& chart)
{
    canvasOf(chart).makeCurrent();
    return listCount();
}

plotted_t::plotted_t(QColor canvas) : curve(new stripChartCurve_t(nullptr))
{
    chart.resize(300, 100);
    chart.setBackgroundColor(canvas);
    chart.addCurve(curve);
    curve->color(Qt::red);
    curve->gapThreshold(1.5);
    if (!show(chart))
        qFatal("the chart didn't get on screen");
    chart.timeBounds(0.0, 15.0);
    chart.valueBounds(-5.0, 5.0);
    processEvents();
}

QImage plotted_t::blankCanvas() const
{
    QImage picture(chart.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    return picture;
}

points_t levelPoints(int count, int row, double from)
{
    points_t points;
    for (int i = 0; i < count; ++i)
        points.emplace_back(from + i * 0.1, plotted_t::value(row), Qt::green);
    return points;
}

QString paintedColumns(const QImage& picture, int row)
{
    QStringList runs;
    int begin = -1;
    for (int x = 0; x <= picture.width(); ++x) {
        const bool isPainted =
            x < picture.width() && picture.pixelColor(x, row) != QColor(Qt::white);
        if (isPainted && begin < 0)
            begin = x;
        if (!isPainted && begin >= 0)
            runs << QStringLiteral("%1-%2").arg(std::exchange(begin, -1)).arg(x - 1);
    }
    return runs.join(u' ');
}
} // namespace gl_tests
