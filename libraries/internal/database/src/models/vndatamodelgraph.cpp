#include "vndatamodelgraph.h"

#include "vndatabasetovimgr.h"
#include "vntovidatabaseinterface.h"

#include <databasetype.h>
#include <ttoviratio.h>
#include <vnobject2toviratio.h>

namespace {
// The master name of the ratio `key` in the merged reference database, which
// holds every ratio a graph may plot; invalid when no ratio has that key.
QVariant ratioName(const QString& key)
{
    if (key.isEmpty())
        return QVariant();
    VNToviDatabaseInterface* merged = VNDatabaseToviMGR::getInstance()->db(Sedra::DatabaseToviMerged);
    const auto* ratio = merged ? dynamic_cast<const VNObject2ToviRatio*>(merged->getRatio(key)) : nullptr;
    if (!ratio)
        return QVariant();
    return ratio->name();
}
} // namespace

VNDataModelGraph::VNDataModelGraph(Plavo::TYPE_VIEW type, QObject* parent)
    : TDataModel(parent)
    , VNGraphData()
{
    _init(type);
}

VNDataModelGraph::VNDataModelGraph(const VNDataModelGraph& other)
    : TDataModel(nullptr)
    , VNGraphData(other)
    , m_axes(other.m_axes)
{
    setReadOnly(other.isReadOnly());
    setValid(other.isValid());
}

VNDataModelGraph::~VNDataModelGraph() = default;

void VNDataModelGraph::_init(Plavo::TYPE_VIEW type)
{
    setViewType(type);
    setValid(true);
    const auto it = getViewTypes().constFind(int(type));
    if (it == getViewTypes().constEnd())
        return;
    m_axes = QVector<QString>(it->axisLabels.size());
}

QModelIndex VNDataModelGraph::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || row < 0 || column != 0 || row >= m_axes.size())
        return QModelIndex();
    return createIndex(row, column);
}

QModelIndex VNDataModelGraph::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int VNDataModelGraph::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_axes.size();
}

int VNDataModelGraph::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant VNDataModelGraph::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Horizontal)
        return tr("Name", "Nom");
    const auto it = getViewTypes().constFind(int(getViewType()));
    if (it == getViewTypes().constEnd() || section < 0 || section >= it->axisLabels.size())
        return QVariant();
    return it->axisLabels.at(section);
}

QVariant VNDataModelGraph::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.model() != this || role != Qt::DisplayRole || index.row() >= m_axes.size())
        return QVariant();
    return ratioName(m_axes.at(index.row()));
}

void VNDataModelGraph::changeRatio(Sedra::TToviRatio* ratio, int row)
{
    if (!ratio || row < 0 || row >= rowCount())
        return;
    beginResetModel();
    m_axes[row] = ratio->ratioId();
    endResetModel();
}

void VNDataModelGraph::addPolarAxe(int position)
{
    if (getViewType() != Plavo::VIEW_POLAR)
        return;
    beginResetModel();
    if (position < 0 || position > m_axes.size())
        position = m_axes.size();
    m_axes.insert(position, QString());
    const QString label = tr("%1 axis", "Axe %1").arg(m_axes.size(), 0, 10, QLatin1Char(' '));
    QStringList& labels = viewTypes()[Plavo::VIEW_POLAR].axisLabels;
    labels.insert(std::min(position, int(labels.size())), label);
    endResetModel();
}

void VNDataModelGraph::removePolarAxe(int position)
{
    if (getViewType() != Plavo::VIEW_POLAR || position < 0 || position >= m_axes.size())
        return;
    beginResetModel();
    m_axes.remove(position);
    endResetModel();
}

QStringList VNDataModelGraph::getAxes() const
{
    return QStringList(m_axes.begin(), m_axes.end());
}

QString VNDataModelGraph::getAxisKey(int row) const
{
    return row >= 0 && row < m_axes.size() ? m_axes.at(row) : QString();
}

bool VNDataModelGraph::setAxisKey(int row, const QString& key)
{
    if (row < 0 || row >= m_axes.size())
        return false;
    m_axes[row] = key;
    const QModelIndex cell = index(row, 0);
    emit dataChanged(cell, cell, {Qt::DisplayRole});
    return true;
}
