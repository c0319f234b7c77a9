#include "latLonGestures.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>

namespace lat_lon_tests {
namespace {

// Where a click leaves the cursor where it is.
QPoint placeOfCursor(QLineEdit* edit)
{
    QPoint place(1, edit->height() / 2);
    while (place.x() < edit->width() && edit->cursorPositionAt(place) != edit->cursorPosition())
        ++place.rx();
    return place;
}

} // namespace

void latLonTestCase_t::initTestCase()
{
    qRegisterMetaType<latLonEditor_t::coordFormat_t>("latLonEditor_t::coordFormat_t");
}

QLineEdit* lineEdit(const latLonEditor_t& editor)
{
    return editor.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
}

QComboBox* hemisphere(const latLonEditor_t& editor)
{
    return editor.findChild<QComboBox*>(QString(), Qt::FindDirectChildrenOnly);
}

coordFormatSelector_t* ownSelector(const latLonEditor_t& editor)
{
    return editor.findChild<coordFormatSelector_t*>();
}

QComboBox* comboBox(const coordFormatSelector_t& selector)
{
    return selector.findChild<QComboBox*>();
}

int choice(const coordFormatSelector_t& selector)
{
    return comboBox(selector)->currentIndex();
}

QString shownText(const latLonEditor_t& editor)
{
    return lineEdit(editor)->text() + hemisphere(editor)->currentText();
}

double valueOf(const latLonEditor_t& editor)
{
    double value = 0.0;
    return editor.value(value) ? value : NOTHING;
}

QList<double> arguments(const QSignalSpy& spy)
{
    QList<double> all;
    for (const QVariantList& one : spy)
        all.append(one.first().toDouble());
    return all;
}

void type(const latLonEditor_t& editor, int cursor, const QString& keys)
{
    lineEdit(editor)->setCursorPosition(cursor);
    QTest::keyClicks(lineEdit(editor), keys);
}

void paste(QLineEdit* edit, const QString& text)
{
    QApplication::clipboard()->setText(text);
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
}

int pasteFromMenu(QLineEdit* edit, const QString& text)
{
    QApplication::clipboard()->setText(text);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(edit, &event);
    const QPointer<QMenu> menu = edit->findChild<QMenu*>();
    int count = 0;
    const QList<QAction*> actions = menu->actions();
    for (QAction* const action : actions) {
        if (!action->text().contains(QStringLiteral("Paste")))
            continue;
        ++count;
        action->trigger();
    }
    if (!menu.isNull())
        menu->close();
    return count;
}

void pasteSelection(QLineEdit* edit, const QString& text)
{
    QApplication::clipboard()->setText(text, QClipboard::Selection);
    QTest::mouseClick(edit, Qt::MiddleButton, Qt::NoModifier, placeOfCursor(edit));
}

bool drop(QLineEdit* edit, const QString& text)
{
    const QPoint place = placeOfCursor(edit);
    QMimeData dropped;
    dropped.setText(text);
    QDragEnterEvent enter(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(edit, &enter);
    QDropEvent event(place, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(edit, &event);
    return event.isAccepted();
}

void chooseNext(QComboBox* box)
{
    const QPointer<QComboBox> guard(box);
    box->showPopup();
    QAbstractItemView* const view = box->view();
    QTest::keyClick(view, Qt::Key_Down);
    QTest::keyClick(view, Qt::Key_Enter);
    QVERIFY(!guard.isNull()); // Qt has gone on using it
}
} // namespace lat_lon_tests
