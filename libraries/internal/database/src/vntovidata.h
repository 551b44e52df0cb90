#pragma once

#include "vndatabase_export.h"

#include <QString>

/// What every object of a reference database carries besides its own fields:
/// its reference name, and whether it was delivered with the application
/// (the ORL flag) rather than made by the user. A plain value.
class VNDATABASE_EXPORT VNToviData
{
public:
    VNToviData() = default;

    const QString& getToVIName() const { return m_toviName; }
    void setToVIName(const QString& name) { m_toviName = name; }

    bool getIsORL() const { return m_isORL; }
    void setIsORL(bool isORL) { m_isORL = isORL; }

    bool operator==(const VNToviData& other) const;
    bool operator!=(const VNToviData& other) const { return !(*this == other); }

private:
    QString m_toviName;
    bool m_isORL = false;
};
