#pragma once

#include "vndatabase_export.h"
#include "vntovidata.h"

#include <type_view.h>

#include <QCoreApplication>
#include <QDomElement>
#include <QHash>
#include <QString>
#include <QStringList>

class VNObject2;

/// The descriptive record of a reference graph: its kind of view, name, study,
/// family, process, expected unit and analysis type, literature reference and
/// comments. It writes itself as the "informations" element of the graph's
/// document and reads itself back from it.
///
/// Reading is deliberately stricter than writing: a description is accepted
/// only from a complete graph document, whose "informations" element also
/// holds the "ionList" that the document's owner writes beside these fields.
/// encode() alone therefore does not make a readable element.
class VNDATABASE_EXPORT VNGraphData : public VNToviData
{
    Q_DECLARE_TR_FUNCTIONS(VNGraphData)

public:
    struct ViewTypeDescription
    {
        int axisCount = 0;      ///< -1: any number of axes
        QString name;           ///< not translated
        QStringList axisLabels; ///< default label of each axis, translated
    };

    VNGraphData();
    VNGraphData(const VNGraphData&) = default;
    VNGraphData& operator=(const VNGraphData&) = default;
    virtual ~VNGraphData();

    /// Appends the "informations" element under `parent`. Always true.
    virtual bool encode(QDomElement& parent) const;
    /// Reads the first "informations" element below `element`, which must hold
    /// an "ionList" element. On false nothing has changed. The ORL flag is
    /// never read.
    virtual bool decode(const QDomElement& element);
    /// Reads the description from the graph record of a reference-database
    /// object: name, the texts and the ORL flag; the view type is left as it
    /// was. False, with nothing changed, for a null object, an object of
    /// another database, or one without a graph record.
    virtual bool decode(const VNObject2* object);

    const QString& getStudyType() const { return m_studyType; }
    const QString& getFamilyName() const { return m_familyName; }
    const QString& getProcessType() const { return m_processType; }
    const QString& getExpectedUnit() const { return m_expectedUnit; }
    const QString& getExpectedAnalysisType() const { return m_expectedAnalysisType; }
    const QString& getLiteratureReference() const { return m_literatureReference; }
    const QString& getComments() const { return m_comments; }

    void setStudyType(const QString& value) { m_studyType = value; }
    void setFamilyName(const QString& value) { m_familyName = value; }
    void setProcessType(const QString& value) { m_processType = value; }
    void setExpectedUnit(const QString& value) { m_expectedUnit = value; }
    void setExpectedAnalysisType(const QString& value) { m_expectedAnalysisType = value; }
    void setLiteratureReference(const QString& value) { m_literatureReference = value; }
    void setComments(const QString& value) { m_comments = value; }

    Plavo::TYPE_VIEW getViewType() const { return Plavo::TYPE_VIEW(m_viewType); }
    void setViewType(Plavo::TYPE_VIEW type) { m_viewType = int(type); }
    /// The view-type number in decimal ("3" for a ternary graph), not its name.
    QString getViewTypeString() const;

    /// The known kinds of view by number: 1 orthogonal, 2 polar, 3 ternary.
    const QHash<int, ViewTypeDescription>& getViewTypes() const { return m_viewTypes; }

protected:
    /// For models that name further axes (a polar graph grows axes).
    QHash<int, ViewTypeDescription>& viewTypes() { return m_viewTypes; }

private:
    void fillViewTypes();

    QString m_studyType;
    QString m_familyName;
    QString m_processType;
    QString m_expectedUnit;
    QString m_expectedAnalysisType;
    QString m_literatureReference;
    QString m_comments;
    int m_viewType = Plavo::VIEW_ORTHOGONAL;
    QHash<int, ViewTypeDescription> m_viewTypes;
};
