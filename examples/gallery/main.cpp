// Every widget of the library, a page each, with the source that makes it beside it. Choose pages
// at the left; try out what can be clicked, dragged and typed into.

#include "galleryWindow.h"
#include "pictures.h"

#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>
#include <cstdlib>

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("ZORBIN_QT_RESOURCE_DIR")) // it needn't be installed
        qputenv("ZORBIN_QT_RESOURCE_DIR", GALLERY_RESOURCE_DIR);
    if (qEnvironmentVariableIsEmpty("ZORBIN_QT_STRIPCHART_TYPE")) // the same on every machine
        qputenv("ZORBIN_QT_STRIPCHART_TYPE", "simple");
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("gallery"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));
    QCoreApplication::setOrganizationName(QStringLiteral("Harbour Lab"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows the widgets of the library."));
    parser.addHelpOption();
    const QCommandLineOption page(QStringLiteral("page"),
                                  QStringLiteral("Open the page NAME first."),
                                  QStringLiteral("NAME"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Write a picture of each page and of the window to DIR and quit."),
        QStringLiteral("DIR"));
    parser.addOptions({page, screenshot});
    parser.process(application);

    if (parser.isSet(screenshot))
        return gallery::savePictures(parser.value(screenshot)) ? EXIT_SUCCESS : EXIT_FAILURE;

    gallery::galleryWindow_t window;
    if (parser.isSet(page) && !window.choosePage(parser.value(page))) {
        std::fprintf(stderr,
                     "gallery: no page '%s'; there are:", qUtf8Printable(parser.value(page)));
        for (const gallery::page_t& known : gallery::pages())
            std::fprintf(stderr, " %s", known.name);
        std::fputs("\n", stderr);
        return EXIT_FAILURE;
    }
    window.resize(1740, 800);
    window.show();
    return QApplication::exec();
}
