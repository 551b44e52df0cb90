#include "ttranslator.h"

#include "tapplicationdata.h"

#include <QCoreApplication>
#include <QPointer>

namespace {
QPointer<TTranslator> s_installed;

bool isQtContext(const char* context)
{
    return context && context[0] == 'Q' && context[1] >= 'A' && context[1] <= 'Z';
}
} // namespace

TTranslator::TTranslator(const QString& language, QObject* parent)
    : QTranslator(parent)
    , m_language(language.toLower())
{ }

bool TTranslator::isFrench() const
{
    return m_language.startsWith(QLatin1String("fr"));
}

QString TTranslator::translate(const char* context, const char* sourceText, const char* disambiguation, int n) const
{
    Q_UNUSED(sourceText)
    Q_UNUSED(n)
    if (!isFrench() || !disambiguation || !*disambiguation || isQtContext(context))
        return QString();
    return QString::fromUtf8(disambiguation);
}

bool TTranslator::isEmpty() const
{
    return false;
}

void TTranslator::install(const QString& language)
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    if (s_installed) {
        QCoreApplication::removeTranslator(s_installed);
        delete s_installed;
    }
    s_installed = new TTranslator(language, app);
    QCoreApplication::installTranslator(s_installed);
    if (TApplicationData* data = TApplicationData::getInstance())
        data->setLanguage(s_installed->language());
}

QString TTranslator::currentLanguage()
{
    return s_installed ? s_installed->language() : QStringLiteral("en");
}
