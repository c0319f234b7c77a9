#include "navigationPanel.h"
#include "labels.h"
#include "texts.h"
#include "theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>
#include <stripChartImpl.h>

namespace survey_console {

navigationPanel_t::navigationPanel_t(const QString& lineName, const lineCounts_t& counts,
                                     const recording_t& recording, QWidget* parent)
    : QFrame(parent), m_recording(recording), m_pageLayout(new QHBoxLayout),
      m_pageButtons(new QButtonGroup(this)),
      m_timeLabel(makeLabel(theme::text(), 1.8, Qt::AlignCenter)),
      m_positionLabel(makeLabel(theme::text(), 1.3, Qt::AlignCenter)),
      m_stateLabel(makeLabel(theme::running(), 1.3, Qt::AlignRight | Qt::AlignVCenter))
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    m_timeLabel->setObjectName(QStringLiteral("timeLabel"));
    m_positionLabel->setObjectName(QStringLiteral("positionLabel"));
    m_stateLabel->setObjectName(QStringLiteral("stateLabel"));
    m_timeLabel->setToolTip(tr("Time of the recording"));
    m_positionLabel->setToolTip(tr("Position of the vessel"));

    auto* lineLabel = makeLabel(theme::quietText(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    lineLabel->setText(lineName);
    lineLabel->setTextFormat(Qt::PlainText);
    lineLabel->setToolTip(
        tr("The recording that is replayed: %1 lines, %2 of them used, %3 damaged")
            .arg(counts.lines)
            .arg(counts.used)
            .arg(counts.bad));
    auto* damageLabel = makeLabel(theme::paused(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    damageLabel->setObjectName(QStringLiteral("damageLabel"));
    if (counts.bad > 0)
        damageLabel->setText(tr("%1 damaged lines skipped").arg(counts.bad));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 6, 12, 6);
    m_pageLayout->setSpacing(4);
    layout->addLayout(m_pageLayout);
    auto* lineLayout = new QHBoxLayout;
    lineLayout->setSpacing(12);
    lineLayout->addWidget(lineLabel);
    if (zorbin_qt_gui::stripChartImpl_t::implementationType() == "gl") { // else as usual
        auto* backEndLabel = makeLabel(theme::quietText(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
        backEndLabel->setObjectName(QStringLiteral("backEndLabel"));
        backEndLabel->setText(QStringLiteral("OpenGL"));
        backEndLabel->setToolTip(tr("What draws the strip charts"));
        lineLayout->addWidget(backEndLabel);
    }
    lineLayout->addWidget(damageLabel, 1);
    layout->addLayout(lineLayout, 3);
    layout->addWidget(m_timeLabel, 4);
    layout->addWidget(m_positionLabel, 4);
    layout->addWidget(m_stateLabel, 2);
}

void navigationPanel_t::setMenu(QMenu* menu, const QKeySequence& key)
{
    auto* button = new QToolButton;
    button->setObjectName(QStringLiteral("menuButton"));
    button->setText(QStringLiteral("\u2261")); // three bars
    button->setToolTip(tr("Menu (%1): open a recording, keyboard, about this program")
                           .arg(key.toString(QKeySequence::NativeText)));
    button->setShortcut(key);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; }"));
    button->setFocusPolicy(Qt::TabFocus);
    m_pageLayout->insertWidget(0, button);
}

void navigationPanel_t::addPage(int page, const QString& name, const QString& key)
{
    auto* button = new QToolButton;
    button->setObjectName(QStringLiteral("pageButton%1").arg(page));
    button->setText(name);
    button->setToolTip(tr("Page \u201c%1\u201d (%2)").arg(name, key));
    button->setCheckable(true);
    button->setFocusPolicy(Qt::TabFocus);
    m_pageLayout->addWidget(button);
    if (!m_pageButtons->buttons().isEmpty()) // pages come one after another
        setTabOrder(m_pageButtons->buttons().last(), button);
    m_pageButtons->addButton(button, page); // one at a time is marked
    connect(button, &QToolButton::clicked, this, [this, page] { Q_EMIT pageChosen(page); });
}

void navigationPanel_t::showPage(int page)
{
    m_pageButtons->button(page)->setChecked(true);
    for (QAbstractButton* button : m_pageButtons->buttons()) {
        QPalette palette = button->palette();
        palette.setColor(QPalette::ButtonText,
                         button->isChecked() ? theme::firstCurve() : theme::quietText());
        button->setPalette(palette);
    }
}

void navigationPanel_t::showTime(double time_)
{
    const QString time = timeText(time_) + QStringLiteral(" UTC");
    m_timeLabel->setText(m_recording.isDated() ? dateText(time_) + QStringLiteral("  ") + time
                                               : time);
    const fix_t* fix = newestAt(m_recording.fixes(), time_);
    m_positionLabel->setText(fix ? positionText(fix->position) : noValueText());
}

void navigationPanel_t::showReplay(bool running_, bool atEnd_, double speed_)
{
    if (running_)
        m_stateLabel->setText(tr("REPLAY %1\u00d7").arg(speed_));
    else
        m_stateLabel->setText(atEnd_ ? tr("END OF LINE") : tr("PAUSED"));
    setTextColor(m_stateLabel, running_ ? theme::running() : theme::paused());
}

} // namespace survey_console
