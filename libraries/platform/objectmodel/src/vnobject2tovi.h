#pragma once

#include "vnobject2.h"

/// An object of a reference database (compound, ion, parameter, joint,
/// graph, overlay). Its key is the identifier under which the kind's mapper
/// finds its record; its descriptive values are the record's properties.
class VNOBJECTMODEL_EXPORT VNObject2Tovi : public VNObject2
{
public:
    explicit VNObject2Tovi(const QString& name = QString(), const QString& key = QString());
    ~VNObject2Tovi() override;

    /// True for the kinds that live in reference databases.
    static bool isToviType(int type);
};
