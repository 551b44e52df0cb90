#include "tformula.h"

#include "vngeochemlogging.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {

const char* const Context = "TFormula";

QString translate(const char* english, const char* french)
{
    return QCoreApplication::translate(Context, english, french);
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

// Deep enough for any formula a person writes; a guard against a stack that
// nested parentheses could otherwise exhaust.
constexpr int MaxDepth = 64;

} // namespace

// Recursive descent over the text: expression := term (('+'|'-') term)*,
// term := factor (('*'|'/') factor)*, factor := ('+'|'-') factor | number |
// name | '(' expression ')'. Emits the formula in reverse Polish order.
class TFormulaParser
{
public:
    TFormulaParser(TFormula& formula, const QStringList& names)
        : m_formula(formula)
        , m_text(formula.m_text)
        , m_known(names)
    {
        // Longest first: "2-MP" before "2", "Pr" before "P".
        m_known.removeAll(QString());
        std::sort(m_known.begin(), m_known.end(),
                  [](const QString& a, const QString& b) { return a.size() > b.size(); });
    }

    bool run()
    {
        if (!expression(0))
            return false;
        skipBlanks();
        if (m_pos < m_text.size())
            return fail(translate("unexpected '%1' at position %2", "'%1' inattendu à la position %2")
                            .arg(m_text.at(m_pos))
                            .arg(m_pos + 1));
        return true;
    }

private:
    void skipBlanks()
    {
        while (m_pos < m_text.size() && m_text.at(m_pos).isSpace())
            ++m_pos;
    }

    bool fail(const QString& reason)
    {
        if (m_formula.m_error.isEmpty())
            m_formula.m_error = reason;
        return false;
    }

    void push(TFormula::Op op, double number = 0.0, int name = -1) { m_formula.m_program.append({op, number, name}); }

    bool expression(int depth)
    {
        if (depth > MaxDepth)
            return fail(translate("the formula is nested too deeply", "la formule est trop imbriquée"));
        return binary(QLatin1Char('+'), TFormula::Op::Add, QLatin1Char('-'), TFormula::Op::Subtract,
                      [this, depth] { return term(depth); });
    }

    bool term(int depth)
    {
        return binary(QLatin1Char('*'), TFormula::Op::Multiply, QLatin1Char('/'), TFormula::Op::Divide,
                      [this, depth] { return factor(depth); });
    }

    // One level of left-associative operators over the level below it.
    template <typename Operand>
    bool binary(QChar first, TFormula::Op firstOp, QChar second, TFormula::Op secondOp, Operand operand)
    {
        if (!operand())
            return false;
        for (;;) {
            skipBlanks();
            if (m_pos >= m_text.size())
                return true;
            const QChar c = m_text.at(m_pos);
            if (c != first && c != second)
                return true;
            ++m_pos;
            if (!operand())
                return false;
            push(c == first ? firstOp : secondOp);
        }
    }

    bool factor(int depth)
    {
        if (depth > MaxDepth || m_formula.m_program.size() > TFormula::MaxLength)
            return fail(translate("the formula is too long", "la formule est trop longue"));
        skipBlanks();
        if (m_pos >= m_text.size())
            return fail(translate("the formula ends too early", "la formule se termine trop tôt"));
        const QChar c = m_text.at(m_pos);
        if (c == QLatin1Char('+') || c == QLatin1Char('-')) {
            ++m_pos;
            if (!factor(depth + 1))
                return false;
            if (c == QLatin1Char('-'))
                push(TFormula::Op::Negate);
            return true;
        }
        if (c == QLatin1Char('(')) {
            ++m_pos;
            if (!expression(depth + 1))
                return false;
            skipBlanks();
            if (m_pos >= m_text.size() || m_text.at(m_pos) != QLatin1Char(')'))
                return fail(translate("a parenthesis is not closed", "une parenthèse n'est pas fermée"));
            ++m_pos;
            return true;
        }
        // Names before numbers: a name may begin with a digit ("2-MP").
        if (name())
            return true;
        if (c.isDigit() || c == QLatin1Char('.'))
            return number();
        int end = m_pos;
        while (end < m_text.size() && (isWordChar(m_text.at(end)) || m_text.at(end) == QLatin1Char('-')))
            ++end;
        if (end == m_pos)
            return fail(
                translate("unexpected '%1' at position %2", "'%1' inattendu à la position %2").arg(c).arg(m_pos + 1));
        return fail(translate("unknown name '%1'", "nom inconnu '%1'").arg(m_text.mid(m_pos, end - m_pos)));
    }

