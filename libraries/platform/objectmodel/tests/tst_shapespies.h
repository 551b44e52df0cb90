#pragma once

#include <QAbstractItemModel>
#include <QSignalSpy>

// Counts what a table model says about changes of its shape: full resets
// (begin and end paired) and any row or column insertion or removal, which
// the application's table models never announce.
struct ShapeSpies
{
    explicit ShapeSpies(QAbstractItemModel* model)
        : aboutToReset(model, &QAbstractItemModel::modelAboutToBeReset)
        , reset(model, &QAbstractItemModel::modelReset)
        , rowsInserted(model, &QAbstractItemModel::rowsInserted)
        , rowsRemoved(model, &QAbstractItemModel::rowsRemoved)
        , columnsInserted(model, &QAbstractItemModel::columnsInserted)
        , columnsRemoved(model, &QAbstractItemModel::columnsRemoved)
    { }
    /// Completed resets; -1 when a reset began without ending.
    int resets() const { return reset.count() == aboutToReset.count() ? reset.count() : -1; }
    int partial() const
    {
        return rowsInserted.count() + rowsRemoved.count() + columnsInserted.count() + columnsRemoved.count();
    }
    QSignalSpy aboutToReset, reset, rowsInserted, rowsRemoved, columnsInserted, columnsRemoved;
};
