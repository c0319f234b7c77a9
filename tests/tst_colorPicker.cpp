#include "colorPicker.h"
#include "testCase.h"

#include <QApplication>
#include <QColorDialog>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>
#include <type_traits>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<colorPicker_t>::value, "buttons aren't copied");

// The one size that the icon was made in; empty for none.
static QSize iconMadeIn(const colorPicker_t& picker)
{
    const QList<QSize> sizes = picker.icon().availableSizes();
    return sizes.isEmpty() ? QSize() : sizes.first();
}

// The icon, which is to have a single colour.
static QColor iconColor(const colorPicker_t& picker)
{
    const QImage image =
        picker.icon().pixmap(iconMadeIn(picker)).toImage().convertToFormat(QImage::Format_ARGB32);
    QImage uniform(image.size(), image.format());
    if (image.isNull())
        return QColor();
    uniform.fill(image.pixel(0, 0));
    return image == uniform ? QColor::fromRgba(image.pixel(0, 0)) : QColor();
}

/// The button that shows a colour and lets the user select another.
class tst_colorPicker : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void startsRed();
    void startsWithTheGivenColor();
    void belongsToItsParent();
    void showsNoIconForAnInvalidColorAtFirst();
    void fillsTheIconWithTheColor();
    void showsTranslucentColorsSo();
    void showsAnInvalidColorBlack();
    void makesTheIconInTheSizeOfTheMoment();
    void makesNoIconOfNoSize();
    void announcesEachChangeOnce();
    void announcesAfterTheChange();
    void takesColorsOfDifferentModelsAsDifferent();
    void takesAnInvalidColorAsAColorOfItsOwn();
    void hasTheColorAsItsProperty();

    void opensTheDialogOnAClick();
    void startsTheDialogWithTheColor();
    void takesTheColorOfTheDialog();
    void keepsTheColorWhenTheDialogIsCancelled();
    void announcesNothingWhenTheSameColorIsChosen();
    void staysSilentWhenDisabled();
    void takesTheColorOfTheDialogAfterAChangeMeanwhile();
    void survivesItsOwnEndInTheDialog_data();
    void survivesItsOwnEndInTheDialog();

private:
    // Calls \p operate once the modal dialog is open.
    template <typename operate_t>
    void whenOpen(const operate_t& operate)
    {
        m_wasOpen = false;
        QTimer::singleShot(0, this, [this, operate] {
            auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            m_wasOpen = dialog != nullptr && QTest::qWaitForWindowExposed(dialog, patienceMs());
            if (dialog != nullptr)
                operate(dialog);
        });
    }

    bool m_wasOpen = false;
};

void tst_colorPicker::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_colorPicker::startsRed()
{
    const colorPicker_t picker(nullptr);
    QCOMPARE(picker.selectedColor(), QColor(Qt::red));
    QCOMPARE(iconColor(picker), QColor(Qt::red));
    QCOMPARE(iconMadeIn(picker), picker.iconSize());
}

void tst_colorPicker::startsWithTheGivenColor()
{
    const colorPicker_t picker(QColor(1, 2, 3), nullptr);
    QCOMPARE(picker.selectedColor(), QColor(1, 2, 3));
    QCOMPARE(iconColor(picker), QColor(1, 2, 3));
}

void tst_colorPicker::belongsToItsParent()
{
    QWidget parent;
    const QPointer<colorPicker_t> plain = new colorPicker_t(&parent);
    const QPointer<colorPicker_t> blue = new colorPicker_t(Qt::blue, &parent);
    QCOMPARE(plain->parentWidget(), &parent);
    QCOMPARE(blue->parentWidget(), &parent);
}

void tst_colorPicker::showsNoIconForAnInvalidColorAtFirst()
{
    const colorPicker_t picker(QColor(), nullptr);
    QVERIFY(!picker.selectedColor().isValid());
    QVERIFY(picker.icon().isNull());
}

void tst_colorPicker::fillsTheIconWithTheColor()
{
    colorPicker_t picker;
    picker.selectedColor(Qt::blue);
    QCOMPARE(iconColor(picker), QColor(Qt::blue));
}

