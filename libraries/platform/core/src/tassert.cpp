#include "tassert.h"

#include "vncorelogging.h"

namespace {
QList<TAssert::Failure>& recorded()
{
    static QList<TAssert::Failure> list;
    return list;
}
} // namespace

void t_assert(const char* expression, const char* file, int line, bool log)
{
    TAssert::Failure failure;
    failure.expression = QString::fromUtf8(expression ? expression : "");
    failure.file = QString::fromUtf8(file ? file : "");
    failure.line = line;
    recorded().append(failure);
    // A failed assertion is the developer's business: it goes to the library's
    // category, never to the user's translated log.
    if (log)
        qCWarning(vnCore, "Assertion failed: %s (%s:%d)", qUtf8Printable(failure.expression),
                  qUtf8Printable(failure.file), line);
}

QList<TAssert::Failure> TAssert::failures()
{
    return recorded();
}

int TAssert::count()
{
    return recorded().size();
}

bool TAssert::contains(const QString& expression, const QString& file)
{
    for (const Failure& failure : recorded()) {
        if (failure.expression == expression && failure.file == file)
            return true;
    }
    return false;
}

void TAssert::clear()
{
    recorded().clear();
}
