#include "latLonEditor.h"
#include "latLonGestures.h"
#include "messageRecorder.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QStringListModel>

using namespace lat_lon_tests;
using namespace zorbin_qt_gui;

using boxChange_t = void (*)(QComboBox* box);
Q_DECLARE_METATYPE(boxChange_t)
using editorChange_t = void (*)(latLonEditor_t* editor);
Q_DECLARE_METATYPE(editorChange_t)
using selectorChange_t = void (*)(coordFormatSelector_t* selector);
Q_DECLARE_METATYPE(selectorChange_t)

static QList<int> formats(const QSignalSpy& spy)
{
    QList<int> all;
    for (const QVariantList& one : spy)
        all.append(one.first().value<latLonEditor_t::coordFormat_t>());
    return all;
}

// Tells how many follow it.
class countingSelector_t : public coordFormatSelector_t
{
public:
    int followers() const
    {
        return receivers(SIGNAL(selectionChanged(latLonEditor_t::coordFormat_t)));
    }
};

/// What entry fields are joined with: the other one of a pair, and selectors of the notation.
class tst_latLonEditorPartners : public latLonTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void setsBothOfAPair_data();
    void setsBothOfAPair();
    void setsOneOfAPairWithoutPartner();
    void leavesAPartnerAloneThatMayNotBeEdited();
    void refusesToPairTheSameKind();
    void pairsWithAnother();
    void survivesTheEndOfAPartner();

    void mayBeDeletedBySlots_data();
    void mayBeDeletedBySlots();
    void leavesNothingBehindWhenDeletedBySlots();

    void showsItsSelectorWhenAsked();
    void followsItsOwnSelector();
    void followsOtherSelectors();
    void followsASelectorOnce();
    void drivesASelectorInBothDirections();
    void ceasesToDriveASelector();
    void survivesASelectorThatIsNone();
    void survivesTheEndOfASelector();

    void startsTheSelectorWithMinutes();
    void namesTheNotations();
    void announcesAChoiceOnce();
    void announcesAChangeTwice();
    void announcesNoChangeToTheSame();
    void mayBeDeletedBySlotsOfASelector_data();
    void mayBeDeletedBySlotsOfASelector();
    void announcesNoLossOfTheChoice_data();
    void announcesNoLossOfTheChoice();
    void ignoresChoicesThatAreNoNotation_data();
    void ignoresChoicesThatAreNoNotation();
    void keepsTheNotationWithoutAChoice();
    void announcesOnceBetweenSelectorsWithoutItems();
    void ignoresWhatIsNoNotation();
};

void tst_latLonEditorPartners::setsBothOfAPair_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("decimals") << "-22.00833333333, -17.94166666667";
    QTest::newRow("letters") << "22-00.5S 017-56.5W";
    QTest::newRow("URI") << "geo:-22.00833333333,-17.94166666667";
    QTest::newRow("well-known text") << "POINT(-17.94166666667 -22.00833333333)";
}

void tst_latLonEditorPartners::setsBothOfAPair()
{
    QFETCH(QString, text);
    for (const bool isIntoLatitude : {true, false}) {
        for (const way_t& way : ways) {
            latitudeEditor_t latitude;
            longitudeEditor_t longitude;
            latitude.setCoordinateFormat(CF_DM);
            longitude.setCoordinateFormat(CF_DMS);
            if (isIntoLatitude)
                latitude.pairWith(&longitude);
            else
                longitude.pairWith(&latitude); // which is the same
            QStringList order;
            connect(&latitude, &latLonEditor_t::valueChanged, this,
                    [&] { order.append(QStringLiteral("latitude")); });
            connect(&longitude, &latLonEditor_t::valueChanged, this,
                    [&] { order.append(QStringLiteral("longitude")); });
            const latLonEditor_t& target =
                isIntoLatitude ? static_cast<const latLonEditor_t&>(latitude) : longitude;
            way.put(lineEdit(target), text);
            QCOMPARE(shownText(latitude), QStringLiteral("22° 00.500000'S"));
            QCOMPARE(shownText(longitude), QStringLiteral("017° 56' 30.0000\"W"));
            const QString first =
                isIntoLatitude ? QStringLiteral("latitude") : QStringLiteral("longitude");
            QCOMPARE(order.count(first), 2); // hemisphere and magnitude
            QCOMPARE(order.mid(0, 2), (QStringList{first, first}));
            QCOMPARE(order.count(), 4);
        }
    }
    // One alone is for one.
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.pairWith(&longitude);
    paste(lineEdit(latitude), QStringLiteral("12-34.5S"));
    QCOMPARE(shownText(latitude), QStringLiteral("12.57500000°S"));
    QCOMPARE(shownText(longitude), QStringLiteral("000.00000000°E"));
    QSignalSpy refusals(&latitude, &latLonEditor_t::pasteRefused);
    paste(lineEdit(latitude), QStringLiteral("12-34.5W")); // the partner's
    QCOMPARE(refusals.count(), 1);
    QCOMPARE(shownText(longitude), QStringLiteral("000.00000000°E"));
}

