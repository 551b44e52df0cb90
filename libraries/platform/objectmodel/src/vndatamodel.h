#pragma once

#include "vnobjectmodel_export.h"

#include <tdatamodel.h>

#include <QStringList>
#include <QVariant>
#include <QVector>

/// The application's data table: named rows and columns and one value per
/// cell. Tables are filled by whole shapes (setHeadersData, open) and edited
/// cell by cell; every change of shape is a full model reset, never a row or
/// column insertion, because the views of the application rebuild themselves
/// from the headers.
///
/// A derived table may keep its headers and cells elsewhere: the fill
/// operations store through the protected store...() hooks, which it
/// overrides, and read the shape through rowCount() and columnCount().
class VNOBJECTMODEL_EXPORT VNDataModel : public TDataModel
{
    Q_OBJECT
public:
    /// Header role under which the stored header text is given as it stands,
    /// whatever the display makes of it.
    static constexpr int HeaderTextRole = 34;

    /// Limits of what open() and setHeadersData() accept.
    static constexpr int kMaxRows = 1000000;
    static constexpr int kMaxColumns = 10000;
    static constexpr qint64 kMaxCells = 10000000;

    explicit VNDataModel(QObject* parent = nullptr);
    ~VNDataModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    virtual QVariant data(int row, int column, int role = Qt::DisplayRole) const;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    virtual bool setData(int row, int column, const QVariant& value, int role = Qt::EditRole);

    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role = Qt::EditRole) override;

    /// Inserts empty rows named "" (full reset). False on a read-only table
    /// or a position out of range.
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// Removes the listed rows (any order, duplicates ignored); false when one
    /// is out of range, and then nothing is removed.
    virtual bool removeRows(QList<int>& rows);

    /// Pastes tab-separated lines at `at` (rows by line, columns by tab).
    /// Cells beyond the table are not pasted unless `grow`, which extends the
    /// table first. Returns the texts that could not be pasted.
    virtual QStringList paste(const QModelIndex& at, const QString& text, bool grow);

    /// Empties the table (no rows, no columns).
    virtual void clear();

    /// Replaces the whole table by empty cells under these headers and marks
    /// it valid. False (nothing changed) when the shape is beyond the limits.
    bool setHeadersData(const QStringList& columnHeaders, const QStringList& rowHeaders);
    /// Renames one row or column; false when there is none at that place.
    bool renameRow(int row, const QString& name);
    bool renameColumn(int column, const QString& name);

    /// Reads a table from a text file: the first line holds the column names
    /// after a corner cell, each further line a row name and its values,
    /// separated by tabs (or by ';' when the first line has no tab). On false
    /// nothing has changed and errorString() says why.
    bool open(const QString& path);
    const QString& errorString() const { return m_error; }

protected:
    /// Storage hooks. resetShape() is called inside a model reset and must
    /// leave `rows` x `columns` empty cells and empty headers.
    virtual void resetShape(int rows, int columns);
    virtual bool storeRowHeader(int row, const QString& name);
    virtual bool storeColumnHeader(int column, const QString& name);
    virtual bool storeCell(int row, int column, const QVariant& value);

    /// Whether (row, column) is a cell of the current shape.
    bool isCell(int row, int column) const;

private:
    bool applyTable(const QStringList& columns, const QStringList& rows, const QVector<QStringList>& cells);

    QStringList m_rowHeaders;
    QStringList m_columnHeaders;
    QVector<QVariant> m_cells; // row-major
    QString m_error;
};
