#include "replayControls.h"
#include "chartPanel.h"
#include "labels.h"
#include "replayClock.h"
#include "texts.h"
#include "theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const int SLIDER_STEPS = 10000; // over the whole recording
const double SPEEDS[] = {1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0};
const int SPANS[] = {1, 2, 5, 10}; // min

// Goes to where it is clicked, as a time line does, instead of a page towards it.
class seekSlider_t : public QSlider
{
public:
    seekSlider_t() : QSlider(Qt::Horizontal) {}

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::LeftButton)
            setValue(
                QStyle::sliderValueFromPosition(minimum(), maximum(), event->pos().x(), width()));
        QSlider::mousePressEvent(event); // the handle is there now and can be dragged on
    }
};

} // namespace

replayControls_t::replayControls_t(replayClock_t* clock, QWidget* parent)
    : QFrame(parent), m_clock(clock), m_pauseButton(new QPushButton), m_speedBox(new QComboBox),
      m_seekSlider(new seekSlider_t),
      m_elapsedLabel(makeLabel(theme::text(), 1.0, Qt::AlignRight | Qt::AlignVCenter)),
      m_remainingLabel(makeLabel(theme::quietText(), 1.0, Qt::AlignLeft | Qt::AlignVCenter)),
      m_spanBox(new QComboBox)
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    m_pauseButton->setObjectName(QStringLiteral("pauseButton"));
    m_speedBox->setObjectName(QStringLiteral("speedBox"));
    m_seekSlider->setObjectName(QStringLiteral("seekSlider"));
    m_spanBox->setObjectName(QStringLiteral("spanBox"));
    m_pauseButton->setToolTip(tr("Pause or resume the replay (Space)"));
    m_speedBox->setToolTip(tr("Replay speed, times real time (+ and -)"));
    m_seekSlider->setToolTip(
        tr("Go to a time: click or drag; Left/Right 10 s, Page Up/Down 1 min, Home, End"));
    m_spanBox->setToolTip(tr("Time shown by the charts"));
    m_elapsedLabel->setToolTip(tr("Replayed"));
    m_remainingLabel->setToolTip(tr("Left to replay"));

    for (const double speed : SPEEDS)
        m_speedBox->addItem(QStringLiteral("%1\u00d7").arg(speed), speed);
    for (const int minutes : SPANS)
        m_spanBox->addItem(tr("%1 min").arg(minutes), minutes * 60.0);
    m_spanBox->setCurrentIndex(m_spanBox->findData(chartPanel_t::DEFAULT_SPAN));
    m_seekSlider->setRange(0, SLIDER_STEPS);
    m_pauseButton->setMinimumWidth(
        m_pauseButton->fontMetrics().horizontalAdvance(QStringLiteral("Resume")) + 40);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 6, 12, 6);
    layout->setSpacing(10);
    layout->addWidget(m_pauseButton);
    layout->addWidget(m_speedBox);
    layout->addWidget(m_elapsedLabel);
    layout->addWidget(m_seekSlider, 1);
    layout->addWidget(m_remainingLabel);
    auto* spanLabel = makeLabel(theme::quietText(), 1.0, Qt::AlignRight | Qt::AlignVCenter);
    spanLabel->setText(tr("Window"));
    layout->addWidget(spanLabel);
    layout->addWidget(m_spanBox);

    const auto activated = QOverload<int>::of(&QComboBox::activated);
    connect(m_pauseButton, &QPushButton::clicked, clock,
            [clock] { clock->setRunning(!clock->isRunning()); });
    connect(m_speedBox, activated, clock,
            [this](int index) { m_clock->setSpeed(m_speedBox->itemData(index).toDouble()); });
    connect(m_spanBox, activated, this, [this] { Q_EMIT timeSpanChanged(timeSpan()); });
    connect(m_seekSlider, &QSlider::valueChanged, clock, [clock](int step) {
        clock->seek(clock->start() + (clock->end() - clock->start()) * step / SLIDER_STEPS);
    });
    connect(clock, &replayClock_t::timeAdvanced, this, &replayControls_t::showTime);
    connect(clock, &replayClock_t::timeJumped, this, &replayControls_t::showTime);
    connect(clock, &replayClock_t::runningChanged, this, &replayControls_t::showRunning);
    connect(clock, &replayClock_t::speedChanged, this, &replayControls_t::showSpeed);
    showTime(clock->time());
    showRunning();
    showSpeed(clock->speed());
}

double replayControls_t::timeSpan() const
{
    return m_spanBox->currentData().toDouble();
}

void replayControls_t::setTimeSpan(double seconds)
{
    const int index = m_spanBox->findData(seconds);
    if (index < 0 || index == m_spanBox->currentIndex())
        return;
    m_spanBox->setCurrentIndex(index);
    Q_EMIT timeSpanChanged(seconds);
}

void replayControls_t::followInTabOrder(QWidget* last)
{
    for (QWidget* next : {static_cast<QWidget*>(m_pauseButton), static_cast<QWidget*>(m_speedBox),
                          static_cast<QWidget*>(m_seekSlider), static_cast<QWidget*>(m_spanBox)}) {
        setTabOrder(last, next);
        last = next;
    }
}

void replayControls_t::changeSpeed(int steps)
{
    const int index = std::clamp(m_speedBox->currentIndex() + steps, 0, m_speedBox->count() - 1);
    m_clock->setSpeed(m_speedBox->itemData(index).toDouble());
}

void replayControls_t::showTime(double time)
{
    const double span = m_clock->end() - m_clock->start();
    const double share = span > 0.0 ? (time - m_clock->start()) / span : 0.0;
    {
        const QSignalBlocker blocker(m_seekSlider); // following isn't seeking
        m_seekSlider->setValue(static_cast<int>(std::lround(share * SLIDER_STEPS)));
    }
    m_elapsedLabel->setText(durationText(time - m_clock->start()));
    m_remainingLabel->setText(QStringLiteral("-") + durationText(m_clock->end() - time));
}

void replayControls_t::showRunning()
{
    m_pauseButton->setText(m_clock->isRunning() ? tr("Pause") : tr("Resume"));
}

// A speed from the command line may be none of those to choose from; it joins them in its place.
void replayControls_t::showSpeed(double speed)
{
    int index = 0;
    while (index < m_speedBox->count() && m_speedBox->itemData(index).toDouble() < speed)
        ++index;
    if (index == m_speedBox->count() || m_speedBox->itemData(index).toDouble() != speed)
        m_speedBox->insertItem(index, QStringLiteral("%1\u00d7").arg(speed), speed);
    m_speedBox->setCurrentIndex(index);
}

} // namespace survey_console
