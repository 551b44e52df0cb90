#pragma once

#include "tpropertyobject.h"

#include <QStringList>

class VNObject2ToviCompound;

namespace Sedra {

/// The record of a reference compound. Its key is its "Compound ID"; its
/// object's name is its master name. The descriptive values are properties
/// under the keys the database selector lists. Across databases a compound is
/// known by its reference keys ("ToVIKey", keys separated by ';'), which are
/// fixed once the compound is stored.
class VNSEDRA_EXPORT TToviCompound : public TPropertyObject
{
public:
    /// A free record with an object of its own, to describe a compound before
    /// it is created in a database (the mapper copies its values).
    TToviCompound();
    /// Takes ownership of `object`.
    explicit TToviCompound(VNObject2ToviCompound* object);
    ~TToviCompound() override;

    static constexpr const char* KeyId = "Compound ID";
    static constexpr const char* KeyMasterName = "MasterName";
    static constexpr const char* KeyInChI = "InChI";
    static constexpr const char* KeyInChIKey = "InChIKey";
    static constexpr const char* KeyFormula = "formula";
    static constexpr const char* KeyCAS = "CAS";
    static constexpr const char* KeyFamily = "family";
    static constexpr const char* KeyCarbons = "carbons";
    static constexpr const char* KeyORLName = "ORL_Name";
    static constexpr const char* KeyToVIKey = "ToVIKey";
    static constexpr const char* KeyAnalysisType = "AnalysisType";
    static constexpr const char* KeyStudyType = "StudyType";
    static constexpr const char* KeyExpectedIons = "ExpectedIons";
    static constexpr const char* KeyFamilyName = "FamilyName";
    /// Retention index on a non-polar (5%-phenyl methylpolysiloxane) column.
    static constexpr const char* KeyRetentionIndex = "RetentionIndex";

    VNObject2ToviCompound* compound();
    const VNObject2ToviCompound* compound() const;

    QString compoundId() const { return key(); }
    QString masterName() const { return property(QLatin1String(KeyMasterName)); }
    /// Changes the master name and the object's name with it (through the
    /// header's index when the record is stored). Not written: save the record.
    void setMasterName(const QString& name);
    QString toviKey() const { return property(QLatin1String(KeyToVIKey)); }
    /// The reference keys, empty parts kept.
    QStringList toviKeys() const { return toviKey().split(QLatin1Char(';')); }
    /// Refused (false) once the record is stored: the keys are its identity.
    bool setToviKey(const QString& keys);

    QString inChI() const { return property(QLatin1String(KeyInChI)); }
    void setInChI(const QString& v) { setProperty(QLatin1String(KeyInChI), v); }
    QString inChIKey() const { return property(QLatin1String(KeyInChIKey)); }
    void setInChIKey(const QString& v) { setProperty(QLatin1String(KeyInChIKey), v); }
    QString formula() const { return property(QLatin1String(KeyFormula)); }
    void setFormula(const QString& v) { setProperty(QLatin1String(KeyFormula), v); }
    QString cas() const { return property(QLatin1String(KeyCAS)); }
    void setCas(const QString& v) { setProperty(QLatin1String(KeyCAS), v); }
    QString family() const { return property(QLatin1String(KeyFamily)); }
    void setFamily(const QString& v) { setProperty(QLatin1String(KeyFamily), v); }
    /// The number of carbon atoms as stored (text; empty when unknown).
    QString carbons() const { return property(QLatin1String(KeyCarbons)); }
    void setCarbons(const QString& v) { setProperty(QLatin1String(KeyCarbons), v); }
    QString orlName() const { return property(QLatin1String(KeyORLName)); }
    void setOrlName(const QString& v) { setProperty(QLatin1String(KeyORLName), v); }
    QString analysisType() const { return property(QLatin1String(KeyAnalysisType)); }
    void setAnalysisType(const QString& v) { setProperty(QLatin1String(KeyAnalysisType), v); }
    QString studyType() const { return property(QLatin1String(KeyStudyType)); }
    void setStudyType(const QString& v) { setProperty(QLatin1String(KeyStudyType), v); }
    /// The retention index as stored; empty when unknown.
    QString retentionIndex() const { return property(QLatin1String(KeyRetentionIndex)); }
    void setRetentionIndex(const QString& v) { setProperty(QLatin1String(KeyRetentionIndex), v); }
    QString expectedIons() const { return property(QLatin1String(KeyExpectedIons)); }
    void setExpectedIons(const QString& v) { setProperty(QLatin1String(KeyExpectedIons), v); }
    QString familyName() const { return property(QLatin1String(KeyFamilyName)); }
    void setFamilyName(const QString& v) { setProperty(QLatin1String(KeyFamilyName), v); }

    /// The text that names the compound in messages: its master name, or its
    /// key when it has none.
    QString description() const;
};

} // namespace Sedra