    bool name()
    {
        for (const QString& known : qAsConst(m_known)) {
            if (!QStringRef(&m_text, m_pos, std::min(known.size(), m_text.size() - m_pos)).startsWith(known))
                continue;
            const int end = m_pos + known.size();
            if (end < m_text.size() && isWordChar(m_text.at(end)) && isWordChar(known.back()))
                continue; // a longer word that merely begins like this name
            int index = m_formula.m_names.indexOf(known);
            if (index < 0) {
                index = m_formula.m_names.size();
                m_formula.m_names.append(known);
            }
            push(TFormula::Op::Name, 0.0, index);
            m_pos = end;
            return true;
        }
        return false;
    }

    bool number()
    {
        int end = m_pos;
        while (end < m_text.size() && (m_text.at(end).isDigit() || m_text.at(end) == QLatin1Char('.')))
            ++end;
        // An exponent only when digits follow it: "2e3", "1.5E-2".
        if (end < m_text.size() && (m_text.at(end) == QLatin1Char('e') || m_text.at(end) == QLatin1Char('E'))) {
            int exponent = end + 1;
            if (exponent < m_text.size()
                && (m_text.at(exponent) == QLatin1Char('+') || m_text.at(exponent) == QLatin1Char('-')))
                ++exponent;
            if (exponent < m_text.size() && m_text.at(exponent).isDigit()) {
                end = exponent;
                while (end < m_text.size() && m_text.at(end).isDigit())
                    ++end;
            }
        }
        bool ok = false;
        const double value = m_text.mid(m_pos, end - m_pos).toDouble(&ok);
        if (!ok || !std::isfinite(value))
            return fail(
                translate("'%1' is not a number", "'%1' n'est pas un nombre").arg(m_text.mid(m_pos, end - m_pos)));
        push(TFormula::Op::Number, value);
        m_pos = end;
        return true;
    }

    TFormula& m_formula;
    const QString& m_text;
    QStringList m_known;
    int m_pos = 0;
};

TFormula TFormula::parse(const QString& text, const QStringList& names)
{
    TFormula formula;
    formula.m_text = text;
    if (text.size() > MaxLength) {
        formula.m_error = translate("the formula is too long", "la formule est trop longue");
        return formula;
    }
    TFormulaParser parser(formula, names);
    if (text.trimmed().isEmpty())
        formula.m_error = translate("the formula is empty", "la formule est vide");
    else if (!parser.run())
        qCInfo(vnGeochem, "formula '%s' refused: %s", qUtf8Printable(text), qUtf8Printable(formula.m_error));
    if (!formula.m_error.isEmpty()) {
        formula.m_program.clear();
        formula.m_names.clear();
    }
    return formula;
}

TFormula::Result TFormula::evaluate(const QHash<QString, double>& values) const
{
    Result result;
    if (!isValid()) {
        result.reason = m_error.isEmpty() ? translate("the formula is empty", "la formule est vide") : m_error;
        return result;
    }
    QStringList missing;
    for (const QString& name : m_names) {
        const auto found = values.constFind(name);
        if (found == values.constEnd() || !std::isfinite(found.value()))
            missing << name;
    }
    if (!missing.isEmpty()) {
        result.reason = translate("no value for %1", "pas de valeur pour %1").arg(missing.join(QStringLiteral(", ")));
        return result;
    }
    QVector<double> stack;
    stack.reserve(m_program.size());
    for (const Step& step : m_program) {
        switch (step.op) {
        case Op::Number:
            stack.append(step.number);
            continue;
        case Op::Name:
            stack.append(values.value(m_names.at(step.name)));
            continue;
        case Op::Negate:
            stack.last() = -stack.last();
            continue;
        default:
            break;
        }
        const double right = stack.takeLast();
        double& left = stack.last();
        switch (step.op) {
        case Op::Add:
            left += right;
            break;
        case Op::Subtract:
            left -= right;
            break;
        case Op::Multiply:
            left *= right;
            break;
        case Op::Divide:
            if (right == 0.0) {
                result.reason = translate("division by zero", "division par zéro");
                return result;
            }
            left /= right;
            break;
        default:
            break;
        }
    }
    if (stack.size() != 1 || !std::isfinite(stack.first())) {
        result.reason = translate("the result is not a finite number", "le résultat n'est pas un nombre fini");
        return result;
    }
    result.ok = true;
    result.value = stack.first();
    return result;
}
