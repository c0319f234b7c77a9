#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QWidget>
#include <memory>

class QTimer;

namespace zorbin_qt_gui {
struct indicatorPrivate_t;

/// A round lamp, lit or unlit, in the palette's QPalette::Highlight colour or one of its own. It
/// may blink while it is on, in step with all blinking lamps of the process: lit for 500 ms, dark
/// for 500 ms. An unlit or disabled lamp is a disc in the colour QPalette::Window. The outline is
/// in the colour QPalette::WindowText. GUI thread only. \image html indicators.png
class ZORBIN_QT_GUI_EXPORT indicator_t : public QWidget
{
    Q_OBJECT

public:
    /// The clock of all blinking lamps.
    class ZORBIN_QT_GUI_EXPORT alertTimer_t;

    /// Makes a lamp that is on and doesn't blink.
    explicit indicator_t(QWidget* parent = nullptr);
    ~indicator_t() override;

    /// Sets whether the lamp blinks while it is on, false at first.
    void alertWhenOn(bool alert);
    /// Sets whether nothing is drawn while the lamp is off, false at first.
    void hideWhenOff(bool hide);

    /// 10 x 10.
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Lights the lamp in \p color_ from now on, black if that is invalid. There is no way back to
    /// the palette's colour.
    void setColor(QColor color_);
    /// Switches the lamp, which is on at first.
    void setOn(bool on_);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void followAlertTimer(bool follow);

    const std::unique_ptr<indicatorPrivate_t> m_d;
};

/// One object for the process, made when the first lamp blinks and never deleted. It goes on in
/// each later QApplication of the process.
class ZORBIN_QT_GUI_EXPORT indicator_t::alertTimer_t : public QObject
{
    Q_OBJECT

public:
    /// The clock; makes it when called first.
    static alertTimer_t* instance();

    /// Whether blinking lamps are lit at present; false at first.
    bool drawOn() const;

Q_SIGNALS:
    void alert(); ///< Every 500 ms, after drawOn() has changed.

public Q_SLOTS:
    /// Changes drawOn() and emits alert().
    void alertTimeout();

private:
    alertTimer_t();

    static alertTimer_t* INSTANCE;
    QTimer* const m_alertTimer;
    bool m_drawOn = false;
};
} // namespace zorbin_qt_gui