void tst_latLonEditorPartners::setsOneOfAPairWithoutPartner()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.pairWith(&longitude);
    longitude.pairWith(nullptr);
    for (latLonEditor_t* const editor :
         {static_cast<latLonEditor_t*>(&latitude), static_cast<latLonEditor_t*>(&longitude)}) {
        latitude.setValue(0.0);
        longitude.setValue(0.0);
        paste(lineEdit(*editor), QStringLiteral("12.5, 45.5"));
        QCOMPARE(valueOf(latitude), editor == &latitude ? 12.5 : 0.0);
        QCOMPARE(valueOf(longitude), editor == &longitude ? 45.5 : 0.0);
    }
}

void tst_latLonEditorPartners::leavesAPartnerAloneThatMayNotBeEdited()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    latitude.pairWith(&longitude);
    longitude.setEnabled(false);
    paste(lineEdit(latitude), QStringLiteral("12.5, 45.5"));
    longitude.setEnabled(true);
    lineEdit(longitude)->setReadOnly(true);
    paste(lineEdit(latitude), QStringLiteral("13.5, 45.5"));
    QCOMPARE(valueOf(latitude), 13.5);
    QCOMPARE(valueOf(longitude), 0.0);
    lineEdit(longitude)->setReadOnly(false);
    paste(lineEdit(latitude), QStringLiteral("14.5, 45.5"));
    QCOMPARE(valueOf(longitude), 45.5);
}

void tst_latLonEditorPartners::refusesToPairTheSameKind()
{
    latitudeEditor_t latitude;
    latitudeEditor_t otherLatitude;
    longitudeEditor_t longitude;
    longitudeEditor_t otherLongitude;
    latitude.pairWith(&longitude);
    messageRecorder_t messages;
    latitude.pairWith(&otherLatitude);
    latitude.pairWith(&latitude);
    longitude.pairWith(&otherLongitude);
    const auto message = QStringLiteral("latLonEditor_t::pairWith: Failed to pair - two %1 are no "
                                        "position");
    QCOMPARE(messages.texts(), (QStringList{message.arg(QStringLiteral("latitudes")),
                                            message.arg(QStringLiteral("latitudes")),
                                            message.arg(QStringLiteral("longitudes"))}));
    QCOMPARE(messages.kinds().count(QStringLiteral("debug")), 3);
    paste(lineEdit(latitude), QStringLiteral("12.5, 45.5"));
    QCOMPARE(valueOf(longitude), 45.5); // still paired
    QCOMPARE(valueOf(otherLatitude), 0.0);
}

void tst_latLonEditorPartners::pairsWithAnother()
{
    latitudeEditor_t latitude;
    latitudeEditor_t otherLatitude;
    longitudeEditor_t longitude;
    longitudeEditor_t otherLongitude;
    latitude.pairWith(&longitude);
    otherLatitude.pairWith(&otherLongitude);
    latitude.pairWith(&otherLongitude);
    paste(lineEdit(latitude), QStringLiteral("12.5, 45.5"));
    QCOMPARE(valueOf(otherLongitude), 45.5);
    QCOMPARE(valueOf(longitude), 0.0);
    paste(lineEdit(otherLatitude), QStringLiteral("13.5, 46.5"));
    QCOMPARE(valueOf(otherLongitude), 45.5); // it has lost its partner
    paste(lineEdit(longitude), QStringLiteral("14.5, 47.5"));
    QCOMPARE(valueOf(latitude), 12.5);  // so has it
    latitude.pairWith(&otherLongitude); // no change
    paste(lineEdit(otherLongitude), QStringLiteral("15.5, 48.5"));
    QCOMPARE(valueOf(latitude), 15.5);
}

