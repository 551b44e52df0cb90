#pragma once

#include "vndatabase_export.h"
#include "vngraphdata.h"

#include <tdatamodel.h>

#include <QCoreApplication>
#include <QStringList>
#include <QVector>

namespace Sedra {
class TToviRatio;
}

/// The table a graph editor shows for a graph's axes: one row per axis, one
/// column naming the parameter (ratio) plotted on it. Each axis holds the key
/// of its ratio, empty while none is chosen; the cell shows the ratio's master
/// name as the merged reference database knows it. The model is also the
/// graph's description (VNGraphData).
///
/// Only a polar graph changes its number of axes, and every change of the
/// axes is a full model reset.
class VNDATABASE_EXPORT VNDataModelGraph : public TDataModel, public VNGraphData
{
    Q_OBJECT
public:
    explicit VNDataModelGraph(Plavo::TYPE_VIEW type, QObject* parent = nullptr);
    /// Copies the description and the axes; the copy has no parent.
    VNDataModelGraph(const VNDataModelGraph& other);
    ~VNDataModelGraph() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Puts the ratio's key on axis `row`; a null ratio or a row out of range
    /// changes nothing.
    void changeRatio(Sedra::TToviRatio* ratio, int row);
    /// Inserts an empty axis into a polar graph (a position out of range
    /// appends) and names it "n axis". Other graphs change nothing.
    void addPolarAxe(int position);
    /// Removes an axis of a polar graph. The vertical labels are kept as they
    /// are, so the remaining rows keep their earlier labels.
    void removePolarAxe(int position);

    /// The ratio key of every axis, in order.
    QStringList getAxes() const;
    /// The key on axis `row`; empty when there is no such axis.
    QString getAxisKey(int row) const;
    /// Puts a key on an axis (as read back from a graph document); false when
    /// there is no such axis.
    bool setAxisKey(int row, const QString& key);

private:
    void _init(Plavo::TYPE_VIEW type);

    QVector<QString> m_axes;
};
