// The "About" box of an application. What it says of the application is what main() has registered
// with QCoreApplication.

#include "pages.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <zorbin-qt-gui/aboutBox.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

void fillIn(aboutBox_t* box)
{
    box->copyrightYears(QStringLiteral("2026"));
    box->addText(QStringLiteral("<p>Widgets for marine survey displays.</p>"));
}

} // namespace

QWidget* makeAboutBox()
{
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    aboutBox_t box(page);
    fillIn(&box);
    layout->addWidget(new QLabel(box.aboutText())); // without what was added
    auto* const show = new QPushButton(QStringLiteral("About..."));
    layout->addWidget(show, 0, Qt::AlignHCenter);
    layout->addStretch(1);
    QObject::connect(show, &QPushButton::clicked, page, [page] {
        aboutBox_t shown(page->window());
        fillIn(&shown);
        shown.showAboutBox(); // returns once it is closed
    });
    return page;
}

} // namespace gallery
