#include "pingPanel.h"
#include "labels.h"
#include "levelHistogram.h"
#include "paletteBox.h"
#include "pingView.h"
#include "texts.h"
#include "theme.h"
#include "valueRuler.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

using zorbin_qt_gui::ruler_t;

namespace survey_console {
namespace {

const int LEVELS_PERIOD = 16;     // pings between counts of the levels while the view follows
const std::size_t LEVEL_STEP = 4; // one sample of so many is counted
const int SIDE_WIDTH = 260;       // px

// "Depth m", the unit quieter.
QString withUnit(const QString& name, const QString& unit)
{
    return QStringLiteral("%1 <span style=\"color:%2\">%3</span>")
        .arg(name, theme::quietText().name(), unit);
}

} // namespace

QToolButton* makeButton(const char* name, const QString& text, const QString& toolTip)
{
    auto* button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setText(text);
    button->setToolTip(toolTip);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

pingPanel_t::pingPanel_t(const pingPanelSetup_t& setup, const QString& recordName,
                         const sonarRecord_t& record, QWidget* parent)
    : QFrame(parent), m_record(&record), m_player(record, &m_model), m_renderer(record.extent),
      m_view(new pingView_t), m_rangeRuler(new valueRuler_t(valueRuler_t::KIND_RANGE)),
      m_waterfallLayout(new QGridLayout), m_headerLayout(new QHBoxLayout),
      m_sideLayout(new QVBoxLayout),
      m_recordLabel(makeLabel(theme::quietText(), 0.9, Qt::AlignLeft | Qt::AlignVCenter)),
      m_scrollSlider(new QSlider(Qt::Horizontal)),
      m_pointerLabel(makeLabel(theme::text(), 1.0, Qt::AlignCenter))
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    setBackground(m_view, theme::chart());
    m_view->setObjectName(QStringLiteral("waterfall"));
    m_rangeRuler->setObjectName(QStringLiteral("rangeRuler"));
    m_scrollSlider->setObjectName(QStringLiteral("scrollSlider"));
    m_pointerLabel->setObjectName(setup.name + QStringLiteral("PointerLabel"));
    m_pointerLabel->setMinimumHeight(m_pointerLabel->fontMetrics().height());
    m_scrollSlider->setToolTip(tr("Look back at earlier pings; at its right end the newest shows"));
    m_scrollSlider->setFocusPolicy(Qt::TabFocus);
    m_rangeRuler->interactive(true);
    m_rangeRuler->setToolTip(tr("%1: drag to look closer, click to centre, double-click to show "
                                "twice as much")
                                 .arg(setup.range));

    m_waterfallLayout->setSpacing(0);
    m_waterfallLayout->addWidget(m_view, 1, 1);
    m_waterfallLayout->setRowStretch(1, 1);
    m_waterfallLayout->setColumnStretch(1, 1);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 4, 10, 6);
    layout->setHorizontalSpacing(16);
    layout->setVerticalSpacing(4);
    layout->addWidget(makeHeader(setup), 0, 0, 1, 2);
    layout->addLayout(m_waterfallLayout, 1, 0);
    m_sideLayout->setSpacing(24);
    m_sideLayout->addWidget(makeLevels(setup));
    m_sideLayout->addStretch();
    layout->addLayout(m_sideLayout, 1, 1, 3, 1);
    layout->addWidget(m_scrollSlider, 2, 0);
    layout->addWidget(m_pointerLabel, 3, 0);
    layout->setRowStretch(1, 1);
    layout->setColumnStretch(0, 1);

