#include "glCurveRenderer.h"

#include "glStripChartWidget.h"
#include "stripChartCurve.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <qopengl.h>
#include <utility>

namespace zorbin_qt_gui {
namespace {

using point_t = stripChartCurve_t::point_t;

void setColor(const QColor& color, int alpha)
{
    const auto byte = [](int component) { return static_cast<GLubyte>(component); };
    glColor4ub(byte(color.red()), byte(color.green()), byte(color.blue()), byte(alpha));
}

constexpr double farOutside = 1e18; // any display; infinity is drawn there

// Homogeneous: what is drawn is x / w, y / w.
struct vertex_t
{
    float x;
    float y;
    float w;
};

// Lines are clipped in floats, in which a cut near one end of a very long line is rounded to that
// end. So far points get a small w instead of large coordinates, which makes such cuts exact.
vertex_t vertexAt(double time, double value)
{
    constexpr double farAway = 1e6;
    const auto inside = [](double x) { return std::min(std::max(x, -farOutside), farOutside); };
    const double x = inside(time);
    const double y = inside(value);
    const double distance = std::max(std::abs(x), std::abs(y));
    const double scale = distance > farAway ? 1.0 / distance : 1.0;
    return {static_cast<float>(x * scale), static_cast<float>(y * scale),
            static_cast<float>(scale)};
}

void emitVertex(const point_t& point, double refTime, double refValue)
{
    const vertex_t vertex = vertexAt(point.time - refTime, point.value - refValue);
    glVertex4f(vertex.x, vertex.y, 0.0F, vertex.w);
}

// The value that vertices are relative to, usually the point's own. Relative to one that is not a
// number or far outside, such as a mark for missing data, the others would be nowhere.
double referenceValue(const point_t& point)
{
    return std::abs(point.value) < farOutside ? point.value : 0.0;
}

bool isDrawn(const point_t& from, const point_t& to)
{
    return !std::isnan(from.value) && !std::isnan(to.value);
}

} // namespace

glCurveRenderer_t::glCurveRenderer_t(stripChartCurveData_t* data) : stripChartCurveRenderer_t(data)
{
}

glCurveRenderer_t::~glCurveRenderer_t()
{
    // Before anybody hears of the curve's end: what they do to the chart must not find it there.
    if (m_chart != nullptr) {
        m_chart->removeCurve(m_d->parent);
        m_chart->update();
    }
    prepareToDelete();
}

void glCurveRenderer_t::draw(double xCenter, double yCenter)
{
    draw(xCenter, yCenter, std::numeric_limits<double>::infinity());
}

// Draws what is no further than reach, in seconds, from the centre; whole segments of it.
void glCurveRenderer_t::draw(double xCenter, double yCenter, double reach)
{
    if (m_chart == nullptr)
        return;
    releaseListsOfAnotherColor();
    const auto outgoing = static_cast<unsigned>(m_d->outgoingCount);
    if (outgoing > 0) {
        m_outgoing.fill(*m_d, 0, outgoing);
        m_outgoing.draw(outgoing, xCenter, yCenter);
        drawJoint(xCenter, yCenter);
    }
    drawSegments(xCenter, yCenter, reach);
    const auto incoming = static_cast<unsigned>(m_d->incomingCount);
    if (incoming > 0) {
        m_incoming.fill(*m_d, static_cast<unsigned>(m_d->points.size()) - incoming, incoming);
        m_incoming.draw(incoming, xCenter, yCenter);
    }
    calcSegmentThreshold();
}

void glCurveRenderer_t::drawSegments(double xCenter, double yCenter, double reach)
{
    auto first = static_cast<unsigned>(m_d->outgoingCount);
    for (const segment_t* const segment : m_d->segments) {
        const unsigned last = first + segment->size;
        if (segment->endTime >= xCenter - reach && segment->startTime <= xCenter + reach) {
            glSegment_t*& drawn = m_segments[segment->id];
            if (drawn == nullptr)
                drawn = createGLSegment(first, last);
            if (drawn != nullptr) {
                setColor(m_d->color, m_d->color.alpha());
                glPushMatrix();
                glTranslated(segment->startTime - xCenter,
                             referenceValue(m_d->points[first]) - yCenter, 0.0);
                glCallList(drawn->list);
                glPopMatrix();
            }
        }
        first = last;
    }
}

// The line from the last outgoing point to the first segment, which neither of them contains.
void glCurveRenderer_t::drawJoint(double xCenter, double yCenter) const
{
    if (m_d->segments.empty())
        return; // the incoming points begin with it
    const auto index = static_cast<std::size_t>(m_d->outgoingCount);
    const point_t& from = m_d->points[index - 1];
    const point_t& to = m_d->points[index];
    if (!isDrawn(from, to))
        return;
    const bool isGap = to.time - from.time > m_d->threshold;
    setColor(m_d->color, isGap ? m_d->color.alpha() / 4 : m_d->color.alpha());
    glPushMatrix();
    const double refValue = referenceValue(from);
    glTranslated(from.time - xCenter, refValue - yCenter, 0.0);
    glBegin(GL_LINES);
    emitVertex(from, from.time, refValue);
    emitVertex(to, from.time, refValue);
    glEnd();
    glPopMatrix();
}

void glCurveRenderer_t::prepareToDelete()
{
    releaseLists();
    m_segments.clear();
    m_outgoing.release();
    m_incoming.release();
    if (m_chart != nullptr)
        m_chart->m_renderers.erase(this);
    m_chart = nullptr;
}

// Deletes all lists; those of segments that remain are made anew when they are next drawn.
void glCurveRenderer_t::releaseLists()
{
    for (auto& entry : m_segments)
        removeGLSegment(std::exchange(entry.second, nullptr));
}

// Behind a gap lists set the colour themselves.
void glCurveRenderer_t::releaseListsOfAnotherColor()
{
    if (m_listColor == m_d->color)
        return;
    releaseLists();
    m_listColor = m_d->color;
}

void glCurveRenderer_t::drawSubset(double refTime, double refValue, unsigned first, unsigned last)
{
    bool isGap = false;
    bool isBroken = false; // NaN was met: nothing is drawn to or from it
    for (unsigned i = first; i <= last; ++i) {
        const point_t& point = m_d->points[i];
        if (i > first) {
            const point_t& before = m_d->points[i - 1];
            const bool wasGap = std::exchange(isGap, point.time - before.time > m_d->threshold);
            const bool wasBroken = std::exchange(isBroken, !isDrawn(before, point));
            if (isGap != wasGap || isBroken != wasBroken) {
                glEnd();
                setColor(m_d->color, isGap ? m_d->color.alpha() / 4 : m_d->color.alpha());
                glBegin(GL_LINE_STRIP);
                if (!isBroken)
                    emitVertex(before, refTime, refValue);
            }
        }
        if (!isBroken && !std::isnan(point.value))
            emitVertex(point, refTime, refValue);
    }
}

void glCurveRenderer_t::calcSegmentThreshold()
{
    const double size = std::sqrt(10.0 * static_cast<double>(m_d->points.size()));
    m_segmentThreshold = size > 100.0 ? static_cast<quint32>(std::ceil(size)) : 100;
}

glCurveRenderer_t::glSegment_t* glCurveRenderer_t::createGLSegment(unsigned first, unsigned last)
{
    if (m_chart == nullptr || !m_chart->makeOwnContextCurrent())
        return nullptr;
    releaseListsOfAnotherColor();
    const GLuint list = glGenLists(1);
    if (list == 0) {
        qDebug("Failed to get list -- Skipping segmenting");
        return nullptr;
    }
    const point_t& reference = m_d->points[first];
    setColor(m_d->color, m_d->color.alpha());
    glNewList(list, GL_COMPILE);
    glBegin(GL_LINE_STRIP);
    drawSubset(reference.time, referenceValue(reference), first, last);
    glEnd();
    glEndList();
    return new glSegment_t{list};
}

void glCurveRenderer_t::removeGLSegment(glSegment_t* segment)
{
    if (segment == nullptr || m_chart == nullptr)
        return;
    if (m_chart->makeOwnContextCurrent())
        glDeleteLists(segment->list, 1);
    delete segment;
}

void glCurveRenderer_t::chart(QWidget* widget)
{
    auto* const chart = qobject_cast<glStripChartWidget_t*>(widget);
    if (chart == nullptr || chart == m_chart)
        return;
    releaseLists();
    m_segments.clear();
    if (m_chart != nullptr) {
        m_chart->m_renderers.erase(this);
        m_chart->removeCurve(m_d->parent);
        m_chart->update();
    }
    m_chart = chart;
    m_chart->m_renderers.insert(this);
}

unsigned glCurveRenderer_t::segmentSize() const
{
    return m_segmentThreshold;
}

void glCurveRenderer_t::segmentCreated(unsigned first, unsigned last, unsigned id)
{
    m_segments[id] = createGLSegment(first, last);
}

void glCurveRenderer_t::segmentRemoved(unsigned /*first*/, unsigned /*last*/, unsigned id)
{
    const auto found = m_segments.find(id);
    if (found == m_segments.end())
        return;
    removeGLSegment(found->second);
    m_segments.erase(found);
}

void glCurveRenderer_t::updateIncomingList(unsigned /*first*/, unsigned /*last*/)
{
    if (m_d->incomingCount > 0)
        m_incoming.take(*m_d);
}

void glCurveRenderer_t::updateOutgoingList(unsigned /*first*/, unsigned /*last*/)
{
    if (m_d->outgoingCount > 0)
        m_outgoing.take(*m_d);
}

void glCurveRenderer_t::pointsAdded(unsigned /*count*/, double fromTime, double toTime)
{
    if (m_chart != nullptr)
        m_chart->updateChart(fromTime, toTime);
}

void glCurveRenderer_t::pointsRemoved(unsigned /*count*/, double fromTime, double toTime)
{
    if (m_chart != nullptr)
        m_chart->updateChart(fromTime, toTime);
}

void glCurveRenderer_t::loosePoints_t::take(const stripChartCurveData_t& data)
{
    color = data.color;
    threshold = data.threshold;
    isStale = true;
}

void glCurveRenderer_t::loosePoints_t::release()
{
    isStale = true;
    std::vector<float>().swap(points); // assigning {} would keep the memory
    std::vector<float>().swap(colors);
}

// A line strip in which every point but the first has two vertices, each in the colour of its line:
// the end of the line to it, and the start of the line from it. The strip begins with the point
// before the zone. The last vertex starts no line and isn't drawn.
void glCurveRenderer_t::loosePoints_t::fill(const stripChartCurveData_t& data, unsigned first,
                                            unsigned count)
{
    if (!isStale)
        return;
    isStale = false;
    const std::size_t vertices = 2 * static_cast<std::size_t>(count);
    if (points.size() < 4 * vertices) {
        points.resize(4 * vertices);
        colors.resize(4 * vertices);
    }
    const auto red = static_cast<float>(color.redF());
    const auto green = static_cast<float>(color.greenF());
    const auto blue = static_cast<float>(color.blueF());
    const auto alpha = static_cast<float>(color.alphaF());
    const point_t& reference = data.points[first];
    refTime = reference.time;
    refValue = referenceValue(reference);
    float* nextPoint = points.data();
    float* nextColor = colors.data();
    const auto add = [&](const point_t& point, float opacity) {
        const vertex_t vertex =
            vertexAt(point.time - refTime, std::isnan(point.value) ? 0.0 : point.value - refValue);
        *nextPoint++ = vertex.x;
        *nextPoint++ = vertex.y;
        *nextPoint++ = 0.0F;
        *nextPoint++ = vertex.w;
        *nextColor++ = red;
        *nextColor++ = green;
        *nextColor++ = blue;
        *nextColor++ = opacity;
    };
    // Deliberate: the line to the zone keeps its full opacity, even across a gap.
    const point_t& before = first > 0 ? data.points[first - 1] : reference;
    const float opacity = isDrawn(before, reference) ? alpha : 0.0F;
    add(before, opacity);
    add(reference, opacity);
    const auto opacityTo = [&](unsigned i) {
        const point_t& from = data.points[i - 1];
        const point_t& to = data.points[i];
        const bool isGap = to.time - from.time > threshold;
        return !isDrawn(from, to) ? 0.0F : isGap ? alpha * 0.25F : alpha;
    };
    const unsigned end = first + count;
    float arriving = first + 1 < end ? opacityTo(first + 1) : alpha;
    for (unsigned i = first + 1; i < end; ++i) {
        const float leaving = i + 1 < end ? opacityTo(i + 1) : arriving;
        add(data.points[i], arriving);
        add(data.points[i], leaving);
        arriving = leaving;
    }
}

void glCurveRenderer_t::loosePoints_t::draw(unsigned count, double xCenter, double yCenter) const
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glPushMatrix();
    glTranslated(refTime - xCenter, refValue - yCenter, 0.0);
    glVertexPointer(4, GL_FLOAT, 0, points.data());
    glColorPointer(4, GL_FLOAT, 0, colors.data());
    glDrawArrays(GL_LINE_STRIP, 0, static_cast<GLsizei>(2 * count - 1));
    glPopMatrix();
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
}

} // namespace zorbin_qt_gui
