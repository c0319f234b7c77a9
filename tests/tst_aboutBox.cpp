#include "aboutBox.h"
#include "testCase.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <type_traits>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<aboutBox_t>::value, "about boxes aren't copied");
static_assert(!std::is_base_of<QObject, aboutBox_t>::value, "about boxes are plain objects");

static const char resource[] = ":/zorbin-qt-gui-defaultAboutBoxText.html";

/// The box that tells an application's name, version and owner.
class tst_aboutBox : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;

private Q_SLOTS:
    void hasTheTemplateAsAResource();
    void fillsInTheTemplate();
    void leavesOutTheYearsAndTheirBlank();
    void takesTheYearsSetLast();
    void readsTheApplicationsNamesEachTime();
    void putsNamesInAsTheyAre();
    void fillsInWhatWasFilledIn();
    void leavesAddedTextOutOfTheText();
    void showsTheBox();
    void showsAllAddedTexts();
    void doesNotFillInAddedText();
    void survivesDeletionsWhileShown_data();
    void survivesDeletionsWhileShown();
    void survivesTheDeletionOfItsParentBefore();

private:
    // Calls \p operate once the box is open.
    template <typename operate_t>
    void whenOpen(const operate_t& operate)
    {
        m_wasOpen = false;
        QTimer::singleShot(0, this, [this, operate] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            m_wasOpen = box != nullptr;
            if (box != nullptr)
                operate(box);
        });
    }

    bool m_wasOpen = false;
};

