#include "sonarPanel.h"
#include "curvePalette.h"
#include "labels.h"
#include "levelHistogram.h"
#include "palette.h"
#include "pingView.h"
#include "sounderPanel.h"
#include "texts.h"
#include "theme.h"
#include "valueRuler.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

using zorbin_qt_gui::palette_t;
using zorbin_qt_gui::ruler_t;

namespace survey_console {
namespace {

const float SCALE_MIN = -70.0F; // dB, of the histogram
const float SCALE_MAX = 0.0F;
const float FIRST_MIN = -30.0F; // dB, of the colours
const float FIRST_MAX = 0.0F;
const unsigned LEVEL_BINS = 140;  // of half a dB
const int LEVELS_PERIOD = 16;     // pings between counts of the levels while the view follows
const std::size_t LEVEL_STEP = 4; // one sample of so many is counted
const int SIDE_WIDTH = 260;       // px
const QSize ICON_SIZE(28, 12);
const int CHOICE_ROLE = Qt::UserRole + 1; // of the palettes, beside their numbers

struct choice_t
{
    palette_t::standardPalette_t which;
    const char* choice;
    const char* name;
};
const choice_t PALETTES[] = {
    {palette_t::SP_SIDESCAN, "sidescan", QT_TRANSLATE_NOOP("sonarPanel_t", "Sidescan")},
    {palette_t::SP_IMAGERY, "imagery", QT_TRANSLATE_NOOP("sonarPanel_t", "Imagery")},
    {palette_t::SP_INTENSITY, "intensity", QT_TRANSLATE_NOOP("sonarPanel_t", "Intensity")},
};

QToolButton* makeButton(const char* name, const QString& text, const QString& toolTip)
{
    auto* button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setText(text);
    button->setToolTip(toolTip);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

sonarPanel_t::sonarPanel_t(const QString& name, const sonarRecord_t& record, QWidget* parent)
    : QFrame(parent), m_record(record), m_player(m_record, &m_model),
      m_renderer(m_record.slantRange), m_view(new pingView_t),
      m_rangeRuler(new valueRuler_t(valueRuler_t::KIND_RANGE)),
      m_pingRuler(new valueRuler_t(valueRuler_t::KIND_PLAIN)), m_waterfallLayout(new QGridLayout),
      m_scrollSlider(new QSlider(Qt::Horizontal)),
      m_pointerLabel(makeLabel(theme::text(), 1.0, Qt::AlignCenter)),
      m_sounderPanel(new sounderPanel_t)
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    setBackground(m_view, theme::chart());
    m_view->setObjectName(QStringLiteral("waterfall"));
    m_rangeRuler->setObjectName(QStringLiteral("rangeRuler"));
    m_pingRuler->setObjectName(QStringLiteral("pingRuler"));
    m_scrollSlider->setObjectName(QStringLiteral("scrollSlider"));
    m_pointerLabel->setObjectName(QStringLiteral("sonarPointerLabel"));
    m_pointerLabel->setMinimumHeight(m_pointerLabel->fontMetrics().height());
    m_scrollSlider->setToolTip(tr("Look back at earlier pings; at its right end the newest shows"));
    m_scrollSlider->setFocusPolicy(Qt::TabFocus);
    m_rangeRuler->interactive(true);
    m_rangeRuler->setToolTip(tr("Range (m), port and starboard: drag to look closer, click to "
                                "centre, double-click to show twice as much"));
    m_pingRuler->setToolTip(tr("Number of the ping"));

    m_waterfallLayout->setSpacing(0);
    m_waterfallLayout->addWidget(m_view, 1, 1);
    m_waterfallLayout->setRowStretch(1, 1);
    m_waterfallLayout->setColumnStretch(1, 1);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 4, 10, 6);
    layout->setHorizontalSpacing(16);
    layout->setVerticalSpacing(4);
    layout->addWidget(makeHeader(name), 0, 0, 1, 2);
    layout->addLayout(m_waterfallLayout, 1, 0);
    auto* side = new QVBoxLayout;
    side->setSpacing(24);
    side->addWidget(makeLevels());
    side->addWidget(m_sounderPanel);
    side->addStretch();
    layout->addLayout(side, 1, 1, 3, 1);
    layout->addWidget(m_scrollSlider, 2, 0);
    layout->addWidget(m_pointerLabel, 3, 0);
    layout->setRowStretch(1, 1);
    layout->setColumnStretch(0, 1);

