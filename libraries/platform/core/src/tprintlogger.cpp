#include "tprintlogger.h"

#include <QRegularExpression>

TPrintLogger::TPrintLogger(std::FILE* stream)
    : m_stream(stream)
{ }

void TPrintLogger::log(Level level, const QString& message)
{
    if (level < m_minimum || !m_stream)
        return;
    const QByteArray line = QStringLiteral("[%1] %2\n").arg(levelName(level), plainText(message)).toUtf8();
    std::fwrite(line.constData(), 1, size_t(line.size()), m_stream);
    std::fflush(m_stream);
}

QString TPrintLogger::plainText(const QString& richText)
{
    static const QRegularExpression lineBreaks(QStringLiteral("<br\\s*/?>"), QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
    QString text = richText;
    text.replace(lineBreaks, QStringLiteral(" "));
    text.remove(tags);
    text.replace(QLatin1String("&lt;"), QLatin1String("<"));
    text.replace(QLatin1String("&gt;"), QLatin1String(">"));
    text.replace(QLatin1String("&quot;"), QLatin1String("\""));
    text.replace(QLatin1String("&#39;"), QLatin1String("'"));
    // Last, so that "&amp;lt;" stays the text "&lt;".
    text.replace(QLatin1String("&amp;"), QLatin1String("&"));
    return text;
}
