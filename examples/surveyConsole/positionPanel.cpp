#include "positionPanel.h"
#include "labels.h"
#include "passingWheel.h"
#include "texts.h"
#include "theme.h"

#include <QComboBox>
#include <QGridLayout>
#include <QPushButton>
#include <limits>

using zorbin_qt_gui::coordFormatSelector_t;
using zorbin_qt_gui::latitudeEditor_t;
using zorbin_qt_gui::latLonEditor_t;
using zorbin_qt_gui::longitudeEditor_t;

namespace survey_console {
namespace {

const double NO_COORDINATE = std::numeric_limits<double>::quiet_NaN(); // empties an editor
const int GROUP_SPACING = 18;                                          // px

// A latitude or longitude that only shows, as bright as one that is entered.
void makeDisplay(latLonEditor_t* editor)
{
    QPalette palette = editor->palette();
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, theme::text());
    editor->setPalette(palette);
    editor->setEnabled(false);
}

} // namespace

positionPanel_t::positionPanel_t(const recording_t& recording, QWidget* parent)
    : QFrame(parent), m_recording(recording), m_selector(new coordFormatSelector_t),
      m_nearestButton(new QPushButton(tr("Go to nearest")))
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 6, 10, 10);
    layout->setVerticalSpacing(6);
    layout->setHorizontalSpacing(12);
    layout->setColumnStretch(1, 1);

    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(tr("Position"));
    m_selector->setObjectName(QStringLiteral("formatSelector"));
    m_selector->setToolTip(tr("Notation of all coordinates"));
    layout->addWidget(title, 0, 0);
    layout->addWidget(m_selector, 0, 1, Qt::AlignRight);
    m_vesselEditors = addEditors(tr("Vessel"), QStringLiteral("vessel"),
                                 tr("Position of the vessel"), 1.3, layout);
    m_targetEditors = addEditors(
        tr("Go to"), QStringLiteral("target"),
        tr("A position of your own: type it, or paste it in any usual form"), 1.0, layout);
    m_rangeLabel = addReadOut(tr("Range"), "targetRangeLabel", layout);
    m_bearingLabel = addReadOut(tr("Bearing"), "targetBearingLabel", layout);
    m_rangeLabel->setToolTip(tr("From the vessel along the great circle"));
    m_bearingLabel->setToolTip(tr("From the vessel, true"));
    m_nearestButton->setObjectName(QStringLiteral("nearestButton"));
    m_nearestButton->setToolTip(tr("Go to the time at which the vessel was nearest to it"));
    m_nearestButton->setFocusPolicy(Qt::TabFocus);
    layout->addWidget(m_nearestButton, layout->rowCount(), 1, Qt::AlignRight);
    layout->setRowStretch(layout->rowCount(), 1);

    // Before the editors hear of it: one that changes its notation is no coordinate for a moment.
    connect(m_selector, &coordFormatSelector_t::selectionChanged, this,
            [this](latLonEditor_t::coordFormat_t format) { m_format = format; });
    for (latLonEditor_t* editor : {m_vesselEditors.latitude, m_vesselEditors.longitude,
                                   m_targetEditors.latitude, m_targetEditors.longitude}) {
        editor->setCoordinateFormat(m_format);
        editor->connectFormatSelector(m_selector, false);
        // What is no coordinate keeps its notation; it catches up as soon as it is one.
        connect(editor, &latLonEditor_t::valueValidityChanged, this, [this, editor](bool isValid) {
            if (isValid)
                editor->setCoordinateFormat(m_format);
        });
    }
    for (QComboBox* box : findChildren<QComboBox*>())
        letWheelPass(box);
    for (latLonEditor_t* editor : {m_vesselEditors.latitude, m_vesselEditors.longitude}) {
        makeDisplay(editor);
        editor->setValue(NO_COORDINATE); // until there is a fix
    }
    if (!m_recording.fixes().empty()) {
        m_targetEditors.latitude->setValue(m_recording.fixes().front().position.latitude());
        m_targetEditors.longitude->setValue(m_recording.fixes().front().position.longitude());
    }
    m_targetEditors.latitude->pairWith(m_targetEditors.longitude);
    for (latLonEditor_t* editor : {m_targetEditors.latitude, m_targetEditors.longitude}) {
        connect(editor, &latLonEditor_t::valueChanged, this, &positionPanel_t::showRange);
        connect(editor, &latLonEditor_t::valueValidityChanged, this, &positionPanel_t::showRange);
    }
    connect(m_nearestButton, &QPushButton::clicked, this, &positionPanel_t::goToNearest);
    showRange();
}

