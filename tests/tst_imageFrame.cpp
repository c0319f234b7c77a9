#include "imageFrame.h"
#include "messageRecorder.h"
#include "pictures.h"
#include "testCase.h"

#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <limits>
#include <memory>
#include <type_traits>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<imageFrame_t>::value, "frames aren't copied");

static QPixmap uniform(const QSize& size, const QColor& color)
{
    QPixmap picture(size);
    picture.fill(color);
    return picture;
}

/// A frame with a scaled picture.
class tst_imageFrame : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override { m_frame.reset(); }

private Q_SLOTS:
    void startsWithoutPicture();
    void handsOutThePictureAsSet();
    void scalesThePictureIntoTheMiddle_data();
    void scalesThePictureIntoTheMiddle();
    void scalesWithoutSmoothing();
    void scalesAgainOnAResize();
    void scalesAgainForANewFrameWidth();
    void takesANewPicture();
    void showsNothingAfterANullPicture();
    void survivesSizesWithoutRoom_data();
    void survivesSizesWithoutRoom();
    void showsThePictureAgainOnceThereIsRoom();
    void computesTheHeightForAWidth_data();
    void computesTheHeightForAWidth();
    void hasNoHeightForAWidthWithoutPicture();
    void leavesTheSizePolicyAlone();

private:
    std::unique_ptr<imageFrame_t> m_frame;
};

void tst_imageFrame::setUp()
{
    m_frame = std::make_unique<imageFrame_t>();
    m_frame->resize(200, 200);
    snapshot(*m_frame); // delivers the resize, which waits for the first showing
}

void tst_imageFrame::startsWithoutPicture()
{
    QVERIFY(m_frame->pixmap() != nullptr);
    QVERIFY(m_frame->pixmap()->isNull());
    QCOMPARE(m_frame->frameWidth(), 0);
    QCOMPARE(firstDifference(snapshot(*m_frame), blank(*m_frame)), QString());
    QWidget parent;
    QCOMPARE((new imageFrame_t(&parent))->parentWidget(), &parent);
}

void tst_imageFrame::handsOutThePictureAsSet()
{
    const QPixmap* const handedOut = m_frame->pixmap();
    const QPixmap picture = uniform(QSize(400, 300), Qt::red);
    m_frame->setPixmap(picture);
    QCOMPARE(m_frame->pixmap(), handedOut);
    QCOMPARE(m_frame->pixmap()->cacheKey(), picture.cacheKey());
    QCOMPARE(m_frame->pixmap()->size(), QSize(400, 300));
}

void tst_imageFrame::scalesThePictureIntoTheMiddle_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<int>("lineWidth");
    QTest::addColumn<QRect>("place");
    QTest::newRow("wider") << QSize(400, 300) << QSize(200, 200) << 0 << QRect(0, 25, 200, 150);
    QTest::newRow("higher") << QSize(300, 400) << QSize(200, 200) << 0 << QRect(25, 0, 150, 200);
    QTest::newRow("enlarged") << QSize(4, 3) << QSize(200, 200) << 0 << QRect(0, 25, 200, 150);
    QTest::newRow("as large") << QSize(200, 200) << QSize(200, 200) << 0 << QRect(0, 0, 200, 200);
    QTest::newRow("framed") << QSize(400, 300) << QSize(204, 204) << 2 << QRect(2, 27, 200, 150);
    QTest::newRow("odd room") << QSize(10, 10) << QSize(25, 10) << 0 << QRect(7, 0, 10, 10);
    QTest::newRow("a line") << QSize(1000, 1) << QSize(100, 11) << 0 << QRect(0, 5, 100, 1);
}

void tst_imageFrame::scalesThePictureIntoTheMiddle()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, frame);
    QFETCH(int, lineWidth);
    QFETCH(QRect, place);
    m_frame->setFrameStyle(lineWidth > 0 ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
    m_frame->setLineWidth(lineWidth);
    m_frame->resize(frame);
    const QImage empty = snapshot(*m_frame);
    m_frame->setPixmap(uniform(picture, Qt::red));
    QImage wanted = empty;
    QPainter(&wanted).fillRect(place, Qt::red);
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
}

void tst_imageFrame::scalesWithoutSmoothing()
{
    QPixmap halves = uniform(QSize(2, 2), Qt::white);
    {
        QPainter painter(&halves);
        painter.fillRect(1, 0, 1, 2, Qt::black);
    }
    m_frame->setPixmap(halves);
    QImage wanted = blank(*m_frame);
    {
        QPainter painter(&wanted);
        painter.fillRect(0, 0, 100, 200, Qt::white);
        painter.fillRect(100, 0, 100, 200, Qt::black);
    }
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
}

void tst_imageFrame::scalesAgainOnAResize()
{
    m_frame->setPixmap(uniform(QSize(10, 10), Qt::red));
    m_frame->show(); // a resize reaches a hidden widget only once it is shown
    QVERIFY(QTest::qWaitForWindowExposed(m_frame.get(), patienceMs()));
    m_frame->resize(120, 100);
    QImage wanted = blank(*m_frame);
    QPainter(&wanted).fillRect(10, 0, 100, 100, Qt::red);
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
}

