// Enters a position. Look at how both fields follow the selector of the notation, and at the
// decimal degrees below, which vanish while a field holds no coordinate: type 95 degrees of
// latitude. Paste a position from elsewhere, such as 54°19.5'N 10°08.2'E, into each field. The
// button collects files from several directories.

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <cstdio>
#include <cstdlib>
#include <ui_multiPathSelectDialog.h>
#include <zorbin-qt-gui/latLonEditor.h>
#include <zorbin-qt-gui/multiPathSelectDialog.h>

using namespace zorbin_qt_gui;

namespace {

class positionEntry_t : public QWidget
{
public:
    positionEntry_t()
    {
        setWindowTitle(QStringLiteral("Position"));
        auto* const selector = new coordFormatSelector_t(this);
        auto* const button = new QPushButton(QStringLiteral("Recordings..."), this);
        auto* const layout = new QFormLayout(this);
        layout->addRow(QStringLiteral("Notation"), selector);
        layout->addRow(QStringLiteral("Latitude"), m_latitude);
        layout->addRow(QStringLiteral("Longitude"), m_longitude);
        layout->addRow(QStringLiteral("Decimal degrees"), m_degrees);
        layout->addRow(button);
        for (latLonEditor_t* const editor : {m_latitude, m_longitude}) {
            editor->connectFormatSelector(selector, true);
            editor->setCoordinateFormat(latLonEditor_t::CF_DM);
            connect(editor, &latLonEditor_t::valueChanged, this, [this] { showDegrees(); });
            connect(editor, &latLonEditor_t::valueValidityChanged, this, [this] { showDegrees(); });
        }
        connect(button, &QPushButton::clicked, this, [this] { chooseRecordings(); });
        m_latitude->setValue(54.3250);
        m_longitude->setValue(10.1367);
    }

private:
    void showDegrees()
    {
        double latitude = 0.0;
        double longitude = 0.0;
        const bool isPosition = m_latitude->value(latitude) && m_longitude->value(longitude);
        m_degrees->setText(
            isPosition ? QStringLiteral("%1, %2").arg(latitude, 0, 'f', 6).arg(longitude, 0, 'f', 6)
                       : QStringLiteral("no position"));
    }

    void chooseRecordings()
    {
        mfsDialog_t dialog({QStringLiteral("*.log")}, this);
        dialog.setDirectory(QStringLiteral(POSITION_ENTRY_DATA));
        if (dialog.exec() == QDialog::Accepted)
            for (const QString& path : dialog.selected())
                std::printf("%s\n", qUtf8Printable(path));
    }

    latLonEditor_t* const m_latitude = new latitudeEditor_t(this);
    latLonEditor_t* const m_longitude = new longitudeEditor_t(this);
    QLabel* const m_degrees = new QLabel(this);
};

void complain(const QString& message)
{
    std::fprintf(stderr, "positionEntry: %s\n", qUtf8Printable(message));
}

bool save(QWidget* widget, const QString& path)
{
    widget->show();
    QApplication::processEvents();
    if (widget->grab().save(path))
        return true;
    complain(QStringLiteral("cannot write the picture '%1'").arg(path));
    return false;
}

// Of a survey that is there only meanwhile, so that the picture is the same everywhere.
bool saveDialog(const QString& path)
{
    QDir survey(QStringLiteral("/tmp/survey"));
    if (survey.exists()) {
        complain(QStringLiteral("'%1' is in the way").arg(survey.path()));
        return false;
    }
    for (const char* const line : {"line1", "line2"}) {
        survey.mkpath(QString::fromLatin1(line));
        for (const char* const name : {"depth.log", "heading.log", "position.log"}) {
            QFile file(survey.filePath(QString::fromLatin1(line) + QLatin1Char('/') +
                                       QString::fromLatin1(name)));
            if (!file.open(QIODevice::WriteOnly)) {
                complain(QStringLiteral("cannot write '%1'").arg(file.fileName()));
                return false;
            }
        }
    }
    mfsDialog_t dialog({QStringLiteral("*.log")});
    dialog.setDirectory(survey.filePath(QStringLiteral("line1")));
    dialog.addAllClicked();
    dialog.setDirectory(survey.filePath(QStringLiteral("line2")));
    dialog.ui()->candidatesListView->setCurrentIndex(
        dialog.ui()->candidatesListView->model()->index(0, 0));
    const bool isSaved = save(&dialog, path);
    survey.removeRecursively();
    return isSaved;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Enters a position."));
    parser.addHelpOption();
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Write a picture of the window to FILE and quit."), QStringLiteral("FILE"));
    const QCommandLineOption dialogScreenshot(
        QStringLiteral("dialog-screenshot"),
        QStringLiteral("Write a picture of the dialog for files to FILE and quit."),
        QStringLiteral("FILE"));
    parser.addOptions({screenshot, dialogScreenshot});
    parser.process(application);

    positionEntry_t window;
    if (parser.isSet(screenshot) || parser.isSet(dialogScreenshot)) {
        const bool areSaved =
            (!parser.isSet(screenshot) || save(&window, parser.value(screenshot))) &&
            (!parser.isSet(dialogScreenshot) || saveDialog(parser.value(dialogScreenshot)));
        return areSaved ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    window.show();
    return QApplication::exec();
}
