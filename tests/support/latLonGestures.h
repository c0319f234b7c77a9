#pragma once
#include "latLonEditor.h"
#include "testCase.h"

#include <QList>
#include <QMetaType>
#include <QString>
#include <limits>

class QComboBox;
class QLineEdit;
class QSignalSpy;

/// What tests of latitude and longitude editors share: what an editor is made of, what it shows and
/// announces, and what an operator does with it.
namespace lat_lon_tests {
using zorbin_qt_gui::coordFormatSelector_t;
using zorbin_qt_gui::latLonEditor_t;

constexpr auto CF_D = latLonEditor_t::CF_D;
constexpr auto CF_DM = latLonEditor_t::CF_DM;
constexpr auto CF_DMS = latLonEditor_t::CF_DMS;
constexpr double NOTHING = std::numeric_limits<double>::quiet_NaN();

/// Makes the notations known to what looks at signals.
class latLonTestCase_t : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
};

QLineEdit* lineEdit(const latLonEditor_t& editor);
QComboBox* hemisphere(const latLonEditor_t& editor);
coordFormatSelector_t* ownSelector(const latLonEditor_t& editor);
QComboBox* comboBox(const coordFormatSelector_t& selector);
int choice(const coordFormatSelector_t& selector);

/// Magnitude and hemisphere, as shown.
QString shownText(const latLonEditor_t& editor);
/// The value, or NOTHING.
double valueOf(const latLonEditor_t& editor);

/// What a signal said, oldest first: numbers, or 1 and 0.
QList<double> arguments(const QSignalSpy& spy);

void type(const latLonEditor_t& editor, int cursor, const QString& keys);

/// Ways of a text into a field, where its cursor is.
void paste(QLineEdit* edit, const QString& text);
/// Returns how many entries of the menu paste.
int pasteFromMenu(QLineEdit* edit, const QString& text);
void pasteSelection(QLineEdit* edit, const QString& text);
/// Returns whether it was taken.
bool drop(QLineEdit* edit, const QString& text);

struct way_t
{
    const char* name;
    void (*put)(QLineEdit* edit, const QString& text);
};

constexpr way_t ways[] = {
    {"key", paste},
    {"menu", [](QLineEdit* edit, const QString& text) { pasteFromMenu(edit, text); }},
    {"middle button", pasteSelection},
    {"drop", [](QLineEdit* edit, const QString& text) { drop(edit, text); }},
};

/// Picks the item below, as the user does.
void chooseNext(QComboBox* box);
} // namespace lat_lon_tests

Q_DECLARE_METATYPE(zorbin_qt_gui::latLonEditor_t::coordFormat_t)
