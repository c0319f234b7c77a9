#pragma once
#include "pingModel.h"
#include "pingPlayer.h"
#include "pingRenderer.h"

#include <QFrame>

class QComboBox;
class QGridLayout;
class QLabel;
class QSlider;
class QToolButton;

namespace survey_console {
class levelHistogram_t;
class pingView_t;
class sounderPanel_t;
class valueRuler_t;

/// A sidescan record as a waterfall between rulers of range and ping, with the levels of what it
/// shows in a histogram.
///
/// It follows a replay: the pings come at the pace of the record, which begins anew at its end. The
/// waterfall shows the newest ping until it is scrolled back; it then stands still while pings
/// arrive. The range ruler's drag, click and double click choose what is shown across the track,
/// dragging over the histogram the levels that the colours are stretched over. Below the histogram
/// are the controls of a simulated sounder.
class sonarPanel_t : public QFrame
{
    Q_OBJECT
public:
    /// Shows \p record, which must outlive the panel and holds at least one ping.
    sonarPanel_t(const QString& name, const sonarRecord_t& record, QWidget* parent = nullptr);
    ~sonarPanel_t() override;

    pingModel_t* model() { return &m_model; }
    pingView_t* view() const { return m_view; }
    sounderPanel_t* sounderPanel() const { return m_sounderPanel; }

    /// Shows the full range again.
    void showWholeSwath();
    /// The palette chosen, to be chosen again in another run: the name of its file without the
    /// ending. Empty if there is none.
    QString paletteChoice() const;
    /// Goes over to such a palette, if it is there.
    void choosePaletteAgain(const QString& choice);

    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /// Shows what has come \p seconds_ after the start of the replay.
    void showTime(double seconds_);

private:
    QWidget* makeHeader(const QString& name);
    QWidget* makeLevels();
    void choosePalette(int row);
    void chooseBounds(double start, double end);
    void chooseOrientation(Qt::Orientation orientation);
    void showBounds(double beg, double end);
    void showPosition();
    void goToNewest();
    void showPointed(int index, double coord);
    void countLevels();
    void showLevels(float min, float max);

    const sonarRecord_t& m_record;
    pingModel_t m_model;
    pingPlayer_t m_player;
    pingRenderer_t m_renderer;
    pingView_t* m_view;
    valueRuler_t* m_rangeRuler;
    valueRuler_t* m_pingRuler;
    QGridLayout* m_waterfallLayout;
    QComboBox* m_paletteBox;
    QToolButton* m_orientationButton;
    QToolButton* m_wholeButton;
    QToolButton* m_newestButton;
    QSlider* m_scrollSlider;
    QLabel* m_pointerLabel;
    sounderPanel_t* m_sounderPanel;
    levelHistogram_t* m_histogram;
    valueRuler_t* m_levelRuler;
    QLabel* m_levelLabel;
    int m_countedEnd = 0; // of the view when its levels were counted last
};

} // namespace survey_console
