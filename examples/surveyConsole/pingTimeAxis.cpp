#include "pingTimeAxis.h"
#include "pingModel.h"
#include "timeRuler.h"

#include <algorithm>
#include <limits>

namespace survey_console {
namespace {

const int MIN_WIDTH = 40; // px, of a ruler: narrower ones have no room for a time

} // namespace

pingTimeAxis_t::pingTimeAxis_t(const pingModel_t* model, QWidget* parent)
    : QWidget(parent), m_model(model), m_gap(std::numeric_limits<double>::infinity()),
      m_rulers({new timeRuler_t(this)})
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_rulers.front()->hide();
}

void pingTimeAxis_t::setGap(double seconds)
{
    m_gap = seconds;
}

void pingTimeAxis_t::follow(int begin, int end)
{
    m_begin = begin;
    m_stretches.clear();
    const int last = std::min(end, m_model->end());
    for (int first = std::max(begin, m_model->begin()); first < last;) {
        const int next = endOfStretch(first, last);
        if (next - first >= MIN_WIDTH) {
            if (m_stretches.size() == m_rulers.size())
                m_rulers.push_back(new timeRuler_t(this));
            m_stretches.push_back({first, next, m_rulers[m_stretches.size()]});
            place(m_stretches.back());
        }
        first = next;
    }
    for (std::size_t i = 0; i < m_rulers.size(); ++i)
        m_rulers[i]->setVisible(i < m_stretches.size());
}

int pingTimeAxis_t::endOfStretch(int first, int end) const
{
    int next = first + 1;
    for (; next < end; ++next) {
        const double step = m_model->ping(next).time - m_model->ping(next - 1).time;
        if (!(step >= 0.0 && step < m_gap))
            break;
    }
    return next;
}

// The time at the left edge of a ping's column, whether it belongs to the stretch or not.
double pingTimeAxis_t::startOf(int index, const stretch_t& stretch) const
{
    const double first = m_model->ping(stretch.begin).time;
    const double last = m_model->ping(stretch.end - 1).time;
    return first + (last - first) * (index - stretch.begin) / (stretch.end - 1 - stretch.begin);
}

void pingTimeAxis_t::place(const stretch_t& stretch)
{
    stretch.ruler->setGeometry(stretch.begin - m_begin, 0, stretch.end - stretch.begin, height());
    stretch.ruler->range(startOf(stretch.begin, stretch), startOf(stretch.end, stretch));
}

void pingTimeAxis_t::point(int index)
{
    for (const stretch_t& stretch : m_stretches) {
        if (index >= stretch.begin && index < stretch.end)
            stretch.ruler->indicator(0.5 * (startOf(index, stretch) + startOf(index + 1, stretch)));
        else
            stretch.ruler->clearIndicator();
    }
}

QSize pingTimeAxis_t::sizeHint() const
{
    const timeRuler_t* ruler = m_rulers.front();
    return {0, ruler->minimumSizeHint().height() + QFontMetrics(ruler->font()).height()};
}

void pingTimeAxis_t::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    for (const stretch_t& stretch : m_stretches)
        place(stretch);
}

} // namespace survey_console
