// Graph documents as they come from disk: any bytes, read through the plotting
// library's document reader, then through every reader of graph documents.
// Whatever is accepted must write back and read again to the same value.

#include <taxis.h>
#include <tdata.h>
#include <tdataxml.h>
#include <tgraphdocument.h>
#include <vndatamodelgraph.h>
#include <vndatamodeloverlay.h>
#include <vngraphdata.h>
#include <vngraphdocument.h>
#include <vnviewer2dgraph.h>

#include <QDomDocument>

#include <cstdint>
#include <cstdlib>

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

void roundTrip(const Plavo::VNViewer2DGraph& viewer)
{
    const QDomDocument document = Plavo::TGraphDocument::create(viewer);
    check(!document.isNull());
    Plavo::VNViewer2DGraph again(Plavo::VIEW_NONE);
    check(Plavo::TGraphDocument::readViewer(document, &again));
    check(again == viewer);
    check(Plavo::TGraphDocument::ratioUids(document).size() == viewer.getAxesData().size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Plavo::TDataXml xml;
    if (!xml.setContent(QByteArray(reinterpret_cast<const char*>(data), int(size))))
        return 0;
    const QDomDocument document = xml.document();
    const QDomElement root = xml.contentElement();

    const QStringList keys = Plavo::TGraphDocument::ratioUids(document);
    Plavo::VNViewer2DGraph viewer;
    const bool read = Plavo::TGraphDocument::readViewer(document, &viewer);
    check(keys.size() == (read ? viewer.getAxesData().size() : 0));
    if (read) {
        for (const Plavo::TAxis& axis : viewer.getAxesData())
            check(axis.getDataValues(Plavo::TDataInfo::TYPE_VALUE).size() <= axis.getDataValues().size());
        roundTrip(viewer);
    }

    // The same readers on the bare element, so that inputs need not carry the
    // whole document structure to reach them.
    Plavo::VNViewer2DGraph bare;
    if (bare.decode(Plavo::TDataXml(root).contentElement()))
        roundTrip(bare);
    Plavo::TAxis axis;
    if (axis.decode(root)) {
        QDomDocument d;
        QDomElement parent = d.createElement(QStringLiteral("r"));
        d.appendChild(parent);
        check(axis.encode(parent));
        Plavo::TAxis again;
        check(again.decode(parent.firstChildElement()) && again == axis);
    }
    Plavo::TData curve;
    if (curve.decode(root)) {
        for (int i = 0; i < curve.count(); ++i)
            curve.pointColor(i);
        QDomDocument d;
        QDomElement parent = d.createElement(QStringLiteral("r"));
        d.appendChild(parent);
        check(curve.encode(parent));
        Plavo::TData again;
        check(again.decode(parent.firstChildElement()) && again == curve);
    }

    VNGraphData description;
    if (description.decode(root)) {
        check(description.getViewTypeString() == QString::number(int(description.getViewType())));
        QDomDocument d;
        QDomElement parent = d.createElement(QStringLiteral("r"));
        d.appendChild(parent);
        check(description.encode(parent));
    }

    // The module's readers: axes keys, the graph model, the overlay model.
    check(VNGraphDocument::getRatioUids(document) == keys);
    VNGraphDocument::ions(document);
    const Plavo::TYPE_VIEW kinds[] = {Plavo::VIEW_ORTHOGONAL, Plavo::VIEW_POLAR, Plavo::VIEW_TERNARY};
    for (Plavo::TYPE_VIEW kind : kinds) {
        VNDataModelGraph model(kind);
        const QStringList before = model.getAxes();
        if (VNGraphDocument::read(document, &model)) {
            check(model.getAxes() == keys);
            check(VNGraphDocument::getRatioUids(VNGraphDocument::create(model)) == keys);
        } else {
            check(model.getAxes() == before && model.getToVIName().isEmpty());
        }
    }
    VNDataModelOverlay overlay;
    if (overlay.decode(root)) {
        QDomDocument d;
        QDomElement parent = d.createElement(QStringLiteral("r"));
        d.appendChild(parent);
        check(overlay.encode(parent));
        VNDataModelOverlay again;
        check(again.decode(parent) && again.getToVIName() == overlay.getToVIName()
              && again.getProcessType() == overlay.getProcessType());
    }
    return 0;
}
