#pragma once

#include "tpropertyobject.h"

class VNObject2ToviRatio;

namespace Sedra {

/// The record of a ratio (a "parameter" for users). Its key is its
/// "Ratio ID", its object's name its master name; the other values are
/// properties under the keys the database selector lists. The display order
/// places the ratio in lists (smaller first).
class VNSEDRA_EXPORT TToviRatio : public TPropertyObject
{
public:
    /// Takes ownership of `object`.
    explicit TToviRatio(VNObject2ToviRatio* object);
    ~TToviRatio() override;

    static constexpr const char* KeyId = "Ratio ID";
    static constexpr const char* KeyMasterName = "MasterName";
    static constexpr const char* KeyDisplayFormula = "DisplayFormula";
    static constexpr const char* KeyFormula = "Formula";
    static constexpr const char* KeyDisplayOrder = "DisplayOrder";
    static constexpr const char* KeyStudyType = "StudyType";
    static constexpr const char* KeyAnalysisType = "AnalysisType";
    static constexpr const char* KeyProcessType = "ProcessType";
    static constexpr const char* KeyFamilyName = "FamilyName";
    static constexpr const char* KeyExpectedIons = "ExpectedIons";
    static constexpr const char* KeyLiteratureReference = "LiteratureReference";

    VNObject2ToviRatio* ratio();
    const VNObject2ToviRatio* ratio() const;

    // The eleven values of TToviRatioMapper::createRatio, in its order.
    QString ratioId() const { return key(); }
    QString masterName() const { return property(QLatin1String(KeyMasterName)); }
    QString displayFormula() const { return property(QLatin1String(KeyDisplayFormula)); }
    QString formula() const { return property(QLatin1String(KeyFormula)); }
    int displayOrder() const;
    QString studyType() const { return property(QLatin1String(KeyStudyType)); }
    QString analysisType() const { return property(QLatin1String(KeyAnalysisType)); }
    QString processType() const { return property(QLatin1String(KeyProcessType)); }
    QString familyName() const { return property(QLatin1String(KeyFamilyName)); }
    QString expectedIons() const { return property(QLatin1String(KeyExpectedIons)); }
    QString literatureReference() const { return property(QLatin1String(KeyLiteratureReference)); }

    // Setters change the record in memory; save it to write them.
    void setDisplayFormula(const QString& v) { setProperty(QLatin1String(KeyDisplayFormula), v); }
    void setFormula(const QString& v) { setProperty(QLatin1String(KeyFormula), v); }
    void setDisplayOrder(int order);
    void setStudyType(const QString& v) { setProperty(QLatin1String(KeyStudyType), v); }
    void setAnalysisType(const QString& v) { setProperty(QLatin1String(KeyAnalysisType), v); }
    void setProcessType(const QString& v) { setProperty(QLatin1String(KeyProcessType), v); }
    void setFamilyName(const QString& v) { setProperty(QLatin1String(KeyFamilyName), v); }
    void setExpectedIons(const QString& v) { setProperty(QLatin1String(KeyExpectedIons), v); }
    void setLiteratureReference(const QString& v) { setProperty(QLatin1String(KeyLiteratureReference), v); }
};

} // namespace Sedra
