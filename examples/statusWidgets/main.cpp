// A panel of a towed sonar with every status widget. Look at the lamps under "Sonar settings": set
// a value and its lamp turns yellow, then green once the sonar, played by a timer, has taken it.
// The gain's sonar goes no further than 40 dB, so a setpoint beyond stays red.

#include <QApplication>
#include <QCommandLineParser>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <zorbin-qt-gui/aboutBox.h>
#include <zorbin-qt-gui/alarmLabel.h>
#include <zorbin-qt-gui/imageFrame.h>
#include <zorbin-qt-gui/indicator.h>
#include <zorbin-qt-gui/notifierWidget.h>
#include <zorbin-qt-gui/scalableTextWidget.h>
#include <zorbin-qt-gui/spFbUiWrapper.h>

using namespace zorbin_qt_gui;

namespace {

constexpr double greatestGain = 40.0; // dB

QWidget* lamps()
{
    auto* const box = new QGroupBox(QStringLiteral("Lamps"));
    auto* const layout = new QFormLayout(box);
    const auto add = [layout](const char* text, const std::function<void(indicator_t*)>& setUp) {
        auto* const lamp = new indicator_t;
        setUp(lamp);
        lamp->setFixedSize(22, 18);
        layout->addRow(lamp, new QLabel(QString::fromLatin1(text)));
    };
    add("on", [](indicator_t*) {});
    add("off", [](indicator_t* lamp) { lamp->setOn(false); });
    add("blinking, in the lit phase", [](indicator_t* lamp) { lamp->alertWhenOn(true); });
    add("disabled", [](indicator_t* lamp) { lamp->setEnabled(false); });
    add("in a colour of its own", [](indicator_t* lamp) { lamp->setColor(QColor(240, 150, 0)); });
    add("hidden while off", [](indicator_t* lamp) {
        lamp->hideWhenOff(true);
        lamp->setOn(false);
    });
    return box;
}

QWidget* alarmLabels()
{
    auto* const box = new QGroupBox(QStringLiteral("Alarm labels"));
    auto* const layout = new QFormLayout(box);
    auto* const quiet = new alarmLabel_t;
    quiet->setText(QStringLiteral("Altitude 12.4 m"));
    auto* const alarmed = new alarmLabel_t;
    alarmed->setObjectName(QStringLiteral("alarmed"));
    alarmed->setText(QStringLiteral("Altitude 3.1 m"));
    alarmed->flashFgColor(Qt::white);
    alarmed->flashBgColor(QColor(190, 0, 0));
    alarmed->alarm(true);
    layout->addRow(QStringLiteral("plain"), quiet);
    layout->addRow(QStringLiteral("flash"), alarmed);
    return box;
}

QWidget* texts()
{
    auto* const box = new QGroupBox(QStringLiteral("Text as large as fits"));
    auto* const layout = new QGridLayout(box);
    const auto add = [layout](const char* text, const QSize& size, int row, int column, int rows) {
        auto* const widget = new scalableTextWidget_t;
        widget->setFixedSize(size);
        widget->setText(QString::fromUtf8(text));
        layout->addWidget(widget, row, column, rows, 1);
    };
    add("24.8 m", QSize(200, 90), 0, 0, 2);
    add("4.2 kn", QSize(110, 40), 0, 1, 1);
    add("heading 271.5 degrees", QSize(110, 40), 1, 1, 1);
    return box;
}

QWidget* picture()
{
    QPixmap seabed(120, 90);
    QPainter painter(&seabed);
    for (int y = 0; y < seabed.height(); ++y) {
        for (int x = 0; x < seabed.width(); ++x) {
            const double ripple = 0.5 + 0.5 * std::sin(0.25 * x + 2.0 * std::sin(0.06 * y));
            painter.setPen(QColor::fromHsv(32, 153, qRound(64.0 + 178.0 * ripple)));
            painter.drawPoint(x, y);
        }
    }
    painter.end();
    auto* const box = new QGroupBox(QStringLiteral("Picture, its aspect ratio kept"));
    auto* const layout = new QGridLayout(box);
    auto* const frame = new imageFrame_t;
    frame->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    frame->setLineWidth(2);
    frame->setMinimumSize(240, 130);
    frame->setPixmap(seabed);
    layout->addWidget(frame);
    return box;
}

// Settings, and a sonar that answers a second later.
QWidget* settings(QObject* owner)
{
    enum id_t
    {
        GAIN = 1,
        RANGE = 2,
        PINGS = 3
    };
    auto* const box = new QGroupBox(QStringLiteral("Sonar settings"));
    auto* const layout = new QGridLayout(box);
    const auto add = [layout](const char* name, QWidget* widget) {
        auto* const lamp = new indicator_t;
        lamp->setFixedSize(18, 18);
        const int row = layout->rowCount();
        layout->addWidget(new QLabel(QString::fromLatin1(name)), row, 0);
        layout->addWidget(widget, row, 1);
        layout->addWidget(lamp, row, 2);
        return lamp;
    };
    auto* const gain = new QDoubleSpinBox;
    gain->setSuffix(QStringLiteral(" dB"));
    auto* const range = new QSpinBox;
    range->setSuffix(QStringLiteral(" m"));
    range->setMaximum(500);
    auto* const pings = new QSpinBox;
    pings->setSuffix(QStringLiteral(" / s"));

    auto* const binder = new spFbUiWrapper_t(owner);
    binder->addDoubleSpinBoxWrapper(0.0, greatestGain, add("Gain", gain), GAIN, gain);
    binder->addSpinBoxWrapper(0, 150, add("Range", range), RANGE, range);
    binder->addSpinBoxWrapper(0, 10, add("Pings", pings), PINGS, pings);
    gain->setValue(46.0); // more than the sonar has: red
    range->setValue(150); // what it reports: green
    binder->initGui();
    QObject::connect(binder, &spFbUiWrapper_t::valueChanged, binder, [binder](int id) {
        binder->setInFlight(id);
        QTimer::singleShot(1000, binder, [binder, id] {
            const QVariant setpoint = binder->setpointValue(id);
            const QVariant taken =
                id == GAIN ? std::min(setpoint.toDouble(), greatestGain) : setpoint;
            binder->updateFeedback(static_cast<unsigned>(id), taken);
        });
    });
    pings->setValue(12); // on its way: yellow
    return box;
}

QWidget* about(QWidget* window)
{
    aboutBox_t box(window);
    box.copyrightYears(QStringLiteral("2026"));
    auto* const frame = new QGroupBox(QStringLiteral("The text of an about box"));
    auto* const layout = new QGridLayout(frame);
    layout->addWidget(new QLabel(box.aboutText()));
    return frame;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("statusWidgets"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));
    QCoreApplication::setOrganizationName(QStringLiteral("Harbour Lab"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows the status widgets."));
    parser.addHelpOption();
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Write a picture of the window to FILE and quit."), QStringLiteral("FILE"));
    parser.addOption(screenshot);
    parser.process(application);

    notifierWidget_t window;
    window.setWindowTitle(QStringLiteral("Status widgets"));
    auto* const panel = new QWidget;
    auto* const layout = new QGridLayout(panel);
    layout->addWidget(lamps(), 0, 0, 2, 1);
    layout->addWidget(alarmLabels(), 0, 1);
    layout->addWidget(settings(panel), 1, 1);
    layout->addWidget(texts(), 2, 0);
    layout->addWidget(picture(), 2, 1);
    layout->addWidget(about(&window), 3, 0, 1, 2);
    layout->setRowMinimumHeight(4, 60); // for the strip
    window.setMainWidget(panel);
    window.showPrompt(new QLabel(QStringLiteral("A prompt: start the line?")));
    window.showNotification(new QLabel(QStringLiteral("A notification: the disk is nearly full")));
    window.resize(720, 560);
    window.show();
    if (!parser.isSet(screenshot))
        return QApplication::exec();

    // Once the strip has settled, in the lit phase of blinking lamps and alarm labels.
    bool isWritten = false;
    const auto* const clock = indicator_t::alertTimer_t::instance();
    QObject::connect(clock, &indicator_t::alertTimer_t::alert, &window, [&] {
        if (!clock->drawOn() || !window.updatesEnabled())
            return;
        auto* const alarmed = window.findChild<alarmLabel_t*>(QStringLiteral("alarmed"));
        if (alarmed->styleSheet().isEmpty())
            alarmed->flash();
        isWritten = window.grab().save(parser.value(screenshot));
        QCoreApplication::quit();
    });
    QApplication::exec();
    if (isWritten)
        return EXIT_SUCCESS;
    std::fprintf(stderr, "statusWidgets: cannot write the picture\n");
    return EXIT_FAILURE;
}
