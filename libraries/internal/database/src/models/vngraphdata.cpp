#include "vngraphdata.h"

#include "vntovidatabaseinterface.h"

#include <tdatabase.h>
#include <ttovigraph.h>
#include <txmlmethod.h>
#include <vnobject2.h>

#include <QDomNodeList>

namespace {
const QString kInformations = QStringLiteral("informations");
const QString kIonList = QStringLiteral("ionList");
const QString kGraphType = QStringLiteral("graphType");
const QString kGraphName = QStringLiteral("graphName");
const QString kStudyType = QStringLiteral("studyType");
const QString kFamilyName = QStringLiteral("familyName");
const QString kProcessType = QStringLiteral("processType");
const QString kExpectedUnit = QStringLiteral("expectedUnit");
const QString kExpectedAnalysisType = QStringLiteral("expectedAnalysisType");
const QString kLiteratureReference = QStringLiteral("literatureReference");
const QString kComments = QStringLiteral("comments");

// The first element named `tag` below `element`, in document order. The DOM's
// own descendant search builds a list of every match; only the first counts.
QDomElement firstDescendant(const QDomElement& element, const QString& tag)
{
    QDomNode node = element.firstChild();
    while (!node.isNull()) {
        if (node.isElement() && node.toElement().tagName() == tag)
            return node.toElement();
        if (node.hasChildNodes()) {
            node = node.firstChild();
            continue;
        }
        while (node.nextSibling().isNull()) {
            node = node.parentNode();
            if (node.isNull() || node == element)
                return QDomElement();
        }
        node = node.nextSibling();
    }
    return QDomElement();
}
} // namespace

VNGraphData::VNGraphData()
{
    if (m_viewTypes.isEmpty())
        fillViewTypes();
}

VNGraphData::~VNGraphData() = default;

void VNGraphData::fillViewTypes()
{
    ViewTypeDescription orthogonal;
    orthogonal.axisCount = 2;
    orthogonal.name = QStringLiteral("Orthogonal");
    orthogonal.axisLabels << tr("X") << tr("Y");
    m_viewTypes.insert(Plavo::VIEW_ORTHOGONAL, orthogonal);

    ViewTypeDescription polar;
    polar.axisCount = -1;
    polar.name = QStringLiteral("Polar");
    polar.axisLabels << tr("%1 Axis", "Axe %1").arg(1, 0, 10, QLatin1Char(' '))
                     << tr("%1 Axis", "Axe %1").arg(2, 0, 10, QLatin1Char(' '));
    m_viewTypes.insert(Plavo::VIEW_POLAR, polar);

    ViewTypeDescription ternary;
    ternary.axisCount = 3;
    ternary.name = QStringLiteral("Ternary");
    ternary.axisLabels << tr("X") << tr("Y") << tr("Z");
    m_viewTypes.insert(Plavo::VIEW_TERNARY, ternary);
}

QString VNGraphData::getViewTypeString() const
{
    return QString::number(m_viewType);
}

bool VNGraphData::encode(QDomElement& parent) const
{
    QDomElement informations = TXMLMethod::createChildElement(parent, kInformations);
    TXMLMethod::addToElement(informations, kGraphType, QString::number(m_viewType));
    TXMLMethod::addToElement(informations, kGraphName, getToVIName());
    TXMLMethod::addToElement(informations, kStudyType, m_studyType);
    TXMLMethod::addToElement(informations, kFamilyName, m_familyName);
    TXMLMethod::addToElement(informations, kProcessType, m_processType);
    TXMLMethod::addToElement(informations, kExpectedUnit, m_expectedUnit);
    TXMLMethod::addToElement(informations, kExpectedAnalysisType, m_expectedAnalysisType);
    TXMLMethod::addToElement(informations, kLiteratureReference, m_literatureReference);
    TXMLMethod::addToElement(informations, kComments, m_comments);
    return true;
}

bool VNGraphData::decode(const QDomElement& element)
{
    const QDomElement informations = firstDescendant(element, kInformations);
    if (informations.isNull())
        return false;
    if (firstDescendant(informations, kIonList).isNull())
        return false;

    // Not a number, empty, or beyond 32 bits: view type 0.
    bool ok = false;
    const int viewType = TXMLMethod::getInfoString(informations, kGraphType).toInt(&ok, 10);
    m_viewType = ok ? viewType : 0;
    setToVIName(TXMLMethod::getInfoString(informations, kGraphName));
    m_studyType = TXMLMethod::getInfoString(informations, kStudyType);
    m_familyName = TXMLMethod::getInfoString(informations, kFamilyName);
    m_processType = TXMLMethod::getInfoString(informations, kProcessType);
    m_expectedUnit = TXMLMethod::getInfoString(informations, kExpectedUnit);
    m_expectedAnalysisType = TXMLMethod::getInfoString(informations, kExpectedAnalysisType);
    m_literatureReference = TXMLMethod::getInfoString(informations, kLiteratureReference);
    m_comments = TXMLMethod::getInfoString(informations, kComments);
    return true;
}

bool VNGraphData::decode(const VNObject2* object)
{
    if (!object)
        return false;
    auto* database = dynamic_cast<VNToviDatabaseInterface*>(object->db());
    if (!database)
        return false;
    const Sedra::TToviGraph* graph = database->getGraph(object);
    if (!graph)
        return false;
    setToVIName(graph->getToVIName());
    m_studyType = graph->getStudyType();
    m_familyName = graph->getFamilyName();
    m_processType = graph->getProcessType();
    m_expectedUnit = graph->getExpectedUnit();
    m_expectedAnalysisType = graph->getExpectedAnalysisType();
    m_literatureReference = graph->getLiteratureReference();
    m_comments = graph->getComments();
    setIsORL(graph->getIsORL());
    return true;
}
