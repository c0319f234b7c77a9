#include "sourceHighlighter.h"

namespace gallery {

sourceHighlighter_t::sourceHighlighter_t(QTextDocument* document)
    : QSyntaxHighlighter(document),
      m_token(QStringLiteral(
          R"((?<comment>//.*))"
          R"re(|(?<text>"(?:[^"\\]|\\.)*"|'(?:[^'\\]|\\.)*'))re"
          R"(|(?<directive>^#\w+))"
          R"(|(?<keyword>\b(?:auto|bool|char|class|const|constexpr|double|else|enum|explicit|false)"
          R"(|float|for|if|int|long|namespace|new|nullptr|override|private|protected|public|return)"
          R"(|static|static_cast|struct|this|true|typename|template|unsigned|using|void)\b))"))
{
    m_comment.setForeground(QColor(0x2f, 0x7d, 0x32));
    m_text.setForeground(QColor(0xa0, 0x40, 0x10));
    m_directive.setForeground(QColor(0x80, 0x20, 0x80));
    m_keyword.setForeground(QColor(0x10, 0x50, 0xb0));
}

void sourceHighlighter_t::highlightBlock(const QString& text)
{
    const struct
    {
        QString group;
        const QTextCharFormat& format;
    } kinds[] = {{QStringLiteral("comment"), m_comment},
                 {QStringLiteral("text"), m_text},
                 {QStringLiteral("directive"), m_directive},
                 {QStringLiteral("keyword"), m_keyword}};
    QRegularExpressionMatchIterator matches = m_token.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        for (const auto& kind : kinds)
            if (match.capturedStart(kind.group) >= 0)
                setFormat(static_cast<int>(match.capturedStart()),
                          static_cast<int>(match.capturedLength()), kind.format);
    }
}

} // namespace gallery