    m_view->setRenderer(&m_renderer);
    m_view->setModel(&m_model);
    m_view->installEventFilter(this);
    connect(m_view, &pingView_t::boundsChanged, this, &pingPanel_t::showBounds);
    connect(m_view, &pingView_t::positionChanged, this, &pingPanel_t::showPosition);
    connect(m_view, &pingView_t::pointedItemChanged, this, &pingPanel_t::showPointed);
    connect(m_rangeRuler, &valueRuler_t::scaleChosen, this, &pingPanel_t::chooseBounds);
    connect(m_scrollSlider, &QSlider::valueChanged, m_view, [this](int index) {
        m_view->position(index);
        countLevels();
    });
    connect(&m_model, &pingModel_t::itemAdded, this, &pingPanel_t::showPosition);
    connect(&m_model, &pingModel_t::modelReset, this, &pingPanel_t::showAnew);
    connect(m_histogram, &levelHistogram_t::rangeChosen, this, &pingPanel_t::showLevels);
    m_histogram->chooseRange(setup.firstMin, setup.firstMax);
    nameRecord(recordName);
    showPalette();
    showWholeRange();
}

pingPanel_t::~pingPanel_t()
{
    m_view->disconnect(this); // it tells of its end as the model goes
    delete m_view;
}

QWidget* pingPanel_t::makeHeader(const pingPanelSetup_t& setup)
{
    auto* header = new QWidget;
    header->setLayout(m_headerLayout);
    m_headerLayout->setContentsMargins(0, 0, 0, 0);
    m_headerLayout->setSpacing(10);
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(setup.unit.isEmpty() ? setup.title : withUnit(setup.title, setup.unit));
    m_headerLayout->addWidget(title);
    m_recordLabel->setTextFormat(Qt::PlainText);
    m_headerLayout->addWidget(m_recordLabel, 1);

    m_newestButton = makeButton("newestButton", tr("Newest"), QString());
    m_wholeButton = makeButton("wholeButton", setup.whole, tr("Show the full range again (A)"));
    m_paletteBox = new paletteBox_t(setup.palettes);
    m_paletteBox->setObjectName(setup.name + QStringLiteral("PaletteBox"));
    for (QWidget* widget :
         {static_cast<QWidget*>(m_newestButton), static_cast<QWidget*>(m_wholeButton),
          static_cast<QWidget*>(m_paletteBox)})
        m_headerLayout->addWidget(widget);
    connect(m_newestButton, &QToolButton::clicked, this, &pingPanel_t::goToNewest);
    connect(m_wholeButton, &QToolButton::clicked, this, &pingPanel_t::showWholeRange);
    connect(m_paletteBox, &paletteBox_t::paletteChosen, this, &pingPanel_t::showPalette);
    return header;
}

QWidget* pingPanel_t::makeLevels(const pingPanelSetup_t& setup)
{
    auto* levels = new QWidget;
    levels->setFixedWidth(SIDE_WIDTH);
    auto* layout = new QVBoxLayout(levels);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    auto* header = new QHBoxLayout;
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(withUnit(tr("Levels"), setup.levels));
    m_levelLabel = makeLabel(theme::firstCurve(), 1.1, Qt::AlignRight | Qt::AlignVCenter);
    m_levelLabel->setObjectName(QStringLiteral("levelLabel"));
    header->addWidget(title);
    header->addWidget(m_levelLabel, 1);
    m_histogram = new levelHistogram_t;
    m_histogram->setObjectName(QStringLiteral("histogram"));
    m_histogram->setScale(setup.scaleMin, setup.scaleMax);
    m_histogram->numBins(setup.bins);
    m_histogram->setFixedHeight(150);
    m_histogram->setToolTip(tr("How often each level is in view. Drag to choose the levels that "
                               "the colours are stretched over"));
    QPalette palette = m_histogram->palette();
    palette.setColor(QPalette::Text, theme::quietText());
    palette.setColor(QPalette::Highlight, theme::frame());
    palette.setColor(QPalette::HighlightedText, theme::firstCurve());
    m_histogram->setPalette(palette);
    auto* levelRuler = new valueRuler_t(valueRuler_t::KIND_PLAIN);
    levelRuler->moveTo(ruler_t::BOTTOM);
    levelRuler->follow(static_cast<double>(setup.scaleMin), static_cast<double>(setup.scaleMax));
    layout->addLayout(header);
    layout->addWidget(m_histogram);
    layout->addWidget(levelRuler);
    return levels;
}

