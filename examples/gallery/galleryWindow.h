#pragma once
#include "page.h"

#include <QWidget>

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QScrollArea;

namespace gallery {

// The pages by title at the left, the chosen one in the middle, its source at the right. A page is
// made when it is chosen and deleted with the next choice.
class galleryWindow_t : public QWidget
{
    Q_OBJECT

public:
    // Shows the first page.
    explicit galleryWindow_t(QWidget* parent = nullptr);

    // Chooses a page. Returns false, and changes nothing, if there is none of that name.
    bool choosePage(const QString& name);

private:
    void showPage(const page_t& page);

    QListWidget* const m_list;
    QLabel* const m_title;
    QScrollArea* const m_page;
    QPlainTextEdit* const m_source;
};

} // namespace gallery
