#pragma once
#include "recording.h"

#include <QFrame>
#include <QPointF>
#include <vector>

namespace zorbin_qt_gui {
class imageFrame_t;
}

namespace survey_console {

/// A picture of the track, north up, with the vessel on it and a scale. All of the recording's
/// track is in it from the start, so that it never moves; what has been sailed is bright.
class trackPanel_t : public QFrame
{
    Q_OBJECT
public:
    /// Copies the positions from \p recording.
    explicit trackPanel_t(const recording_t& recording, QWidget* parent = nullptr);

    /// How many of the positions have been sailed.
    std::size_t sailed() const { return m_sailed; }

    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /// Shows the vessel where it is at \p time_, in seconds.
    void showTime(double time_);

private:
    void draw();

    struct point_t
    {
        double time;      // s
        QPointF position; // m east and south of the first one
    };

    std::vector<point_t> m_track;
    QRectF m_extent; // of m_track, m
    std::size_t m_sailed = 0;
    zorbin_qt_gui::imageFrame_t* m_picture;
};

/// The longest of 1, 2 and 5 times a power of ten that is not above \p length, which is positive.
double roundLength(double length);

} // namespace survey_console
