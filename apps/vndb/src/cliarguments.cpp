#include "cliarguments.h"

#include <QCoreApplication>

#include <cmath>

namespace {
QString tr(const char* english, const char* french)
{
    return QCoreApplication::translate("CliArguments", english, french);
}

const CliOption* findOption(const QList<CliOption>& options, const QString& word)
{
    for (const CliOption& option : options) {
        if (word.startsWith(QLatin1String("--")) ? word.mid(2) == option.name
                                                 : (word.size() == 2 && word.at(1) == option.shortName))
            return &option;
    }
    return nullptr;
}
} // namespace

bool CliArguments::parse(const QStringList& words, const QList<CliOption>& options, QString* error)
{
    m_positionals.clear();
    m_values.clear();
    bool optionsEnded = false;
    for (int i = 0; i < words.size(); ++i) {
        QString word = words.at(i);
        // A lone "-" and negative numbers are values, not options.
        double ignored = 0.0;
        if (optionsEnded || !word.startsWith(QLatin1Char('-')) || word == QLatin1String("-")
            || toNumber(word, &ignored)) {
            m_positionals << word;
            continue;
        }
        if (word == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        QString inlineValue;
        bool hasInline = false;
        const int equals = word.indexOf(QLatin1Char('='));
        if (word.startsWith(QLatin1String("--")) && equals > 2) {
            inlineValue = word.mid(equals + 1);
            word = word.left(equals);
            hasInline = true;
        }
        const CliOption* option = findOption(options, word);
        if (!option) {
            *error = tr("unknown option %1", "option inconnue %1").arg(word);
            return false;
        }
        QStringList& values = m_values[option->name];
        if (option->values == 0) {
            if (hasInline) {
                *error = tr("option %1 takes no value", "l'option %1 ne prend pas de valeur").arg(word);
                return false;
            }
            continue;
        }
        if (hasInline) {
            values << inlineValue;
        } else if (i + 1 < words.size()) {
            values << words.at(++i);
        } else {
            *error
                = tr("option %1 needs a value (%2)", "l'option %1 attend une valeur (%2)").arg(word, option->valueName);
            return false;
        }
        if (option->values == 2 && i + 1 < words.size() && toNumber(words.at(i + 1), &ignored))
            values << words.at(++i);
    }
    return true;
}

QString CliArguments::value(const QString& option) const
{
    const QStringList values = m_values.value(option);
    return values.isEmpty() ? QString() : values.first();
}

bool CliArguments::toNumber(const QString& text, double* number)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return false;
    *number = value;
    return true;
}

bool CliArguments::toIndex(const QString& text, int* index)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (!ok || value < 0)
        return false;
    *index = value;
    return true;
}

bool CliArguments::keyValues(const QString& option, QList<QPair<QString, QString>>* pairs, QString* error) const
{
    pairs->clear();
    for (const QString& value : values(option)) {
        const int equals = value.indexOf(QLatin1Char('='));
        if (equals <= 0) {
            *error = QCoreApplication::translate("CliArguments", "--%1 '%2' is not KEY=VALUE",
                                                 "--%1 '%2' n'est pas de la forme CLÉ=VALEUR")
                         .arg(option, value);
            return false;
        }
        pairs->append(qMakePair(value.left(equals), value.mid(equals + 1)));
    }
    return true;
}
