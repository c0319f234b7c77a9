#pragma once
#include "palette.h"

#include <QComboBox>
#include <memory>
#include <vector>

namespace survey_console {

/// A palette that is installed with the library.
struct standardPalette_t
{
    zorbin_qt_gui::palette_t::standardPalette_t which;
    const char* choice; ///< in settings: the name of its file without the ending
    const char* name;   ///< for the user
};

/// All of them, in the order of their names.
const std::vector<standardPalette_t>& standardPalettes();

/// The choice among standard palettes, each with a swatch of its colours. Those that can't be read
/// are left out; without any there is nothing to choose, and the palette is greys.
class paletteBox_t : public QComboBox
{
    Q_OBJECT
public:
    /// Offers some of standardPalettes(), the first of them chosen.
    explicit paletteBox_t(const std::vector<zorbin_qt_gui::palette_t::standardPalette_t>& offered);
    ~paletteBox_t() override;

    /// The palette chosen.
    const zorbin_qt_gui::palette_t& chosen() const;
    /// What is chosen, to be chosen again in another run; empty if there is no choice.
    QString choice() const;
    /// Goes over to what choice() said, if it is there.
    void chooseAgain(const QString& choice);

Q_SIGNALS:
    /// Another palette was chosen, or the same one again.
    void paletteChosen();

private:
    std::vector<std::unique_ptr<zorbin_qt_gui::palette_t>> m_palettes; // one a row, at least one
};

} // namespace survey_console