void pingPanel_t::addControl(QWidget* control)
{
    const int place = m_headerLayout->indexOf(m_paletteBox);
    QWidget* before = m_headerLayout->itemAt(place - 1)->widget();
    m_headerLayout->insertWidget(place, control);
    setTabOrder(before, control);
}

void pingPanel_t::addBesideWaterfall(QWidget* widget)
{
    m_sideLayout->insertWidget(m_sideLayout->count() - 1, widget); // above the stretch
}

void pingPanel_t::nameRecord(const QString& recordName)
{
    m_recordLabel->setText(tr("%1, recorded %2, starts over at its end")
                               .arg(recordName, dateText(m_record->pings.front().time)));
}

void pingPanel_t::play(const QString& recordName, const sonarRecord_t& record)
{
    m_record = &record;
    nameRecord(recordName);
    m_renderer.setExtent(record.extent);
    chooseBounds(m_view->begBound(), m_view->endBound());
    m_player.play(record, m_seconds);
}

void pingPanel_t::showWholeRange()
{
    m_view->bounds(m_record->extent.begin, m_record->extent.end);
}

QString pingPanel_t::paletteChoice() const
{
    return m_paletteBox->choice();
}

void pingPanel_t::choosePaletteAgain(const QString& choice)
{
    m_paletteBox->chooseAgain(choice);
}

void pingPanel_t::showPalette()
{
    m_renderer.setPalette(m_paletteBox->chosen());
}

// Never beyond the range: there is nothing. One of less than the smallest span is shown as a whole.
void pingPanel_t::chooseBounds(double start, double end)
{
    const extent_t& whole = m_record->extent;
    const double lastBeg = std::max(whole.end - valueRuler_t::MIN_SPAN, whole.begin);
    const double beg = std::clamp(std::min(start, end), whole.begin, lastBeg);
    const double firstEnd = std::min(beg + valueRuler_t::MIN_SPAN, whole.end);
    m_view->bounds(beg, std::clamp(std::max(start, end), firstEnd, whole.end));
}

void pingPanel_t::arrange(Qt::Orientation orientation, QWidget* pingRuler)
{
    const bool isVertical = orientation == Qt::Vertical;
    m_waterfallLayout->removeWidget(m_rangeRuler);
    m_waterfallLayout->removeWidget(pingRuler);
    m_rangeRuler->moveTo(isVertical ? ruler_t::TOP : ruler_t::LEFT);
    m_rangeRuler->setMinimumSize(0, 0); // that of the former edge
    m_rangeRuler->setCursor(isVertical ? Qt::SplitHCursor : Qt::SplitVCursor);
    if (isVertical) {
        m_waterfallLayout->addWidget(m_rangeRuler, 0, 1);
        m_waterfallLayout->addWidget(pingRuler, 1, 0);
    } else {
        m_waterfallLayout->addWidget(m_rangeRuler, 1, 0);
        m_waterfallLayout->addWidget(pingRuler, 2, 1);
    }
    m_view->orientation(orientation);
    showBounds(m_view->begBound(), m_view->endBound());
    showPosition();
    countLevels();
}

void pingPanel_t::showTime(double seconds_)
{
    m_seconds = seconds_;
    m_player.goTo(seconds_);
    if (std::abs(m_view->position() + 1 - m_countedEnd) >= LEVELS_PERIOD)
        countLevels();
}

void pingPanel_t::showBounds(double beg, double end)
{
    if (m_view->orientation() == Qt::Vertical)
        m_rangeRuler->follow(beg, end);
    else
        m_rangeRuler->follow(end, beg); // the range begins at the top
    m_wholeButton->setEnabled(beg != m_record->extent.begin || end != m_record->extent.end);
    countLevels();
}