void tst_colorPicker::showsTranslucentColorsSo()
{
    colorPicker_t picker;
    picker.selectedColor(QColor(255, 0, 0, 0));
    QCOMPARE(iconColor(picker).alpha(), 0);
    QCOMPARE(picker.selectedColor(), QColor(255, 0, 0, 0));
}

void tst_colorPicker::showsAnInvalidColorBlack()
{
    colorPicker_t picker;
    picker.selectedColor(QColor());
    QVERIFY(!picker.selectedColor().isValid());
    QCOMPARE(iconColor(picker), QColor(Qt::black));
}

void tst_colorPicker::makesTheIconInTheSizeOfTheMoment()
{
    colorPicker_t picker;
    picker.setIconSize(QSize(7, 5));
    QVERIFY(iconMadeIn(picker) != QSize(7, 5));
    picker.selectedColor(Qt::blue);
    QCOMPARE(iconMadeIn(picker), QSize(7, 5));
    picker.setIconSize(QSize(30, 40));
    QCOMPARE(iconMadeIn(picker), QSize(7, 5));
    picker.selectedColor(Qt::blue); // the same
    QCOMPARE(iconMadeIn(picker), QSize(7, 5));
    picker.selectedColor(Qt::green);
    QCOMPARE(iconMadeIn(picker), QSize(30, 40));
}

void tst_colorPicker::makesNoIconOfNoSize()
{
    colorPicker_t picker;
    picker.setIconSize(QSize(0, 0));
    picker.selectedColor(Qt::blue);
    QVERIFY(picker.icon().isNull());
    QCOMPARE(picker.selectedColor(), QColor(Qt::blue));
}

void tst_colorPicker::announcesEachChangeOnce()
{
    colorPicker_t picker;
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    picker.selectedColor(Qt::red);
    QCOMPARE(spy.count(), 0);
    picker.selectedColor(Qt::blue);
    picker.selectedColor(Qt::blue);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<QColor>(), QColor(Qt::blue));
}

void tst_colorPicker::announcesAfterTheChange()
{
    colorPicker_t picker;
    QColor selected;
    QColor shown;
    connect(&picker, &colorPicker_t::selectedColorChanged, this, [&] {
        selected = picker.selectedColor();
        shown = iconColor(picker);
    });
    picker.selectedColor(Qt::blue);
    QCOMPARE(selected, QColor(Qt::blue));
    QCOMPARE(shown, QColor(Qt::blue));
}

void tst_colorPicker::takesColorsOfDifferentModelsAsDifferent()
{
    colorPicker_t picker; // red as RGB
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    picker.selectedColor(QColor::fromHsv(0, 255, 255)); // red as well
    QCOMPARE(spy.count(), 1);
    QCOMPARE(picker.selectedColor().spec(), QColor::Hsv);
}

void tst_colorPicker::takesAnInvalidColorAsAColorOfItsOwn()
{
    colorPicker_t picker;
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    picker.selectedColor(QColor());
    picker.selectedColor(QColor());
    QCOMPARE(spy.count(), 1);
    QVERIFY(!spy.first().first().value<QColor>().isValid());
    picker.selectedColor(Qt::black);
    QCOMPARE(spy.count(), 2);
}

void tst_colorPicker::hasTheColorAsItsProperty()
{
    colorPicker_t picker;
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    QCOMPARE(picker.property("selectedColor").value<QColor>(), QColor(Qt::red));
    QVERIFY(picker.setProperty("selectedColor", QColor(Qt::blue)));
    QCOMPARE(picker.selectedColor(), QColor(Qt::blue));
    QCOMPARE(spy.count(), 1);
}

void tst_colorPicker::opensTheDialogOnAClick()
{
    colorPicker_t picker;
    QVERIFY(!picker.isCheckable());
    bool isModal = false;
    bool isChild = true;
    bool offersAlpha = true;
    whenOpen([&](QColorDialog* dialog) {
        isModal = dialog->isModal();
        isChild = dialog->parentWidget() != nullptr;
        offersAlpha = dialog->testOption(QColorDialog::ShowAlphaChannel);
        dialog->reject();
    });
    picker.click();
    QVERIFY(m_wasOpen);
    QVERIFY(isModal);
    QVERIFY(!isChild);
    QVERIFY(!offersAlpha);
}

