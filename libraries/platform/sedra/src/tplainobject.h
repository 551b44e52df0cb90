#pragma once

#include "vnsedra_export.h"

#include <vnobject2.h>

namespace Sedra {

/// An object of a kind that carries nothing beyond its name, its key and the
/// properties of its record (identifications, slices, compounds found in a
/// project, processing steps). The kind is given at construction.
class VNSEDRA_EXPORT TPlainObject : public VNObject2
{
public:
    explicit TPlainObject(int type, const QString& name = QString());
    ~TPlainObject() override;
    int type() const override { return m_type; }

private:
    int m_type;
};

} // namespace Sedra
