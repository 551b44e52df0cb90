#include "vngraphdocument.h"

#include "vndatamodelgraph.h"

#include <taxis.h>
#include <tdatainfo.h>
#include <tgraphdocument.h>
#include <txmlmethod.h>
#include <vnviewer2dgraph.h>

namespace {
const QString kInformations = QStringLiteral("informations");
const QString kIonList = QStringLiteral("ionList");
const QString kIon = QStringLiteral("ion");

QDomElement informationsOf(const QDomDocument& document)
{
    return TXMLMethod::getChildElement(document.documentElement(), kInformations);
}
} // namespace

QStringList VNGraphDocument::getRatioUids(const QDomDocument& document)
{
    // The plotting library reads its own element: the first child element of
    // "TDataXml", decoded as a graph viewer, one key per axis.
    return Plavo::TGraphDocument::ratioUids(document);
}

QDomDocument VNGraphDocument::create(const VNDataModelGraph& model, const QStringList& ions)
{
    const Plavo::TYPE_VIEW type = model.getViewType();
    if (!Plavo::isKnownTypeView(type))
        return QDomDocument();
    Plavo::VNViewer2DGraph viewer(type);
    viewer.setTitle(model.getToVIName());
    QList<Plavo::TAxis> axes;
    for (int row = 0; row < model.rowCount(); ++row) {
        Plavo::TAxis axis(model.headerData(row, Qt::Vertical).toString());
        const QString key = model.getAxisKey(row);
        if (!key.isEmpty())
            axis.addDataValue(Plavo::TDataInfo::TYPE_VALUE, key);
        axes.append(axis);
    }
    if (!viewer.setAxesData(axes))
        return QDomDocument();
    QDomDocument document = Plavo::TGraphDocument::create(viewer);
    if (document.isNull())
        return QDomDocument();

    QDomElement root = document.documentElement();
    model.encode(root);
    QDomElement informations = informationsOf(document);
    QDomElement ionList = TXMLMethod::createChildElement(informations, kIonList);
    for (const QString& ion : ions) {
        QDomElement element = TXMLMethod::createChildElement(ionList, kIon);
        element.appendChild(document.createTextNode(ion));
    }
    return document;
}

bool VNGraphDocument::read(const QDomDocument& document, VNDataModelGraph* model)
{
    if (!model)
        return false;
    Plavo::VNViewer2DGraph viewer;
    if (!Plavo::TGraphDocument::readViewer(document, &viewer) || viewer.getTypeView() != model->getViewType())
        return false;
    const QDomElement root = document.documentElement();
    VNGraphData description;
    if (!description.decode(root) || description.getViewType() != model->getViewType())
        return false;

    const QStringList keys = getRatioUids(document);
    if (model->getViewType() == Plavo::VIEW_POLAR) {
        while (model->rowCount() < keys.size())
            model->addPolarAxe(-1);
        while (model->rowCount() > keys.size())
            model->removePolarAxe(model->rowCount() - 1);
    }
    if (model->rowCount() != keys.size())
        return false;
    model->VNGraphData::decode(root);
    for (int row = 0; row < keys.size(); ++row)
        model->setAxisKey(row, keys.at(row));
    return true;
}

QStringList VNGraphDocument::ions(const QDomDocument& document)
{
    QStringList result;
    const QDomElement ionList = TXMLMethod::getChildElement(informationsOf(document), kIonList);
    for (QDomElement ion = ionList.firstChildElement(kIon); !ion.isNull(); ion = ion.nextSiblingElement(kIon))
        result << ion.text();
    return result;
}
