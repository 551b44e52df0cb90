#pragma once

#include "tabstractmapper.h"
#include "tfileobject.h"

class VNObject2Analysis;

namespace Sedra {

/// Analyses (kind 1). Each analysis has a folder of its own under the
/// analyses' folder, named after it in a form that stays inside that folder;
/// with a file suffix, its acquisition file is "<folder>/<name>.<suffix>".
class VNSEDRA_EXPORT TAnalysisMapper : public TAbstractMapper
{
public:
    explicit TAnalysisMapper(const QString& fileSuffix = QString());
    ~TAnalysisMapper() override;

    const QString& fileSuffix() const { return m_fileSuffix; }

    /// A new analysis with a folder of its own (the folder itself is made by
    /// whoever writes its files). Null when refused.
    TFileObject* createAnalysis(const QString& name, bool flush = true) const;
    /// An analysis for a folder that already exists, relative to the working path.
    TFileObject* createAnalysisInFolder(const QString& name, const QString& relativeFolder, bool flush) const;
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;

    const VNObject2Analysis* getAnalysis(const QString& name) const;
    QList<const VNObject2Analysis*> analyses() const;

    /// Stores the modulation period of an analysis; false when refused.
    bool setModulation(const VNObject2Analysis* analysis, double modulation, bool flush = true) const;
    /// The stored modulation, or -9999.0 when there is none.
    double modulation(const VNObject2Analysis* analysis) const;

protected:
    VNObject2* newObject(const QString& name) const override;
    TDatabaseObject* newRecord(VNObject2* object) const override;

private:
    static QString folderTag(const QString& relativeFolder);
    QString uniqueFolder(const QString& name) const;

    QString m_fileSuffix;
};

} // namespace Sedra