void tst_imageFrame::scalesAgainForANewFrameWidth()
{
    m_frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    m_frame->setLineWidth(20);
    QImage wanted = snapshot(*m_frame);
    QPainter(&wanted).fillRect(20, 20, 160, 160, Qt::red);
    m_frame->setLineWidth(0);
    m_frame->setPixmap(uniform(QSize(10, 10), Qt::red));
    m_frame->setLineWidth(20);
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
    m_frame->scalePixmap(); // changes nothing
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
}

void tst_imageFrame::takesANewPicture()
{
    m_frame->setPixmap(uniform(QSize(10, 20), Qt::red));
    m_frame->setPixmap(uniform(QSize(20, 10), Qt::blue));
    QImage wanted = blank(*m_frame);
    QPainter(&wanted).fillRect(0, 50, 200, 100, Qt::blue);
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
}

void tst_imageFrame::showsNothingAfterANullPicture()
{
    m_frame->setPixmap(uniform(QSize(10, 20), Qt::red));
    const messageRecorder_t messages;
    m_frame->setPixmap(QPixmap());
    m_frame->scalePixmap();
    QVERIFY(m_frame->pixmap()->isNull());
    QCOMPARE(firstDifference(snapshot(*m_frame), blank(*m_frame)), QString());
    QCOMPARE(messages.texts(), QStringList());
}

void tst_imageFrame::survivesSizesWithoutRoom_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("no width") << QSize(0, 50);
    QTest::newRow("no height") << QSize(50, 0);
    QTest::newRow("smaller than the frame") << QSize(9, 50);
    QTest::newRow("as large as the frame") << QSize(10, 10);
}

void tst_imageFrame::survivesSizesWithoutRoom()
{
    QFETCH(QSize, size);
    const messageRecorder_t messages;
    m_frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    m_frame->setLineWidth(5);
    m_frame->resize(size);
    QImage wanted(std::max(size.width(), 1), std::max(size.height(), 1), QImage::Format_RGB32);
    wanted.fill(Qt::green);
    QImage actual = wanted;
    {
        QPainter painter(&wanted);
        m_frame->render(&painter);
    }
    m_frame->setPixmap(uniform(QSize(10, 20), Qt::red));
    {
        QPainter painter(&actual);
        m_frame->render(&painter);
    }
    QCOMPARE(firstDifference(actual, wanted), QString()); // the frame alone
    QCOMPARE(messages.texts(), QStringList());
}

void tst_imageFrame::showsThePictureAgainOnceThereIsRoom()
{
    m_frame->resize(0, 0);
    m_frame->setPixmap(uniform(QSize(10, 10), Qt::red));
    m_frame->resize(20, 20);
    m_frame->scalePixmap();
    QImage wanted = blank(*m_frame);
    wanted.fill(Qt::red);
    QCOMPARE(firstDifference(snapshot(*m_frame), wanted), QString());
}

void tst_imageFrame::computesTheHeightForAWidth_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<int>("lineWidth");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    const int most = std::numeric_limits<int>::max();
    const int least = std::numeric_limits<int>::min();
    QTest::newRow("framed") << QSize(400, 300) << 2 << 100 << 76;
    QTest::newRow("frameless") << QSize(400, 300) << 0 << 100 << 75;
    QTest::newRow("rounded up") << QSize(400, 300) << 0 << 101 << 76; // 75.75
    QTest::newRow("a little above a whole number") << QSize(1000, 1) << 0 << 1 << 1;
    QTest::newRow("no width") << QSize(400, 300) << 0 << 0 << 0;
    QTest::newRow("as wide as the frame") << QSize(400, 300) << 2 << 4 << 4;
    QTest::newRow("narrower than the frame") << QSize(400, 300) << 2 << 0 << 1; // -3 + 4
    QTest::newRow("more than an int") << QSize(1, 1000) << 2 << 100000000 << most;
    QTest::newRow("the greatest width") << QSize(1, 1000) << 2 << most << most;
    QTest::newRow("the least width") << QSize(1, 1000) << 2 << least << least;
}

void tst_imageFrame::computesTheHeightForAWidth()
{
    QFETCH(QSize, picture);
    QFETCH(int, lineWidth);
    QFETCH(int, width);
    m_frame->setFrameStyle(lineWidth > 0 ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
    m_frame->setLineWidth(lineWidth);
    m_frame->setPixmap(uniform(picture, Qt::red));
    QTEST(m_frame->heightForWidth(width), "height");
}

void tst_imageFrame::hasNoHeightForAWidthWithoutPicture()
{
    QCOMPARE(m_frame->heightForWidth(100), -1);
    m_frame->setPixmap(uniform(QSize(1, 1), Qt::red));
    QCOMPARE(m_frame->heightForWidth(100), 100);
    m_frame->setPixmap(QPixmap());
    QCOMPARE(m_frame->heightForWidth(100), -1);
}

void tst_imageFrame::leavesTheSizePolicyAlone()
{
    m_frame->setPixmap(uniform(QSize(400, 300), Qt::red));
    QVERIFY(!m_frame->hasHeightForWidth());
    QVERIFY(!m_frame->sizePolicy().hasHeightForWidth());
}

ZORBIN_TEST_MAIN(tst_imageFrame, QApplication)
#include "tst_imageFrame.moc"