void tst_latLonEditorPartners::survivesTheEndOfAPartner()
{
    for (const bool isLatitudeFirst : {true, false}) {
        auto latitude = std::make_unique<latitudeEditor_t>();
        auto longitude = std::make_unique<longitudeEditor_t>();
        latitude->pairWith(longitude.get());
        if (isLatitudeFirst)
            latitude.reset();
        else
            longitude.reset();
        const latLonEditor_t& survivor =
            isLatitudeFirst ? static_cast<const latLonEditor_t&>(*longitude) : *latitude;
        paste(lineEdit(survivor), QStringLiteral("12.5, 45.5"));
        QCOMPARE(valueOf(survivor), isLatitudeFirst ? 45.5 : 12.5);
    }
    // In slots of the first signals, too.
    for (const bool isPartnerDeleted : {true, false}) {
        auto* const latitude = new latitudeEditor_t;
        auto* const longitude = new longitudeEditor_t;
        latitude->pairWith(longitude);
        connect(latitude, &latLonEditor_t::valueChanged, this,
                [&] { delete (isPartnerDeleted ? static_cast<QWidget*>(longitude) : latitude); });
        paste(lineEdit(*latitude), QStringLiteral("12.5, 45.5"));
        if (!isPartnerDeleted)
            QCOMPARE(valueOf(*longitude), 45.5);
        delete (isPartnerDeleted ? static_cast<QWidget*>(latitude) : longitude);
    }
}

void tst_latLonEditorPartners::mayBeDeletedBySlots_data()
{
    QTest::addColumn<editorChange_t>("change");
    const auto row = [](const char* name, editorChange_t change) { QTest::newRow(name) << change; };
    row("value", [](latLonEditor_t* editor) { editor->setValue(12.0); });
    row("value in another hemisphere", [](latLonEditor_t* editor) { editor->setValue(-12.0); });
    row("no value", [](latLonEditor_t* editor) { editor->setValue(NOTHING); });
    row("no value and back", [](latLonEditor_t* editor) {
        const QPointer<latLonEditor_t> guard(editor);
        editor->setValue(NOTHING);
        if (!guard.isNull())
            editor->setValue(-12.0);
    });
    row("notation", [](latLonEditor_t* editor) { editor->setCoordinateFormat(CF_DMS); });
    row("typed", [](latLonEditor_t* editor) { type(*editor, 0, QStringLiteral("3")); });
    row("typed into the window", [](latLonEditor_t* editor) {
        editor->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(editor->window(), patienceMs()));
        lineEdit(*editor)->setCursorPosition(0);
        QTest::keyClick(editor->window()->windowHandle(), Qt::Key_3);
    });
    row("hemisphere by key",
        [](latLonEditor_t* editor) { QTest::keyClick(hemisphere(*editor), Qt::Key_S); });
    row("hemisphere by popup", [](latLonEditor_t* editor) { chooseNext(hemisphere(*editor)); });
    row("own selector", [](latLonEditor_t* editor) {
        editor->showFormatSelector(true);
        chooseNext(comboBox(*ownSelector(*editor)));
    });
    row("pasted", [](latLonEditor_t* editor) { paste(lineEdit(*editor), QStringLiteral("12N")); });
    row("pasted digits", [](latLonEditor_t* editor) {
        lineEdit(*editor)->setCursorPosition(0);
        paste(lineEdit(*editor), QStringLiteral("3"));
    });
    row("pasted from the menu",
        [](latLonEditor_t* editor) { pasteFromMenu(lineEdit(*editor), QStringLiteral("12S")); });
    row("middle button",
        [](latLonEditor_t* editor) { pasteSelection(lineEdit(*editor), QStringLiteral("12S")); });
    row("dropped", [](latLonEditor_t* editor) { drop(lineEdit(*editor), QStringLiteral("12S")); });
}

