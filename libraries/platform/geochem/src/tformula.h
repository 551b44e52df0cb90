#pragma once

#include "vngeochem_export.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

/// A parameter's formula (Pr/Ph, Ts/(Ts+Tm), 1.5*(2-MP+3-MP)/(P+1-MP+9-MP)...)
/// read over the short names of the compounds it combines: numbers, + - * /,
/// unary signs and parentheses, nothing else. Names are read as the reference
/// content writes them, hyphens and leading digits included, so "2-MP+3-MP"
/// adds two compounds: at each place the longest known name wins, and a name
/// must end where the text's word ends ("Prx" is not "Pr" followed by "x").
///
/// A formula is parsed once and evaluated for any set of values. Failures are
/// results: a formula that cannot be read, a missing compound, a division by
/// zero or a result that is not a finite number give no value and a reason
/// (translated), never an invented number.
class VNGEOCHEM_EXPORT TFormula
{
public:
    struct Result
    {
        bool ok = false;
        double value = 0.0;
        /// Why there is no value; empty when there is one.
        QString reason;
    };

    TFormula() = default;
    /// Reads `text` over the compound short names `names`.
    static TFormula parse(const QString& text, const QStringList& names);

    bool isValid() const { return m_error.isEmpty() && !m_program.isEmpty(); }
    /// Why the text could not be read (empty for a valid formula).
    const QString& error() const { return m_error; }
    const QString& text() const { return m_text; }
    /// The compounds the formula names, each once, in order of appearance.
    const QStringList& names() const { return m_names; }

    /// The formula's value for the compounds' `values` (areas or heights).
    Result evaluate(const QHash<QString, double>& values) const;

    /// At most this many operations: a formula is a line, not a program.
    static constexpr int MaxLength = 4096;

private:
    enum class Op : quint8 { Number, Name, Add, Subtract, Multiply, Divide, Negate };
    struct Step
    {
        Op op;
        double number = 0.0;
        int name = -1;
    };
    friend class TFormulaParser;

    QString m_text;
    QString m_error;
    QStringList m_names;
    QVector<Step> m_program; // reverse Polish
};
