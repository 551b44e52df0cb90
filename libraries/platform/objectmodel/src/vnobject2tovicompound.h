#pragma once

#include "vnobject2tovi.h"

#include <QStringList>

/// A reference compound. Across databases a compound is known by its list of
/// reference keys (its "ToVIKey" text, keys separated by ';'), not by its key,
/// which each database chooses for itself.
class VNOBJECTMODEL_EXPORT VNObject2ToviCompound : public VNObject2Tovi
{
public:
    explicit VNObject2ToviCompound(const QString& name = QString(), const QString& key = QString());
    ~VNObject2ToviCompound() override;
    int type() const override { return VNObjectTypeCompound; }

    const QString& toviKey() const { return m_toviKey; }
    void setToviKey(const QString& toviKey) { m_toviKey = toviKey; }
    /// The reference keys, empty parts kept.
    QStringList toviKeys() const { return m_toviKey.split(QLatin1Char(';')); }

private:
    QString m_toviKey;
};
