#pragma once

#include "tdatainfo.h"
#include "vnplavo_export.h"

#include <QDomElement>
#include <QList>

namespace Plavo {

/// The base of plot objects that carry typed data values (TDataInfo): what is
/// plotted on an axis, under which key the application finds it, its unit.
/// Subclasses write and read their own element; the data values go into its
/// "dataValues" child, one "dataValue" element per value with its kind in the
/// "type" attribute.
class VNPLAVO_EXPORT TObjectDataValueAbs
{
public:
    virtual ~TObjectDataValueAbs();

    /// Every data value, in the order they were added.
    const QList<TDataInfo>& getDataValues() const { return m_dataValues; }
    /// The data values of one kind, in order.
    QList<TDataInfo> getDataValues(TDataInfo::TYPE type) const;
    /// The text of the first value of that kind that carries a text; empty when none does.
    QString firstDataValue(TDataInfo::TYPE type) const;

    /// Appends a value; a value of no known kind is refused.
    bool addDataValue(const TDataInfo& value);
    bool addDataValue(TDataInfo::TYPE type, const QString& value) { return addDataValue(TDataInfo(type, value)); }
    /// Replaces every value; refused (nothing changed) when one has no known kind.
    bool setDataValues(const QList<TDataInfo>& values);
    void clearDataValues() { m_dataValues.clear(); }

    /// Appends this object's element under `parent`.
    virtual bool encode(QDomElement& parent) const = 0;
    /// Reads this object from its own element; on false nothing has changed.
    virtual bool decode(const QDomElement& element) = 0;

protected:
    TObjectDataValueAbs() = default;
    TObjectDataValueAbs(const TObjectDataValueAbs&) = default;
    TObjectDataValueAbs& operator=(const TObjectDataValueAbs&) = default;

    bool sameDataValues(const TObjectDataValueAbs& other) const { return m_dataValues == other.m_dataValues; }

    /// Writes the "dataValues" child of `element`.
    bool encodeDataValues(QDomElement& element) const;
    /// Reads the "dataValues" child of `element` (absent: no values). False on
    /// an unknown kind, a foreign element or too many values.
    static bool decodeDataValues(const QDomElement& element, QList<TDataInfo>* values);

private:
    QList<TDataInfo> m_dataValues;
};

} // namespace Plavo
