#include "galleryWindow.h"
#include "messageRecorder.h"
#include "testCase.h"

#include <QApplication>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <zorbin-qt-gui/alarmLabel.h>
#include <zorbin-qt-gui/colorPicker.h>
#include <zorbin-qt-gui/histogram.h>
#include <zorbin-qt-gui/imageFrame.h>
#include <zorbin-qt-gui/indicator.h>
#include <zorbin-qt-gui/latLonEditor.h>
#include <zorbin-qt-gui/multiPathSelectDialog.h>
#include <zorbin-qt-gui/notifierWidget.h>
#include <zorbin-qt-gui/ruler.h>
#include <zorbin-qt-gui/scalableTextWidget.h>
#include <zorbin-qt-gui/slidingGauge.h>
#include <zorbin-qt-gui/stripChart.h>
#include <zorbin-qt-gui/waterfallView.h>

using namespace gallery;
using namespace zorbin_qt_gui;

namespace {

template <typename widget_t>
QByteArray className()
{
    return widget_t::staticMetaObject.className();
}

// The classes of a widget and of all below it, with their names as objects.
QByteArrayList partsOf(const QWidget& widget)
{
    QByteArrayList parts;
    std::vector<const QWidget*> widgets{&widget};
    for (const QWidget* const child : widget.findChildren<QWidget*>())
        widgets.push_back(child);
    for (const QWidget* const part : widgets) {
        parts << part->objectName().toLatin1();
        for (const QMetaObject* type = part->metaObject(); type != nullptr;
             type = type->superClass())
            parts << type->className();
    }
    return parts;
}

} // namespace

class tst_gallery : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void showsTheWidgetAndTheSourceOfThePageClicked_data();
    void showsTheWidgetAndTheSourceOfThePageClicked();
    void hasARowForEachPage();
    void choosesAPageByName();
    void ignoresAnUnknownName();
};

void tst_gallery::initTestCase()
{
    qputenv("ZORBIN_QT_RESOURCE_DIR", RESOURCE_DIR); // for the palettes
    qputenv("ZORBIN_QT_STRIPCHART_TYPE", "simple");
}

void tst_gallery::showsTheWidgetAndTheSourceOfThePageClicked_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QByteArray>("shown"); // class or name of what the page is about
    QTest::addColumn<QString>("source");   // a line of its source
    const auto add = [](const char* name, const QByteArray& shown, const char* source) {
        int row = 0;
        while (pages().at(static_cast<std::size_t>(row)).name != QByteArray(name))
            ++row;
        QTest::newRow(name) << row << shown << QString::fromLatin1(source);
    };
    // First one that isn't shown already.
    add("waterfallView", className<baseWaterfallView_t>(), "QWidget* makeWaterfallView()");
    add("stripChart", className<stripChart_t>(), "QWidget* makeStripChart()");
    add("histogram", className<histogram_t>(), "QWidget* makeHistogram()");
    add("standardPalettes", "swatch", "QWidget* makeStandardPalettes()");
    add("colorPicker", className<colorPicker_t>(), "QWidget* makeColorPicker()");
    add("rulers", className<ruler_t>(), "QWidget* makeRulers()");
    add("slidingGauges", className<slidingGauge_t>(), "QWidget* makeSlidingGauges()");
    add("indicators", className<indicator_t>(), "QWidget* makeIndicators()");
    add("alarmLabel", className<alarmLabel_t>(), "QWidget* makeAlarmLabel()");
    add("scalableTextWidget", className<scalableTextWidget_t>(),
        "QWidget* makeScalableTextWidget()");
    add("imageFrame", className<imageFrame_t>(), "QWidget* makeImageFrame()");
    add("notifierWidget", className<notifierWidget_t>(), "QWidget* makeNotifierWidget()");
    add("aboutBox", "QPushButton", "QWidget* makeAboutBox()");
    add("spFbUiWrapper", "QDoubleSpinBox", "QWidget* makeSpFbUiWrapper()");
    add("statusWidgets", className<notifierWidget_t>(), "QWidget* makeStatusWidgets()");
    add("latLonEditors", className<latLonEditor_t>(), "QWidget* makeLatLonEditors()");
    add("multiPathSelectDialog", className<mfsDialog_t>(), "QWidget* makeMultiPathSelectDialog()");
}

void tst_gallery::showsTheWidgetAndTheSourceOfThePageClicked()
{
    QFETCH(const int, row);
    QFETCH(const QByteArray, shown);
    QFETCH(const QString, source);
    messageRecorder_t messages;
    galleryWindow_t window;
    window.resize(1500, 800);
    window.show();
    auto* const list = window.findChild<QListWidget*>(QStringLiteral("pages"));
    list->setCurrentRow(row == 0 ? 1 : 0);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                      list->visualItemRect(list->item(row)).center());

    QCOMPARE(list->currentRow(), row);
    const QWidget* const page = window.findChild<QScrollArea*>(QStringLiteral("page"))->widget();
    QVERIFY(page != nullptr && page->isVisible());
    const QByteArrayList parts = partsOf(*page);
    QVERIFY2(parts.contains(shown), parts.join(' ').constData());
    const QStringList lines = window.findChild<QPlainTextEdit*>(QStringLiteral("source"))
                                  ->toPlainText()
                                  .split(QLatin1Char('\n'));
    QVERIFY2(lines.contains(source), "the source is another one");
    QVERIFY2(lines.first().startsWith(QLatin1String("// ")), "it says on top what to look at");
    QCOMPARE(messages.texts(), QStringList());
}

void tst_gallery::hasARowForEachPage()
{
    const galleryWindow_t window;
    QCOMPARE(window.findChild<QListWidget*>(QStringLiteral("pages"))->count(), 17);
    QCOMPARE(pages().size(), std::size_t{17}); // as many as rows of data above
}

void tst_gallery::choosesAPageByName()
{
    galleryWindow_t window;
    QVERIFY(window.choosePage(QStringLiteral("histogram")));
    const auto* const list = window.findChild<QListWidget*>(QStringLiteral("pages"));
    QCOMPARE(list->currentItem()->text(), QStringLiteral("Histogram"));
}

void tst_gallery::ignoresAnUnknownName()
{
    galleryWindow_t window;
    window.choosePage(QStringLiteral("rulers"));
    QVERIFY(!window.choosePage(QStringLiteral("Histogram"))); // that is a title
    const auto* const list = window.findChild<QListWidget*>(QStringLiteral("pages"));
    QCOMPARE(list->currentItem()->text(), QStringLiteral("Rulers"));
}

ZORBIN_TEST_MAIN(tst_gallery, QApplication)
#include "tst_gallery.moc"