// At the first signal, whichever that is.
void tst_latLonEditorPartners::mayBeDeletedBySlots()
{
    QFETCH(editorChange_t, change);
    for (const bool isWithParent : {false, true}) {
        QWidget window;
        const QPointer<QWidget> parent = new QWidget(&window);
        const QPointer<latLonEditor_t> editor = new latitudeEditor_t(parent);
        editor->setCoordinateFormat(CF_DM);
        editor->setValue(45.0);
        editor->resize(400, 40);
        window.show();
        lineEdit(*editor)->setFocus();
        int signalCount = 0;
        const auto end = [&] {
            ++signalCount;
            delete (isWithParent ? parent.data() : editor.data());
        };
        connect(editor.data(), &latLonEditor_t::valueChanged, this, end);
        connect(editor.data(), &latLonEditor_t::valueValidityChanged, this, end);
        connect(editor.data(), &latLonEditor_t::pasteRefused, this, end);
        change(editor.data());
        QVERIFY(editor.isNull());
        QCOMPARE(signalCount, 1);
    }
}

void tst_latLonEditorPartners::leavesNothingBehindWhenDeletedBySlots()
{
    const QPointer<latLonEditor_t> editor = new latitudeEditor_t;
    const QPointer<QLineEdit> field = lineEdit(*editor);
    const QPointer<QComboBox> box = hemisphere(*editor);
    connect(editor.data(), &latLonEditor_t::valueChanged, this, [&] { delete editor; });
    type(*editor, 0, QStringLiteral("3"));
    QVERIFY(editor.isNull());
    QVERIFY(field.isNull() || !field->isVisible());
    QTRY_VERIFY(field.isNull() && box.isNull());
    // Outside of signals all goes at once.
    auto other = std::make_unique<latitudeEditor_t>();
    const QPointer<QLineEdit> otherField = lineEdit(*other);
    other->setValue(12.0);
    other.reset();
    QVERIFY(otherField.isNull());
}

void tst_latLonEditorPartners::showsItsSelectorWhenAsked()
{
    latitudeEditor_t editor;
    editor.showFormatSelector(true);
    QVERIFY(!ownSelector(editor)->isHidden());
    editor.showFormatSelector(false);
    QVERIFY(ownSelector(editor)->isHidden());
}

void tst_latLonEditorPartners::followsItsOwnSelector()
{
    latitudeEditor_t editor;
    editor.setValue(12.5);
    comboBox(*ownSelector(editor))->setCurrentIndex(CF_DM);
    QCOMPARE(editor.selectedFormat(), CF_DM);
    QCOMPARE(shownText(editor), QStringLiteral("12° 30.000000'N"));
}

void tst_latLonEditorPartners::followsOtherSelectors()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    coordFormatSelector_t selector;
    latitude.connectFormatSelector(&selector, false);
    longitude.connectFormatSelector(&selector, false);
    QCOMPARE(latitude.selectedFormat(), CF_D); // only what is chosen from now on counts
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(latitude.selectedFormat(), CF_DMS);
    QCOMPARE(longitude.selectedFormat(), CF_DMS);
    latitude.setCoordinateFormat(CF_D);
    QCOMPARE(choice(selector), static_cast<int>(CF_DMS)); // it isn't led
}

void tst_latLonEditorPartners::followsASelectorOnce()
{
    latitudeEditor_t editor;
    countingSelector_t selector;
    editor.connectFormatSelector(&selector, true);
    editor.connectFormatSelector(&selector, true);
    QCOMPARE(selector.followers(), 1);
}

void tst_latLonEditorPartners::drivesASelectorInBothDirections()
{
    latitudeEditor_t latitude;
    longitudeEditor_t longitude;
    coordFormatSelector_t selector;
    latitude.connectFormatSelector(&selector, true);
    longitude.connectFormatSelector(&selector, true);
    comboBox(*ownSelector(latitude))->setCurrentIndex(CF_DMS);
    QCOMPARE(choice(selector), static_cast<int>(CF_DMS));
    QCOMPARE(longitude.selectedFormat(), CF_DMS);
    longitude.setCoordinateFormat(CF_D);
    QCOMPARE(choice(selector), static_cast<int>(CF_D));
    QCOMPARE(latitude.selectedFormat(), CF_D);
}

void tst_latLonEditorPartners::ceasesToDriveASelector()
{
    latitudeEditor_t editor;
    coordFormatSelector_t selector;
    editor.connectFormatSelector(&selector, true);
    editor.connectFormatSelector(&selector, false);
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(choice(selector), static_cast<int>(CF_DM));
    comboBox(selector)->setCurrentIndex(CF_D); // but follows
    QCOMPARE(editor.selectedFormat(), CF_D);
}

