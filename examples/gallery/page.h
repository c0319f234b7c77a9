#pragma once

#include <QSize>
#include <QString>
#include <vector>

class QWidget;

namespace gallery {

// A page of the gallery: what one widget of the library looks like, and the source that makes it.
struct page_t
{
    const char* name;   // of the source pages/NAME.cpp, of the picture NAME.png and for --page
    const char* title;  // what the list shows
    QWidget* (*make)(); // makes the page's widget, which the caller owns
    QSize pictureSize;  // at least, in pixels
};

// All pages, in the order of the list.
const std::vector<page_t>& pages();

// The page's source; empty if it isn't compiled in, which is a fault.
QString sourceOf(const page_t& page);

} // namespace gallery
