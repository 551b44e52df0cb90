#pragma once

#include "vnsedra_export.h"

#include <QString>

namespace Sedra {

/// The description of a project compound: what a caller knows of a compound
/// before the project stores it (its name, and its CAS number and formula
/// when known). A compound is the same compound as a stored one when their
/// CAS numbers agree, or, without a CAS number, their names.
class VNSEDRA_EXPORT TCompound
{
public:
    TCompound() = default;
    explicit TCompound(const QString& name, const QString& cas = QString(), const QString& formula = QString())
        : m_name(name)
        , m_cas(cas)
        , m_formula(formula)
    { }

    const QString& name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }
    const QString& cas() const { return m_cas; }
    void setCas(const QString& cas) { m_cas = cas; }
    const QString& formula() const { return m_formula; }
    void setFormula(const QString& formula) { m_formula = formula; }

private:
    QString m_name;
    QString m_cas;
    QString m_formula;
};

} // namespace Sedra
