#pragma once

#include <vndatamodeloverlay.h>
#include <vngraphdata.h>

#include <QDomDocument>

#include <QStringList>

// The sterane C27-C28-C29 ternary of source-rock studies, with texts that
// need escaping in XML.
inline void describeSterane(VNGraphData& data)
{
    data.setViewType(Plavo::VIEW_TERNARY);
    data.setToVIName(QStringLiteral("Sterane C27-C28-C29"));
    data.setStudyType(QStringLiteral("Source rock"));
    data.setFamilyName(QStringLiteral("Biomarkers"));
    data.setProcessType(QStringLiteral("GC-MS SIM m/z 217"));
    data.setExpectedUnit(QStringLiteral("%"));
    data.setExpectedAnalysisType(QStringLiteral("Saturates"));
    data.setLiteratureReference(QStringLiteral("Huang & Meinschein (1979), GCA 43, 739-745"));
    data.setComments(QStringLiteral("Depositional environment: <plankton> & \"higher plants\""));
}

// Every field a graph document carries, in the order of its description.
inline QStringList descriptionOf(const VNGraphData& d)
{
    return {d.getViewTypeString(),
            d.getToVIName(),
            d.getStudyType(),
            d.getFamilyName(),
            d.getProcessType(),
            d.getExpectedUnit(),
            d.getExpectedAnalysisType(),
            d.getLiteratureReference(),
            d.getComments()};
}

// The description an overlay document carries.
inline QStringList descriptionOf(const VNDataModelOverlay& o)
{
    return {o.getToVIName(), o.getProcessType(), o.getLiteratureReference()};
}

// The document an overlay is stored as: its description under a document
// element. Null when the overlay cannot write itself.
inline QDomDocument overlayDocumentOf(const VNDataModelOverlay& overlay)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("OverlayDocument"));
    document.appendChild(root);
    return overlay.encode(root) ? document : QDomDocument();
}