void tst_aboutBox::setUp()
{
    QCoreApplication::setApplicationName(QStringLiteral("Survey"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.1"));
    QCoreApplication::setOrganizationName(QStringLiteral("Harbour Lab"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("harbour.example"));
}

void tst_aboutBox::hasTheTemplateAsAResource()
{
    const aboutBox_t box(nullptr);
    QFile file(QString::fromLatin1(resource));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.size(), qint64(174));
    QCOMPARE(file.readAll(), QByteArray("<h3 align=\"center\">__APPLICATION_NAME__</h3>\n"
                                        "<p align=\"center\">Version __APPLICATION_VERSION__ \n"
                                        "<p align=\"center\">Copyright &copy; __COPYRIGHT_YEARS__  "
                                        "__ORGANIZATION_NAME__\n"));
}

// Deliberate: the years take the place of the blank before them, too.
void tst_aboutBox::fillsInTheTemplate()
{
    aboutBox_t box(nullptr);
    box.copyrightYears(QStringLiteral("2010-2012"));
    QCOMPARE(box.aboutText(),
             QStringLiteral("<h3 align=\"center\">Survey</h3>\n"
                            "<p align=\"center\">Version 2.1 \n"
                            "<p align=\"center\">Copyright &copy;2010-2012  Harbour Lab\n"));
}

void tst_aboutBox::leavesOutTheYearsAndTheirBlank()
{
    aboutBox_t box(nullptr);
    QCOMPARE(box.aboutText().section(QLatin1Char('\n'), 2, 2),
             QStringLiteral("<p align=\"center\">Copyright &copy;  Harbour Lab"));
}

void tst_aboutBox::takesTheYearsSetLast()
{
    aboutBox_t box(nullptr);
    box.copyrightYears(QStringLiteral("2010"));
    box.copyrightYears(QStringLiteral("2011"));
    QVERIFY(box.aboutText().contains(QStringLiteral("&copy;2011  Harbour Lab")));
}

void tst_aboutBox::readsTheApplicationsNamesEachTime()
{
    aboutBox_t box(nullptr);
    QVERIFY(box.aboutText().contains(QStringLiteral(">Survey<")));
    QCoreApplication::setApplicationName(QStringLiteral("Sounder"));
    QVERIFY(box.aboutText().contains(QStringLiteral(">Sounder<")));
}

void tst_aboutBox::putsNamesInAsTheyAre()
{
    QCoreApplication::setOrganizationName(QStringLiteral("A & B <i>\\1$0</i>"));
    aboutBox_t box(nullptr);
    QVERIFY(box.aboutText().endsWith(QStringLiteral("  A & B <i>\\1$0</i>\n")));
}

// Deliberate: the keys are replaced one after the other, also in what came in for earlier ones.
void tst_aboutBox::fillsInWhatWasFilledIn()
{
    aboutBox_t box(nullptr);
    box.copyrightYears(QStringLiteral(" __ORGANIZATION_DOMAIN__ __COPYRIGHT_YEARS__"));
    QCoreApplication::setApplicationVersion(QStringLiteral("__APPLICATION_NAME__"));
    QCOMPARE(box.aboutText(), QStringLiteral("<h3 align=\"center\">Survey</h3>\n"
                                             "<p align=\"center\">Version __APPLICATION_NAME__ \n"
                                             "<p align=\"center\">Copyright &copy; harbour.example "
                                             "__COPYRIGHT_YEARS__  Harbour Lab\n"));
}

void tst_aboutBox::leavesAddedTextOutOfTheText()
{
    aboutBox_t box(nullptr);
    const QString before = box.aboutText();
    box.addText(QStringLiteral("more"));
    QCOMPARE(box.aboutText(), before);
}

void tst_aboutBox::showsTheBox()
{
    QWidget window;
    aboutBox_t box(&window);
    QString title;
    QString text;
    QWidget* parent = nullptr;
    bool isModal = false;
    whenOpen([&](QMessageBox* shown) {
        title = shown->windowTitle();
        text = shown->text();
        parent = shown->parentWidget();
        isModal = shown->isModal();
        shown->accept();
    });
    box.showAboutBox();
    QVERIFY(m_wasOpen);
    QCOMPARE(title, QStringLiteral("About Survey"));
    QCOMPARE(text, box.aboutText());
    QCOMPARE(parent, &window);
    QVERIFY(isModal);
}

void tst_aboutBox::showsAllAddedTexts()
{
    aboutBox_t box(nullptr);
    box.addText(QStringLiteral("<p>first"));
    box.addText(QStringLiteral("<p>second"));
    QString text;
    whenOpen([&](QMessageBox* shown) {
        text = shown->text();
        shown->accept();
    });
    box.showAboutBox();
    QCOMPARE(text, box.aboutText() + QStringLiteral("<p>first<p>second"));
}

void tst_aboutBox::doesNotFillInAddedText()
{
    aboutBox_t box(nullptr);
    box.addText(QStringLiteral("__APPLICATION_NAME__"));
    QString text;
    whenOpen([&](QMessageBox* shown) {
        text = shown->text();
        shown->accept();
    });
    box.showAboutBox();
    QVERIFY(text.endsWith(QStringLiteral("__APPLICATION_NAME__")));
}

void tst_aboutBox::survivesDeletionsWhileShown_data()
{
    QTest::addColumn<bool>("deletesTheParent");
    QTest::newRow("its parent") << true;
    QTest::newRow("itself") << false;
}

void tst_aboutBox::survivesDeletionsWhileShown()
{
    QFETCH(bool, deletesTheParent);
    auto window = std::make_unique<QWidget>();
    auto box = std::make_unique<aboutBox_t>(window.get());
    whenOpen([&](QMessageBox* shown) {
        if (deletesTheParent) {
            window.reset(); // and the shown box with it
        } else {
            box.reset();
            shown->accept();
        }
    });
    aboutBox_t& shownBox = *box;
    shownBox.showAboutBox();
    QVERIFY(m_wasOpen);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void tst_aboutBox::survivesTheDeletionOfItsParentBefore()
{
    auto window = std::make_unique<QWidget>();
    aboutBox_t box(window.get());
    window.reset();
    QPointer<QWidget> parent;
    whenOpen([&](QMessageBox* shown) {
        parent = shown->parentWidget();
        shown->accept();
    });
    box.showAboutBox();
    QVERIFY(m_wasOpen);
    QVERIFY(parent == nullptr);
}

ZORBIN_TEST_MAIN(tst_aboutBox, QApplication)
#include "tst_aboutBox.moc"