void tst_latLonEditorPartners::survivesASelectorThatIsNone()
{
    latitudeEditor_t editor;
    for (const bool bothWays : {false, true}) {
        editor.connectFormatSelector(nullptr, bothWays);
        comboBox(*ownSelector(editor))->setCurrentIndex(bothWays ? CF_DM : CF_DMS);
        QCOMPARE(editor.selectedFormat(), bothWays ? CF_DM : CF_DMS);
    }
}

void tst_latLonEditorPartners::survivesTheEndOfASelector()
{
    latitudeEditor_t editor;
    auto selector = std::make_unique<coordFormatSelector_t>();
    editor.connectFormatSelector(selector.get(), true);
    selector.reset();
    editor.setCoordinateFormat(CF_DMS);
    QCOMPARE(editor.selectedFormat(), CF_DMS);

    coordFormatSelector_t survivor;
    {
        latitudeEditor_t other;
        other.connectFormatSelector(&survivor, true);
    }
    survivor.changeSelection(CF_DMS);
    QCOMPARE(choice(survivor), static_cast<int>(CF_DMS));
}

void tst_latLonEditorPartners::startsTheSelectorWithMinutes()
{
    QWidget parent;
    const QPointer<coordFormatSelector_t> selector = new coordFormatSelector_t(&parent);
    QCOMPARE(selector->parentWidget(), &parent);
    QCOMPARE(choice(*selector), static_cast<int>(CF_DM));
    const auto* const layout = qobject_cast<QHBoxLayout*>(selector->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 1);
}

void tst_latLonEditorPartners::namesTheNotations()
{
    const coordFormatSelector_t selector;
    QCOMPARE(comboBox(selector)->count(), 3);
    QCOMPARE(comboBox(selector)->itemText(CF_D), QStringLiteral("DD°"));
    QCOMPARE(comboBox(selector)->itemText(CF_DM), QStringLiteral("DD°MM'"));
    QCOMPARE(comboBox(selector)->itemText(CF_DMS), QStringLiteral("DD°MM'SS\""));
}

void tst_latLonEditorPartners::announcesAChoiceOnce()
{
    const coordFormatSelector_t selector;
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(formats(spy), QList<int>{CF_DMS});
}

void tst_latLonEditorPartners::announcesAChangeTwice()
{
    coordFormatSelector_t selector;
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(CF_DMS);
    QCOMPARE(formats(spy), (QList<int>{CF_DMS, CF_DMS}));
    QCOMPARE(choice(selector), static_cast<int>(CF_DMS));
}

void tst_latLonEditorPartners::announcesNoChangeToTheSame()
{
    coordFormatSelector_t selector;
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(CF_DM);
    QCOMPARE(spy.count(), 0);
}

void tst_latLonEditorPartners::mayBeDeletedBySlotsOfASelector_data()
{
    QTest::addColumn<selectorChange_t>("change");
    QTest::newRow("chosen by the user") << selectorChange_t{
        [](coordFormatSelector_t* selector) { chooseNext(comboBox(*selector)); }};
    QTest::newRow("chosen by key") << selectorChange_t{[](coordFormatSelector_t* selector) {
        QTest::keyClick(comboBox(*selector), Qt::Key_Down);
    }};
    QTest::newRow("changed") << selectorChange_t{
        [](coordFormatSelector_t* selector) { selector->changeSelection(CF_DMS); }};
}

// Deletes at the first and at the second signal, an editor along with it, before or after it.
void tst_latLonEditorPartners::mayBeDeletedBySlotsOfASelector()
{
    QFETCH(selectorChange_t, change);
    for (const int last : {1, 2}) {
        for (const bool isEditorFirst : {false, true}) {
            QWidget window;
            const QPointer<coordFormatSelector_t> selector = new coordFormatSelector_t(&window);
            const QPointer<latLonEditor_t> editor = new latitudeEditor_t(&window);
            window.show();
            editor->connectFormatSelector(selector, true);
            int signalCount = 0;
            connect(selector.data(), &coordFormatSelector_t::selectionChanged, this, [&] {
                if (++signalCount < last)
                    return;
                if (isEditorFirst)
                    delete editor;
                delete selector;
                delete editor;
            });
            change(selector.data());
            QCOMPARE(selector.isNull(), signalCount == last);
        }
    }
}