void positionPanel_t::chooseFormat(latLonEditor_t::coordFormat_t format)
{
    m_selector->changeSelection(format);
}

positionPanel_t::editors_t positionPanel_t::addEditors(const QString& title,
                                                       const QString& objectName,
                                                       const QString& toolTip, double sizeFactor,
                                                       QGridLayout* layout)
{
    const editors_t editors = {new latitudeEditor_t(this), new longitudeEditor_t(this)};
    editors.latitude->setObjectName(objectName + QStringLiteral("Latitude"));
    editors.longitude->setObjectName(objectName + QStringLiteral("Longitude"));
    auto* titleLabel = makeLabel(theme::text(), 1.0, Qt::AlignLeft | Qt::AlignBottom);
    titleLabel->setText(title);
    const int titleRow = layout->rowCount();
    layout->addWidget(titleLabel, titleRow, 0, 1, 2);
    layout->setRowMinimumHeight(titleRow, titleLabel->sizeHint().height() + GROUP_SPACING);
    const auto addRow = [&](const QString& name, latLonEditor_t* editor) {
        editor->setToolTip(toolTip);
        auto* label = makeLabel(theme::quietText(), 1.0, Qt::AlignLeft | Qt::AlignVCenter);
        label->setText(name);
        QFont font = editor->font();
        font.setPointSizeF(font.pointSizeF() * sizeFactor);
        editor->setFont(font);
        const int row = layout->rowCount();
        layout->addWidget(label, row, 0);
        layout->addWidget(editor, row, 1);
    };
    addRow(tr("Latitude"), editors.latitude);
    addRow(tr("Longitude"), editors.longitude);
    return editors;
}

QLabel* positionPanel_t::addReadOut(const QString& name, const char* objectName,
                                    QGridLayout* layout)
{
    auto* label = makeLabel(theme::quietText(), 1.0, Qt::AlignLeft | Qt::AlignVCenter);
    label->setText(name);
    auto* value = makeLabel(theme::firstCurve(), 1.6, Qt::AlignRight | Qt::AlignVCenter);
    value->setObjectName(QString::fromLatin1(objectName));
    const int row = layout->rowCount();
    layout->addWidget(label, row, 0);
    layout->addWidget(value, row, 1);
    return value;
}

void positionPanel_t::showTime(double time_)
{
    const fix_t* fix = newestAt(m_recording.fixes(), time_);
    const QGeoCoordinate vessel = fix ? fix->position : QGeoCoordinate();
    if (m_vessel == vessel)
        return; // most frames come between two fixes
    m_vessel = vessel;
    m_vesselEditors.latitude->setValue(fix ? vessel.latitude() : NO_COORDINATE);
    m_vesselEditors.longitude->setValue(fix ? vessel.longitude() : NO_COORDINATE);
    showRange();
}

void positionPanel_t::showRange()
{
    const QGeoCoordinate to = target();
    const bool isKnown = to.isValid() && m_vessel.isValid();
    m_rangeLabel->setText(isKnown ? rangeText(m_vessel.distanceTo(to)) : noValueText());
    m_bearingLabel->setText(isKnown ? bearingText(m_vessel.azimuthTo(to)) : noValueText());
    m_nearestButton->setEnabled(to.isValid() && !m_recording.fixes().empty());
}

void positionPanel_t::goToNearest()
{
    if (const fix_t* fix = nearestTo(m_recording.fixes(), target()))
        Q_EMIT timeChosen(fix->time);
}

QGeoCoordinate positionPanel_t::target() const
{
    double latitude = 0.0;
    double longitude = 0.0;
    if (!m_targetEditors.latitude->value(latitude) || !m_targetEditors.longitude->value(longitude))
        return {};
    return {latitude, longitude};
}

} // namespace survey_console
