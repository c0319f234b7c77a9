#include "pictures.h"
#include "galleryWindow.h"

#include <QApplication>
#include <QDir>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <zorbin-qt-gui/alarmLabel.h>
#include <zorbin-qt-gui/indicator.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

// Whether all of it may be painted: notifications settle a moment after they were shown.
bool isSettled(const QWidget& window)
{
    const QList<QWidget*> parts = window.findChildren<QWidget*>();
    return std::all_of(parts.begin(), parts.end(),
                       [](const QWidget* part) { return part->updatesEnabled(); });
}

QList<alarmLabel_t*> darkAlarms(const QWidget& window)
{
    QList<alarmLabel_t*> labels =
        window.findChildren<alarmLabel_t*>(QStringLiteral("alarmed")); // the rest is quiet
    labels.erase(
        std::remove_if(labels.begin(), labels.end(),
                       [](const alarmLabel_t* label) { return !label->styleSheet().isEmpty(); }),
        labels.end());
    return labels;
}

// Whatever blinks is lit in pictures. Laying out may take so long that it is dark again.
void lightUp(const QWidget& window)
{
    auto* const clock = indicator_t::alertTimer_t::instance();
    while (!clock->drawOn() || !darkAlarms(window).empty()) {
        if (!clock->drawOn())
            clock->alertTimeout();
        for (alarmLabel_t* const label : darkAlarms(window))
            label->flash();
        QApplication::processEvents();
    }
}

bool save(QWidget* window, const QString& path)
{
    window->show();
    QApplication::processEvents();
    while (!isSettled(*window))
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    window->grab(); // rulers ask for the room of their labels when they are first painted
    QApplication::processEvents(); // lays out anew
    QApplication::processEvents(); // what waits for the layout: the chart's time scale
    lightUp(*window);
    if (window->grab().save(path))
        return true;
    std::fprintf(stderr, "gallery: cannot write the picture '%s'\n", qUtf8Printable(path));
    return false;
}

} // namespace

bool savePictures(const QString& directory)
{
    const QDir target(directory);
    if (!target.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "gallery: cannot make the directory '%s'\n",
                     qUtf8Printable(directory));
        return false;
    }
    QApplication::setCursorFlashTime(0); // no cursor blinks
    for (const page_t& page : pages()) {
        const std::unique_ptr<QWidget> widget(page.make());
        widget->resize(widget->minimumSizeHint().expandedTo(page.pictureSize));
        if (!save(widget.get(),
                  target.filePath(QStringLiteral("%1.png").arg(QLatin1String(page.name)))))
            return false;
    }
    galleryWindow_t window;
    window.resize(1740, 800);
    return save(&window, target.filePath(QStringLiteral("gallery.png")));
}

} // namespace gallery