void tst_latLonEditorPartners::announcesNoLossOfTheChoice_data()
{
    QTest::addColumn<boxChange_t>("loseChoice");
    const auto row = [](const char* name, boxChange_t loseChoice) {
        QTest::newRow(name) << loseChoice;
    };
    row("index -1", [](QComboBox* box) { box->setCurrentIndex(-1); });
    row("cleared", [](QComboBox* box) { box->clear(); });
    row("reset", [](QComboBox* box) {
        auto* const names = new QStringListModel({QStringLiteral("a"), QStringLiteral("b")}, box);
        box->setModel(names);
        box->setCurrentIndex(CF_DM);
        names->setStringList({});
    });
}

void tst_latLonEditorPartners::announcesNoLossOfTheChoice()
{
    QFETCH(boxChange_t, loseChoice);
    coordFormatSelector_t selector;
    latitudeEditor_t editor;
    editor.setCoordinateFormat(CF_DM);
    editor.connectFormatSelector(&selector, true);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    loseChoice(comboBox(selector));
    QCOMPARE(choice(selector), -1);
    for (const int format : formats(spy))
        QVERIFY(format >= CF_D && format <= CF_DMS);
    const latLonEditor_t::coordFormat_t kept = editor.selectedFormat();
    spy.clear();
    comboBox(selector)->setCurrentIndex(-1);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(editor.selectedFormat(), kept);
}

void tst_latLonEditorPartners::ignoresChoicesThatAreNoNotation_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("one too many") << 3;
    QTest::newRow("one more") << 4;
}

void tst_latLonEditorPartners::ignoresChoicesThatAreNoNotation()
{
    QFETCH(int, index);
    coordFormatSelector_t selector;
    latitudeEditor_t editor;
    editor.connectFormatSelector(&selector, false);
    comboBox(selector)->addItems({QStringLiteral("three"), QStringLiteral("four")});
    QSignalSpy spy(&selector, &coordFormatSelector_t::selectionChanged);
    comboBox(selector)->setCurrentIndex(index);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(editor.selectedFormat(), CF_D);
    comboBox(selector)->setCurrentIndex(CF_DMS);
    QCOMPARE(formats(spy), QList<int>{CF_DMS});
    QCOMPARE(editor.selectedFormat(), CF_DMS);
}

void tst_latLonEditorPartners::keepsTheNotationWithoutAChoice()
{
    latitudeEditor_t editor;
    comboBox(*ownSelector(editor))->clear();
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(shownText(editor), QStringLiteral("00.00000000°N"));
    editor.setCoordinateFormat(CF_DMS); // there is nothing left to show it by
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    QCOMPARE(shownText(editor), QStringLiteral("00° 00' 00.0000\"N"));
}

// Neither of two selectors that follow each other can show what the other one announces.
void tst_latLonEditorPartners::announcesOnceBetweenSelectorsWithoutItems()
{
    latitudeEditor_t editor;
    coordFormatSelector_t selector;
    editor.connectFormatSelector(&selector, true);
    comboBox(*ownSelector(editor))->clear();
    comboBox(selector)->clear();
    QSignalSpy choices(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(CF_DMS);
    QCOMPARE(formats(choices), QList<int>{CF_DMS});
    QCOMPARE(editor.selectedFormat(), CF_DMS);
    editor.setCoordinateFormat(CF_DM);
    QCOMPARE(formats(choices), (QList<int>{CF_DMS, CF_DM}));
    QCOMPARE(editor.selectedFormat(), CF_DM);
}

void tst_latLonEditorPartners::ignoresWhatIsNoNotation()
{
    const auto noNotation = static_cast<latLonEditor_t::coordFormat_t>(3);
    latitudeEditor_t editor;
    QSignalSpy values(&editor, &latLonEditor_t::valueChanged);
    editor.setCoordinateFormat(noNotation);
    QCOMPARE(editor.selectedFormat(), CF_D);
    QCOMPARE(values.count(), 0);
    coordFormatSelector_t selector;
    QSignalSpy choices(&selector, &coordFormatSelector_t::selectionChanged);
    selector.changeSelection(noNotation);
    QCOMPARE(choice(selector), static_cast<int>(CF_DM));
    QCOMPARE(choices.count(), 0);
}

ZORBIN_TEST_MAIN(tst_latLonEditorPartners, QApplication)
#include "tst_latLonEditorPartners.moc"
