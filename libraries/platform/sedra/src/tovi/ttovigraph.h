#pragma once

#include "tfileobject.h"

#include <QStringList>

class VNObject2ToviGraph;

namespace Sedra {

/// The record of a reference graph: the descriptive fields as properties, and
/// the drawing as an XML file under the working path at the record's
/// relative path. Its key and its object's name are its identifier; the
/// object's title is the reference name.
class VNSEDRA_EXPORT TToviGraph : public TFileObject
{
public:
    /// The descriptive fields, in this order.
    struct VNSEDRA_EXPORT GraphInformation
    {
        QString toviName;
        /// The graph's number in its database, given at creation (1, 2, ...).
        qint32 number = 0;
        QString literatureReference;
        QString comments;
        QString expectedUnit;
        QString expectedAnalysisType;
        QString studyType;
        QString familyName;
        QString processType;
        bool isORL = false;
    };

    /// Takes ownership of `object`.
    explicit TToviGraph(VNObject2ToviGraph* object, const QString& relativePath = QString());
    ~TToviGraph() override;

    static constexpr const char* KeyMasterName = "MasterName";
    static constexpr const char* KeyNumber = "Number";
    static constexpr const char* KeyLiteratureReference = "LiteratureReference";
    static constexpr const char* KeyComments = "Comments";
    static constexpr const char* KeyExpectedUnit = "ExpectedUnit";
    static constexpr const char* KeyAnalysisType = "AnalysisType";
    static constexpr const char* KeyStudyType = "StudyType";
    static constexpr const char* KeyFamilyName = "FamilyName";
    static constexpr const char* KeyProcessType = "ProcessType";
    static constexpr const char* KeyIsORL = "IsORL";
    static constexpr const char* KeyRatioUID = "ratioUID";

    VNObject2ToviGraph* graph();
    const VNObject2ToviGraph* graph() const;

    QString identifier() const { return key(); }
    GraphInformation getGraphInformation() const;
    /// Sets every field but the number, which the mapper keeps.
    void setGraphInformation(const GraphInformation& information);

    QString getToVIName() const { return property(QLatin1String(KeyMasterName)); }
    /// Also the title of the graph object.
    void setToVIName(const QString& name);
    qint32 number() const;
    void setNumber(qint32 number);
    QString getLiteratureReference() const { return property(QLatin1String(KeyLiteratureReference)); }
    void setLiteratureReference(const QString& v) { setProperty(QLatin1String(KeyLiteratureReference), v); }
    QString getComments() const { return property(QLatin1String(KeyComments)); }
    void setComments(const QString& v) { setProperty(QLatin1String(KeyComments), v); }
    QString getExpectedUnit() const { return property(QLatin1String(KeyExpectedUnit)); }
    void setExpectedUnit(const QString& v) { setProperty(QLatin1String(KeyExpectedUnit), v); }
    QString getExpectedAnalysisType() const { return property(QLatin1String(KeyAnalysisType)); }
    void setExpectedAnalysisType(const QString& v) { setProperty(QLatin1String(KeyAnalysisType), v); }
    QString getStudyType() const { return property(QLatin1String(KeyStudyType)); }
    void setStudyType(const QString& v) { setProperty(QLatin1String(KeyStudyType), v); }
    QString getFamilyName() const { return property(QLatin1String(KeyFamilyName)); }
    void setFamilyName(const QString& v) { setProperty(QLatin1String(KeyFamilyName), v); }
    QString getProcessType() const { return property(QLatin1String(KeyProcessType)); }
    void setProcessType(const QString& v) { setProperty(QLatin1String(KeyProcessType), v); }
    bool getIsORL() const;
    void setIsORL(bool delivered);
    /// The ratio keys of the graph's axes, one per axis (stored joined by ';').
    QStringList ratioUids() const;
    void setRatioUids(const QStringList& uids);

    /// Copies the descriptive fields (not the number) and the properties of
    /// `source`, and its drawing file when the two records name different
    /// files (written atomically). False when the drawing could not be copied.
    bool copyContent(const TToviGraph* source);

    /// Copies the drawing file of `source` to the file of `target` (each under
    /// its own database's working path), creating the folder; atomic. True
    /// when both name the same file; false when the source file is missing or
    /// the target cannot be written.
    static bool copyDrawing(const TFileObject* source, const TFileObject* target);
};

} // namespace Sedra