void tst_colorPicker::startsTheDialogWithTheColor()
{
    colorPicker_t picker(QColor(10, 20, 30));
    QColor atFirst;
    whenOpen([&](QColorDialog* dialog) {
        atFirst = dialog->currentColor();
        dialog->reject();
    });
    picker.selectColor();
    QVERIFY(m_wasOpen);
    QCOMPARE(atFirst, QColor(10, 20, 30));
}

void tst_colorPicker::takesTheColorOfTheDialog()
{
    colorPicker_t picker;
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    whenOpen([](QColorDialog* dialog) {
        dialog->setCurrentColor(QColor(1, 2, 3));
        dialog->accept();
    });
    picker.click();
    QVERIFY(m_wasOpen);
    QCOMPARE(picker.selectedColor(), QColor(1, 2, 3));
    QCOMPARE(iconColor(picker), QColor(1, 2, 3));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<QColor>(), QColor(1, 2, 3));
}

void tst_colorPicker::keepsTheColorWhenTheDialogIsCancelled()
{
    colorPicker_t picker;
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    whenOpen([](QColorDialog* dialog) {
        dialog->setCurrentColor(QColor(1, 2, 3));
        dialog->reject();
    });
    picker.click();
    QVERIFY(m_wasOpen);
    QCOMPARE(picker.selectedColor(), QColor(Qt::red));
    QCOMPARE(iconColor(picker), QColor(Qt::red));
    QCOMPARE(spy.count(), 0);
}

void tst_colorPicker::announcesNothingWhenTheSameColorIsChosen()
{
    colorPicker_t picker(QColor(10, 20, 30));
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    whenOpen([](QColorDialog* dialog) { dialog->accept(); });
    picker.click();
    QVERIFY(m_wasOpen);
    QCOMPARE(picker.selectedColor(), QColor(10, 20, 30));
    QCOMPARE(spy.count(), 0);
}

void tst_colorPicker::staysSilentWhenDisabled()
{
    colorPicker_t picker;
    picker.setEnabled(false);
    picker.click(); // would wait for the dialog
    QCOMPARE(picker.selectedColor(), QColor(Qt::red));
}

void tst_colorPicker::takesTheColorOfTheDialogAfterAChangeMeanwhile()
{
    colorPicker_t picker;
    QSignalSpy spy(&picker, &colorPicker_t::selectedColorChanged);
    whenOpen([&picker](QColorDialog* dialog) {
        picker.selectedColor(Qt::blue);
        dialog->accept(); // with the red that it started with
    });
    picker.click();
    QVERIFY(m_wasOpen);
    QCOMPARE(picker.selectedColor(), QColor(Qt::red));
    QCOMPARE(spy.count(), 2);
}

void tst_colorPicker::survivesItsOwnEndInTheDialog_data()
{
    QTest::addColumn<bool>("isClicked");
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("clicked, accepted") << true << true;
    QTest::newRow("clicked, cancelled") << true << false;
    QTest::newRow("called, accepted") << false << true;
    QTest::newRow("called, cancelled") << false << false;
}

void tst_colorPicker::survivesItsOwnEndInTheDialog()
{
    QFETCH(bool, isClicked);
    QFETCH(bool, isAccepted);
    const QPointer<colorPicker_t> picker = new colorPicker_t;
    QSignalSpy spy(picker.data(), &colorPicker_t::selectedColorChanged);
    whenOpen([&picker, isAccepted](QColorDialog* dialog) {
        delete picker.data();
        dialog->setCurrentColor(QColor(1, 2, 3));
        if (isAccepted)
            dialog->accept();
        else
            dialog->reject();
    });
    if (isClicked)
        picker->click();
    else
        picker->selectColor();
    QVERIFY(m_wasOpen);
    QVERIFY(picker.isNull());
    QCOMPARE(spy.count(), 0);
}

ZORBIN_TEST_MAIN(tst_colorPicker, QApplication)
#include "tst_colorPicker.moc"
