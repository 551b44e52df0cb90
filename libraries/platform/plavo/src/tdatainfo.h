#pragma once

#include "vnplavo_export.h"

#include <QString>

namespace Plavo {

/// One typed text attached to a plot object (an axis, a series): what the
/// plotted quantity is called, its unit, its formula, or the key under which
/// the application finds the datum (TYPE_VALUE). The kind numbers are stored
/// in documents and never change.
class VNPLAVO_EXPORT TDataInfo
{
public:
    enum TYPE : int {
        TYPE_NONE = 0,
        TYPE_NAME = 1,
        TYPE_UNIT = 2,
        TYPE_FORMULA = 3,
        TYPE_COMMENT = 4,
        TYPE_SOURCE = 5,
        TYPE_LABEL = 6,
        TYPE_VALUE = 7
    };

    TDataInfo() = default;
    TDataInfo(TYPE type, const QString& value);

    TYPE type() const { return m_type; }
    void setType(TYPE type) { m_type = type; }
    const QString& value() const { return m_value; }
    void setValue(const QString& value) { m_value = value; }

    /// A value of a real kind (not TYPE_NONE).
    bool isValid() const { return isKnownType(m_type); }
    static bool isKnownType(int type);

    bool operator==(const TDataInfo& other) const;
    bool operator!=(const TDataInfo& other) const { return !(*this == other); }

private:
    TYPE m_type = TYPE_NONE;
    QString m_value;
};

} // namespace Plavo