void pingPanel_t::showPosition()
{
    if (m_model.itemCount() > 0 && m_view->position() < m_model.begin())
        m_view->position(m_model.begin()); // what it showed has gone
    const int end = m_view->position() + 1;
    Q_EMIT pingsShown(end - m_view->visibleCount(), end);
    m_isNewest = m_view->position() == m_model.end() - 1;
    const QSignalBlocker blocker(m_scrollSlider); // following isn't scrolling
    m_scrollSlider->setRange(m_model.begin(), std::max(m_model.end() - 1, m_model.begin()));
    m_scrollSlider->setPageStep(std::max(m_view->visibleCount(), 1));
    m_scrollSlider->setValue(m_view->position());
    m_newestButton->setEnabled(!m_isNewest);
    m_newestButton->setToolTip(m_isNewest ? tr("The newest pings show")
                                          : tr("Earlier pings show; click for the newest"));
    QPalette palette = m_newestButton->palette();
    const QColor color = m_isNewest ? theme::quietText() : theme::paused();
    if (palette.color(QPalette::ButtonText) != color) {
        palette.setColor(QPalette::ButtonText, color);
        m_newestButton->setPalette(palette);
    }
}

void pingPanel_t::goToNewest()
{
    m_view->position(m_model.end() - 1);
    countLevels();
}

// The model holds others.
void pingPanel_t::showAnew()
{
    if (m_isNewest || !m_model.holds(m_view->position()))
        m_view->position(m_model.end() - 1);
    m_view->regenAll(); // also at the same place
    showPosition();
    countLevels();
}

void pingPanel_t::showPointed(int index, double coord)
{
    if (!m_model.holds(index)) {
        m_rangeRuler->clearIndicator();
        m_pointerLabel->setText(QString());
        return;
    }
    m_rangeRuler->indicator(coord);
    const ping_t& ping = m_model.ping(index);
    m_pointerLabel->setText(tr("ping %1   %2 UTC   %3")
                                .arg(index)
                                .arg(timeText(ping.time, 2), pointedText(ping, coord)));
}

std::optional<float> pingPanel_t::levelAt(const ping_t& ping, double coord) const
{
    const extent_t& extent = m_record->extent;
    const double sample = (coord - extent.begin) * extent.perMetre();
    if (!(sample >= 0.0 && sample < static_cast<double>(ping.levels.size())))
        return std::nullopt;
    return ping.levels[static_cast<std::size_t>(sample)];
}

// Of what is in view, a sample out of LEVEL_STEP.
void pingPanel_t::countLevels()
{
    m_histogram->clear();
    m_countedEnd = m_view->position() + 1;
    const extent_t& extent = m_record->extent;
    const auto sampleOf = [&extent](double coord) {
        return static_cast<std::size_t>(std::clamp((coord - extent.begin) * extent.perMetre(), 0.0,
                                                   static_cast<double>(extent.count)));
    };
    const std::size_t begin = sampleOf(m_view->begBound());
    const std::size_t end = sampleOf(m_view->endBound());
    std::vector<float> levels;
    const int first = std::max(m_countedEnd - m_view->visibleCount(), m_model.begin());
    for (int index = first; index < m_countedEnd && m_model.holds(index); ++index) {
        const std::vector<float>& all = m_model.ping(index).levels;
        for (std::size_t sample = begin; sample < std::min(end, all.size()); sample += LEVEL_STEP)
            levels.push_back(all[sample]);
    }
    m_histogram->addData(static_cast<unsigned>(levels.size()), levels.data());
}

void pingPanel_t::showLevels(float min, float max)
{
    m_renderer.setLevels(min, max);
    m_levelLabel->setText(
        tr("%1 to %2")
            .arg(valueText(static_cast<double>(min), 0), valueText(static_cast<double>(max), 0)));
}

// The rulers show what the view has room for.
bool pingPanel_t::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_view && event->type() == QEvent::Resize)
        QMetaObject::invokeMethod(
            this,
            [this] {
                showPosition();
                countLevels();
            },
            Qt::QueuedConnection); // after the view itself
    return QFrame::eventFilter(watched, event);
}

} // namespace survey_console
