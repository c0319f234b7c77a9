#pragma once
#include "zorbinQtGuiExport.h"

#include <QString>
#include <memory>

class QWidget;

namespace zorbin_qt_gui {
struct aboutBoxPrivate_t;

/// The "About" box of an application: its name, version and organisation as registered with
/// QCoreApplication, copyright years, and whatever else it has to say. GUI thread only.
/// \image html aboutBox.png
class ZORBIN_QT_GUI_EXPORT aboutBox_t
{
public:
    /// Prepares a box over \p parent, which is not owned and must live as long as the box is shown.
    explicit aboutBox_t(QWidget* parent);
    ~aboutBox_t();

    /// Sets the copyright years, for example "2024-2026"; none at first.
    void copyrightYears(const QString& years);
    /// Appends HTML to what the box shows after the text of aboutText().
    void addText(const QString& text);

    /// The template of the library, filled in; HTML, without what addText() added. Names are put
    /// in as they are, without escaping.
    QString aboutText();
    /// Shows the box. Returns once the user has closed it.
    void showAboutBox();

private:
    const std::unique_ptr<aboutBoxPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
