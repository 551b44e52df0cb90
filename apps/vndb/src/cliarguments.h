#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// One option a command accepts. `values` is 0 for a flag, 1 for an option
/// that takes one value, 2 for one that takes a value and, when the next word
/// is a number, a second one (`--spectrum FIRST [LAST]`).
struct CliOption
{
    QString name;    ///< long name without the dashes
    QChar shortName; ///< optional one-letter alias ("o" for -o)
    int values = 0;
    QString valueName; ///< shown in the help ("FILE", "MASS")
    QString help;      ///< translated one-line description
};

/// The words of one command line, split into options and positional words.
/// Options may come before, between or after the positional words, as
/// "--name value" or "--name=value"; "--" ends the options.
class CliArguments
{
public:
    /// Parses `words` against `options`; false with a translated one-line
    /// `error` for an unknown option or a missing value.
    bool parse(const QStringList& words, const QList<CliOption>& options, QString* error);

    const QStringList& positionals() const { return m_positionals; }
    bool isSet(const QString& option) const { return m_values.contains(option); }
    /// The first value of `option` (null when absent).
    QString value(const QString& option) const;
    QStringList values(const QString& option) const { return m_values.value(option); }
    /// The values of a repeatable KEY=VALUE option, split at their first '='.
    /// False, with a translated `error` naming it, for a value without '='.
    bool keyValues(const QString& option, QList<QPair<QString, QString>>* pairs, QString* error) const;

    /// Reads a finite decimal number ("12.5", "1e3"); false otherwise.
    static bool toNumber(const QString& text, double* number);
    /// Reads a non-negative integer; false otherwise.
    static bool toIndex(const QString& text, int* index);

private:
    QStringList m_positionals;
    QHash<QString, QStringList> m_values;
};
