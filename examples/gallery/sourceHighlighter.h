#pragma once

#include <QRegularExpression>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace gallery {

// Colours C++ as the pages are written: comments run to the end of their line.
class sourceHighlighter_t : public QSyntaxHighlighter
{
public:
    explicit sourceHighlighter_t(QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;

private:
    // One alternative for each kind, so that a quote in a comment is no text, and the reverse.
    const QRegularExpression m_token;
    QTextCharFormat m_comment;
    QTextCharFormat m_text;
    QTextCharFormat m_directive;
    QTextCharFormat m_keyword;
};

} // namespace gallery
