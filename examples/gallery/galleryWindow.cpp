#include "galleryWindow.h"
#include "sourceHighlighter.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

namespace gallery {

galleryWindow_t::galleryWindow_t(QWidget* parent)
    : QWidget(parent), m_list(new QListWidget), m_title(new QLabel), m_page(new QScrollArea),
      m_source(new QPlainTextEdit)
{
    setWindowTitle(QStringLiteral("Widget gallery"));
    m_list->setObjectName(QStringLiteral("pages"));
    m_page->setObjectName(QStringLiteral("page"));
    m_source->setObjectName(QStringLiteral("source"));

    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_page->setWidgetResizable(true);
    m_page->setFrameShape(QFrame::NoFrame);
    m_source->setReadOnly(true);
    m_source->setLineWrapMode(QPlainTextEdit::NoWrap);
    QFont monospace = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    monospace.setPointSizeF(8.0); // a line of 100 columns fits
    m_source->setFont(monospace);
    new sourceHighlighter_t(m_source->document());

    auto* const middle = new QWidget;
    auto* const middleLayout = new QVBoxLayout(middle);
    middleLayout->setContentsMargins(6, 0, 6, 0);
    middleLayout->addWidget(m_title);
    middleLayout->addWidget(m_page, 1);

    auto* const splitter = new QSplitter;
    splitter->addWidget(m_list);
    splitter->addWidget(middle);
    splitter->addWidget(m_source);
    splitter->setStretchFactor(1, 1);
    splitter->setStretchFactor(2, 1);
    splitter->setSizes({185, 825, 700});
    (new QHBoxLayout(this))->addWidget(splitter);

    for (const page_t& page : pages())
        m_list->addItem(QString::fromUtf8(page.title));
    connect(m_list, &QListWidget::currentRowChanged, this,
            [this](int row) { showPage(pages()[static_cast<std::size_t>(row)]); });
    m_list->setCurrentRow(0);
}

bool galleryWindow_t::choosePage(const QString& name)
{
    for (int row = 0; row < m_list->count(); ++row) {
        if (QLatin1String(pages()[static_cast<std::size_t>(row)].name) == name) {
            m_list->setCurrentRow(row);
            return true;
        }
    }
    return false;
}

void galleryWindow_t::showPage(const page_t& page)
{
    m_title->setText(QString::fromUtf8(page.title));
    QWidget* const widget = page.make();
    widget->setMaximumHeight(2 * page.pictureSize.height()); // further apart it would look odd
    m_page->setWidget(widget);                               // deletes the one before
    m_source->setPlainText(sourceOf(page));
}

} // namespace gallery
