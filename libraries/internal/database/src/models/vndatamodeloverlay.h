#pragma once

#include "vndatabase_export.h"
#include "vntovidata.h"

#include <vndatamodel.h>

#include <QCoreApplication>
#include <QDomElement>
#include <QString>
#include <QStringList>
#include <QVector>

class VNObject2;
class VNObject2ToviGraph;

/// The table of an overlay of a reference graph: a grid whose column and row
/// headers carry the overlay's labels, with the overlay's name, process type,
/// literature reference and the graph it is drawn over.
///
/// It is a header-only grid on purpose: cells never hold a value (setData only
/// signals the edit), rows are never inserted or removed through it, pasting
/// is ignored, and only column headers can be renamed through setHeaderData.
/// Its rows and columns are filled by the table operations of VNDataModel
/// (setHeadersData, renameRow, renameColumn, open).
class VNDATABASE_EXPORT VNDataModelOverlay : public VNDataModel, public VNToviData
{
    Q_OBJECT
public:
    explicit VNDataModelOverlay(QObject* parent = nullptr);
    ~VNDataModelOverlay() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant data(int row, int column, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    bool setData(int row, int column, const QVariant& value, int role = Qt::EditRole) override;

    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role = Qt::EditRole) override;

    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeRows(QList<int>& rows) override;
    QStringList paste(const QModelIndex& at, const QString& text, bool grow) override;
    /// Kept empty on purpose: an overlay's grid is only ever replaced whole.
    void clear() override;

    /// Appends the "informations" element ("overlayName", "processType",
    /// "literatureReference") under `parent`. Always true.
    virtual bool encode(QDomElement& parent) const;
    /// Reads the first "informations" element below `element` as encode()
    /// writes it. On false nothing has changed; the graph is left as it was.
    virtual bool decode(const QDomElement& element);
    /// Reads the overlay of a reference database: its name, process type and
    /// literature reference from the database's record, its graph from the
    /// object. On false nothing has changed.
    virtual bool decode(const VNObject2* object);

    const QString& getProcessType() const { return m_processType; }
    void setProcessType(const QString& value) { m_processType = value; }
    const QString& getLiteratureReference() const { return m_literatureReference; }
    void setLiteratureReference(const QString& value) { m_literatureReference = value; }
    const VNObject2ToviGraph* getGraph() const { return m_graph; }
    void setGraph(const VNObject2ToviGraph* graph) { m_graph = graph; }

protected:
    void resetShape(int rows, int columns) override;
    bool storeRowHeader(int row, const QString& name) override;
    bool storeColumnHeader(int column, const QString& name) override;
    /// Cells are never kept.
    bool storeCell(int row, int column, const QVariant& value) override;

private:
    void _init();

    QVector<QString> m_columnHeaders;
    QVector<QString> m_rowHeaders;
    bool m_notify = false;
    QString m_processType;
    QString m_literatureReference;
    const VNObject2ToviGraph* m_graph = nullptr;
};
