#pragma once
#include "curvePalette.h"

#include <QWidget>

class QComboBox;

namespace survey_console {
class paletteSwatch_t;

/// Lets the user choose how a curve is coloured: by a standard palette, by one from a file, or in
/// one colour. Shows the palette chosen over the range of values that it is stretched over.
///
/// Starts with the depth palette; with the first palette there is if that one can't be read, and
/// with one colour if none can. Its size never changes.
class paletteChooser_t : public QWidget
{
    Q_OBJECT
public:
    /// \p range is in \p unit; \p oneColor is what the curve has without a palette.
    paletteChooser_t(const valueRange_t& range, const QString& unit, const QColor& oneColor,
                     QWidget* parent = nullptr);
    ~paletteChooser_t() override;

    /// What the curve is coloured by, made visible on a chart; null for one colour. Lives as long
    /// as it is chosen.
    const zorbin_qt_gui::palette_t* palette() const;
    /// What could not be read; empty again after the next choice.
    QString message() const { return m_message; }

    /// What is chosen, to be chosen again in another run: "plain" for one colour, the name of a
    /// standard palette's file without its ending, or the absolute path of another palette's file.
    QString choice() const;
    /// Goes over to what choice() said. If that isn't there, or can't be read, all stays as it is;
    /// of a file the message says so.
    void chooseAgain(const QString& choice);

    /// Goes over to one colour, \p color, which the list shows. Emits no paletteChanged().
    void chooseOneColor(const QColor& color);
    /// Goes over to the palette in a file, which joins the list. If it can't be read, or holds no
    /// table, only the message changes.
    void chooseFile(const QString& path);

Q_SIGNALS:
    /// Another palette was chosen, or one colour by the list.
    void paletteChanged();
    void messageChanged();

private:
    using palettePointer_t = std::unique_ptr<zorbin_qt_gui::palette_t>;

    int addPalette(const QString& name, const QString& choice, palettePointer_t palette);
    void activate(int row);
    void choose(int row);
    void openFileDialog();
    void setMessage(const QString& message);

    // One per row of the box but the last, "From file...". The first one, null, is one colour.
    std::vector<palettePointer_t> m_palettes;
    QString m_message;
    QComboBox* m_box;
    int m_chosen = 0; // row; the box itself may stand on its last one for a moment
    paletteSwatch_t* m_swatch;
};

} // namespace survey_console
