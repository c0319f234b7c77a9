#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QToolButton>
#include <memory>

namespace zorbin_qt_gui {
struct colorPickerPrivate_t;

/// A tool button that shows a colour as its icon; a click opens the standard colour dialog, without
/// alpha. GUI thread only. \image html colorPicker.png
class ZORBIN_QT_GUI_EXPORT colorPicker_t : public QToolButton
{
    Q_OBJECT
    /// The colour shown, Qt::red at first; an invalid one is shown black.
    Q_PROPERTY(QColor selectedColor READ selectedColor WRITE selectedColor NOTIFY
                   selectedColorChanged USER true)

public:
    /// Makes a button that shows Qt::red.
    explicit colorPicker_t(QWidget* parent = nullptr);
    /// Makes a button that shows \p color. An invalid colour leaves it without an icon.
    explicit colorPicker_t(QColor color, QWidget* parent = nullptr);
    ~colorPicker_t() override;

    /// Selects a colour. If it differs, an icon filled with it is made, of the icon size of this
    /// moment (a later size doesn't make it anew), and selectedColorChanged() is emitted. An
    /// invalid colour counts as a colour of its own and is shown black.
    void selectedColor(QColor color);
    /// The colour selected last.
    QColor selectedColor() const;

public Q_SLOTS:
    /// Lets the user select a colour in the modal colour dialog, which starts with the current one.
    /// A cancelled dialog changes nothing. Returns once the dialog is closed.
    void selectColor();

Q_SIGNALS:
    /// Another colour was selected, by the user or by the program.
    void selectedColorChanged(QColor color_);

private:
    const std::unique_ptr<colorPickerPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