    m_view->setRenderer(&m_renderer);
    m_view->setModel(&m_model);
    m_view->installEventFilter(this);
    connect(m_view, &pingView_t::boundsChanged, this, &sonarPanel_t::showBounds);
    connect(m_view, &pingView_t::positionChanged, this, &sonarPanel_t::showPosition);
    connect(m_view, &pingView_t::pointedItemChanged, this, &sonarPanel_t::showPointed);
    connect(m_rangeRuler, &valueRuler_t::scaleChosen, this, &sonarPanel_t::chooseBounds);
    connect(m_scrollSlider, &QSlider::valueChanged, m_view, [this](int index) {
        m_view->position(index);
        countLevels();
    });
    connect(&m_model, &pingModel_t::itemAdded, this, &sonarPanel_t::showPosition);
    connect(&m_model, &pingModel_t::modelReset, this, &sonarPanel_t::goToNewest);
    connect(m_histogram, &levelHistogram_t::rangeChosen, this, &sonarPanel_t::showLevels);
    m_histogram->chooseRange(FIRST_MIN, FIRST_MAX);
    choosePalette(0);
    chooseOrientation(Qt::Vertical);
    m_view->bounds(-m_record.slantRange, m_record.slantRange);
    showPosition();
}

sonarPanel_t::~sonarPanel_t()
{
    m_view->disconnect(this); // it tells of its end as the model goes
    delete m_view;
}

QWidget* sonarPanel_t::makeHeader(const QString& name)
{
    auto* header = new QWidget;
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(tr("Sidescan"));
    layout->addWidget(title);
    auto* record = makeLabel(theme::quietText(), 0.9, Qt::AlignLeft | Qt::AlignVCenter);
    record->setTextFormat(Qt::PlainText);
    record->setText(tr("%1, recorded %2, starts over at its end")
                        .arg(name, dateText(m_record.pings.front().time)));
    layout->addWidget(record, 1);

    m_newestButton = makeButton("newestButton", tr("Newest"), QString());
    m_wholeButton =
        makeButton("wholeButton", tr("Whole swath"), tr("Show the full range again (A)"));
    m_orientationButton =
        makeButton("orientationButton", tr("Turn"), tr("Let the pings run down or to the left"));
    m_paletteBox = new QComboBox;
    m_paletteBox->setObjectName(QStringLiteral("sonarPaletteBox"));
    m_paletteBox->setToolTip(tr("The colours of the levels"));
    m_paletteBox->setIconSize(ICON_SIZE);
    for (const choice_t& choice : PALETTES) {
        palette_t palette;
        if (!palette.load(choice.which) || palette.colorTable().empty())
            continue;
        m_paletteBox->addItem(QIcon(swatch(palette, ICON_SIZE)), tr(choice.name),
                              static_cast<int>(choice.which));
        m_paletteBox->setItemData(m_paletteBox->count() - 1, QString::fromLatin1(choice.choice),
                                  CHOICE_ROLE);
    }
    m_paletteBox->setEnabled(m_paletteBox->count() > 0);
    for (QWidget* widget :
         {static_cast<QWidget*>(m_newestButton), static_cast<QWidget*>(m_wholeButton),
          static_cast<QWidget*>(m_orientationButton), static_cast<QWidget*>(m_paletteBox)})
        layout->addWidget(widget);

    connect(m_newestButton, &QToolButton::clicked, this, &sonarPanel_t::goToNewest);
    connect(m_wholeButton, &QToolButton::clicked, this, &sonarPanel_t::showWholeSwath);
    connect(m_orientationButton, &QToolButton::clicked, this, [this] {
        chooseOrientation(m_view->orientation() == Qt::Vertical ? Qt::Horizontal : Qt::Vertical);
    });
    connect(m_paletteBox, QOverload<int>::of(&QComboBox::activated), this,
            &sonarPanel_t::choosePalette);
    return header;
}

QWidget* sonarPanel_t::makeLevels()
{
    auto* levels = new QWidget;
    levels->setFixedWidth(SIDE_WIDTH);
    auto* layout = new QVBoxLayout(levels);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    auto* header = new QHBoxLayout;
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(QStringLiteral("%1 <span style=\"color:%2\">dB</span>")
                       .arg(tr("Levels"), theme::quietText().name()));
    m_levelLabel = makeLabel(theme::firstCurve(), 1.1, Qt::AlignRight | Qt::AlignVCenter);
    m_levelLabel->setObjectName(QStringLiteral("levelLabel"));
    header->addWidget(title);
    header->addWidget(m_levelLabel, 1);
    m_histogram = new levelHistogram_t;
    m_histogram->setObjectName(QStringLiteral("histogram"));
    m_histogram->setScale(SCALE_MIN, SCALE_MAX);
    m_histogram->numBins(LEVEL_BINS);
    m_histogram->setFixedHeight(150);
    m_histogram->setToolTip(tr("How often each level is in view. Drag to choose the levels that "
                               "the colours are stretched over"));
    QPalette palette = m_histogram->palette();
    palette.setColor(QPalette::Text, theme::quietText());
    palette.setColor(QPalette::Highlight, theme::frame());
    palette.setColor(QPalette::HighlightedText, theme::firstCurve());
    m_histogram->setPalette(palette);
    m_levelRuler = new valueRuler_t(valueRuler_t::KIND_PLAIN);
    m_levelRuler->moveTo(ruler_t::BOTTOM);
    m_levelRuler->follow(static_cast<double>(SCALE_MIN), static_cast<double>(SCALE_MAX));
    layout->addLayout(header);
    layout->addWidget(m_histogram);
    layout->addWidget(m_levelRuler);
    return levels;
}

void sonarPanel_t::showWholeSwath()
{
    m_view->bounds(-m_record.slantRange, m_record.slantRange);
}

QString sonarPanel_t::paletteChoice() const
{
    return m_paletteBox->currentData(CHOICE_ROLE).toString();
}

void sonarPanel_t::choosePaletteAgain(const QString& choice)
{
    const int row = m_paletteBox->findData(choice, CHOICE_ROLE);
    if (row < 0)
        return;
    m_paletteBox->setCurrentIndex(row);
    choosePalette(row);
}

void sonarPanel_t::choosePalette(int row)
{
    palette_t palette;
    if (row < m_paletteBox->count() && palette.load(static_cast<palette_t::standardPalette_t>(
                                           m_paletteBox->itemData(row).toInt()))) {
        m_renderer.setPalette(palette);
        return;
    }
    std::vector<unsigned int> table; // grey, for want of others
    for (int level = 0; level < 256; ++level)
        table.push_back(qRgb(level, level, level));
    palette_t greys;
    greys.setColorTable(table, palette_t::DEPTH_24);
    m_renderer.setPalette(greys);
}

// Never beyond the swath: there is nothing.
void sonarPanel_t::chooseBounds(double start, double end)
{
    const double swath = m_record.slantRange;
    const double beg = std::clamp(std::min(start, end), -swath, swath - valueRuler_t::MIN_SPAN);
    m_view->bounds(beg, std::clamp(std::max(start, end), beg + valueRuler_t::MIN_SPAN, swath));
}

// The rulers change places.
void sonarPanel_t::chooseOrientation(Qt::Orientation orientation)
{
    const bool isVertical = orientation == Qt::Vertical;
    m_waterfallLayout->removeWidget(m_rangeRuler);
    m_waterfallLayout->removeWidget(m_pingRuler);
    m_rangeRuler->moveTo(isVertical ? ruler_t::TOP : ruler_t::LEFT);
    m_pingRuler->moveTo(isVertical ? ruler_t::LEFT : ruler_t::BOTTOM);
    m_rangeRuler->setMinimumSize(0, 0); // those of the former edge
    m_pingRuler->setMinimumSize(0, 0);
    m_rangeRuler->setCursor(isVertical ? Qt::SplitHCursor : Qt::SplitVCursor);
    if (isVertical) {
        m_waterfallLayout->addWidget(m_rangeRuler, 0, 1);
        m_waterfallLayout->addWidget(m_pingRuler, 1, 0);
    } else {
        m_waterfallLayout->addWidget(m_rangeRuler, 1, 0);
        m_waterfallLayout->addWidget(m_pingRuler, 2, 1);
    }
    m_view->orientation(orientation);
    showBounds(m_view->begBound(), m_view->endBound());
    showPosition();
    countLevels();
}

void sonarPanel_t::showTime(double seconds_)
{
    m_player.goTo(seconds_);
    m_sounderPanel->showTime(seconds_);
    if (std::abs(m_view->position() + 1 - m_countedEnd) >= LEVELS_PERIOD)
        countLevels();
}

void sonarPanel_t::showBounds(double beg, double end)
{
    if (m_view->orientation() == Qt::Vertical)
        m_rangeRuler->follow(beg, end);
    else
        m_rangeRuler->follow(end, beg); // port is at the top
    m_wholeButton->setEnabled(beg != -m_record.slantRange || end != m_record.slantRange);
    countLevels();
}

void sonarPanel_t::showPosition()
{
    if (m_model.itemCount() > 0 && m_view->position() < m_model.begin())
        m_view->position(m_model.begin()); // what it showed has gone
    const double end = m_view->position() + 1.0;
    m_pingRuler->follow(end - m_view->visibleCount(), end);
    const bool isNewest = m_view->position() == m_model.end() - 1;
    const QSignalBlocker blocker(m_scrollSlider); // following isn't scrolling
    m_scrollSlider->setRange(m_model.begin(), std::max(m_model.end() - 1, m_model.begin()));
    m_scrollSlider->setPageStep(std::max(m_view->visibleCount(), 1));
    m_scrollSlider->setValue(m_view->position());
    m_newestButton->setEnabled(!isNewest);
    m_newestButton->setToolTip(isNewest ? tr("The newest pings show")
                                        : tr("Earlier pings show; click for the newest"));
    QPalette palette = m_newestButton->palette();
    const QColor color = isNewest ? theme::quietText() : theme::paused();
    if (palette.color(QPalette::ButtonText) != color) {
        palette.setColor(QPalette::ButtonText, color);
        m_newestButton->setPalette(palette);
    }
}

void sonarPanel_t::goToNewest()
{
    m_view->position(m_model.end() - 1);
    m_view->regenAll(); // the model may hold others at the same place
    showPosition();
    countLevels();
}

void sonarPanel_t::showPointed(int index, double coord)
{
    if (!m_model.holds(index)) {
        m_rangeRuler->clearIndicator();
        m_pingRuler->clearIndicator();
        m_pointerLabel->setText(QString());
        return;
    }
    m_rangeRuler->indicator(coord);
    m_pingRuler->indicator(index + 0.5);
    const ping_t& ping = m_model.ping(index);
    const double samples = static_cast<double>(ping.levels.size());
    const double sample = (coord / m_record.slantRange + 1.0) * 0.5 * samples;
    QString text = tr("ping %1   %2 UTC   %3 m %4")
                       .arg(index)
                       .arg(timeText(ping.time, 2), valueText(std::abs(coord), 1),
                            coord < 0.0 ? tr("port") : tr("starboard"));
    if (sample >= 0.0 && sample < samples)
        text += tr("   %1 dB")
                    .arg(valueText(
                        static_cast<double>(ping.levels[static_cast<std::size_t>(sample)]), 0));
    m_pointerLabel->setText(text);
}

// Of what is in view, a sample out of LEVEL_STEP.
void sonarPanel_t::countLevels()
{
    m_histogram->clear();
    m_countedEnd = m_view->position() + 1;
    const double perMetre =
        static_cast<double>(m_record.pings.front().levels.size()) / (2.0 * m_record.slantRange);
    const double count = static_cast<double>(m_record.pings.front().levels.size());
    const auto columnOf = [&](double coord) {
        return static_cast<std::size_t>(
            std::clamp((coord + m_record.slantRange) * perMetre, 0.0, count));
    };
    const std::size_t left = columnOf(m_view->begBound());
    const std::size_t right = columnOf(m_view->endBound());
    std::vector<float> levels;
    const int first = std::max(m_countedEnd - m_view->visibleCount(), m_model.begin());
    for (int index = first; index < m_countedEnd && m_model.holds(index); ++index) {
        const ping_t& ping = m_model.ping(index);
        for (std::size_t column = left; column < right; column += LEVEL_STEP)
            levels.push_back(ping.levels[column]);
    }
    m_histogram->addData(static_cast<unsigned>(levels.size()), levels.data());
}

void sonarPanel_t::showLevels(float min, float max)
{
    m_renderer.setLevels(min, max);
    m_levelLabel->setText(
        tr("%1 to %2")
            .arg(valueText(static_cast<double>(min), 0), valueText(static_cast<double>(max), 0)));
}

// The rulers show what the view has room for.
bool sonarPanel_t::eventFilter(QObject* watched, QEvent* event)
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
