#pragma once
#include "palette.h"
#include "pingModel.h"
#include "pingPlayer.h"
#include "pingRenderer.h"

#include <QFrame>
#include <optional>

class QGridLayout;
class QHBoxLayout;
class QLabel;
class QSlider;
class QToolButton;
class QVBoxLayout;

namespace survey_console {
class levelHistogram_t;
class paletteBox_t;
class pingView_t;
class valueRuler_t;

/// What tells one panel of pings from another.
struct pingPanelSetup_t
{
    QString name;   ///< begins the object names that tell the panels' widgets apart
    QString title;  ///< what the records are
    QString unit;   ///< of the ruler, to be written beside the title; empty where that is plain
    QString levels; ///< what levels are measured in
    float scaleMin; ///< the levels at the histogram's edges
    float scaleMax;
    unsigned bins;  ///< of the histogram
    float firstMin; ///< the levels of the first and the last colour, at first
    float firstMax;
    std::vector<zorbin_qt_gui::palette_t::standardPalette_t> palettes; ///< the first one at first
    QString range;                                                     ///< what the ruler shows
    QString whole;                                                     ///< what its whole range is
};

/// Pings as a waterfall beside a ruler of ranges, with the levels of what shows in a histogram.
///
/// It follows a replay: the pings come at the pace of the record, which begins anew at its end. The
/// waterfall shows the newest ping until it is scrolled back; it then stands still while pings
/// arrive. The range ruler's drag, click and double click choose what is shown of the range,
/// dragging over the histogram the levels that the colours are stretched over.
///
/// A subclass adds the ruler along the pings and controls of its own.
class pingPanel_t : public QFrame
{
    Q_OBJECT
public:
    ~pingPanel_t() override;

    pingModel_t* model() { return &m_model; }
    pingView_t* view() const { return m_view; }

    /// Shows the full range again.
    void showWholeRange();
    /// The palette chosen, to be chosen again in another run: the name of its file without the
    /// ending. Empty if there is none.
    QString paletteChoice() const;
    /// Goes over to such a palette, if it is there.
    void choosePaletteAgain(const QString& choice);

    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /// Shows what has come \p seconds_ after the start of the replay.
    virtual void showTime(double seconds_);

Q_SIGNALS:
    /// The view has room for the pings from \p begin_ up to, but without, \p end_.
    void pingsShown(int begin_, int end_);

protected:
    /// Shows \p record, which must outlive the panel and holds at least one ping. The subclass
    /// arranges the waterfall.
    pingPanel_t(const pingPanelSetup_t& setup, const QString& recordName,
                const sonarRecord_t& record, QWidget* parent);

    pingRenderer_t* renderer() { return &m_renderer; }
    const sonarRecord_t& record() const { return *m_record; }
    /// Goes over to another record, which likewise must outlive the panel, at the same time of the
    /// replay, and stays where it is scrolled back to.
    void play(const QString& recordName, const sonarRecord_t& record);

    /// Lets the pings run down, \p pingRuler at their left, or to the left, \p pingRuler below.
    void arrange(Qt::Orientation orientation, QWidget* pingRuler);
    /// Shows the range between two metres, in any order, as far as there is one.
    void chooseBounds(double start, double end);
    /// Adds a control at the top, left of the palette.
    void addControl(QWidget* control);
    /// Adds a widget below the histogram.
    void addBesideWaterfall(QWidget* widget);

    /// The level that \p ping has at \p coord; nothing where it has no sample.
    std::optional<float> levelAt(const ping_t& ping, double coord) const;
    /// What the user reads of what is under the pointer, behind the ping's number and time.
    virtual QString pointedText(const ping_t& ping, double coord) const = 0;

private:
    QWidget* makeHeader(const pingPanelSetup_t& setup);
    QWidget* makeLevels(const pingPanelSetup_t& setup);
    void nameRecord(const QString& recordName);
    void showPalette();
    void showBounds(double beg, double end);
    void showPosition();
    void goToNewest();
    void showAnew();
    void showPointed(int index, double coord);
    void countLevels();
    void showLevels(float min, float max);

    const sonarRecord_t* m_record;
    pingModel_t m_model;
    pingPlayer_t m_player;
    pingRenderer_t m_renderer;
    pingView_t* m_view;
    valueRuler_t* m_rangeRuler;
    QGridLayout* m_waterfallLayout;
    QHBoxLayout* m_headerLayout;
    QVBoxLayout* m_sideLayout;
    QLabel* m_recordLabel;
    paletteBox_t* m_paletteBox;
    QToolButton* m_wholeButton;
    QToolButton* m_newestButton;
    QSlider* m_scrollSlider;
    QLabel* m_pointerLabel;
    levelHistogram_t* m_histogram;
    QLabel* m_levelLabel;
    double m_seconds = 0.0; // of the replay
    bool m_isNewest = true; // whether the view shows the newest ping
    int m_countedEnd = 0;   // of the view when its levels were counted last
};

/// A button as the panels' own.
QToolButton* makeButton(const char* name, const QString& text, const QString& toolTip);

} // namespace survey_console
