#pragma once

// What the selector widget's tree view shows, read as a user sees it, and a
// click on a line's check box as a user makes it (offscreen).

#include <QAbstractItemModel>
#include <QPoint>
#include <QRect>
#include <QStringList>
#include <QTreeView>
#include <QtTest>

#include <functional>

namespace view {

// Every row of the view's model, in the order the view lists them.
inline QModelIndexList rows(const QTreeView* tree)
{
    QModelIndexList all;
    const QAbstractItemModel* model = tree->model();
    std::function<void(const QModelIndex&)> walk = [&](const QModelIndex& parent) {
        for (int row = 0; row < model->rowCount(parent); ++row) {
            const QModelIndex index = model->index(row, 0, parent);
            all.append(index);
            walk(index);
        }
    };
    walk(QModelIndex());
    return all;
}

// The titles of the object lines the tree view shows (categories left out,
// and lines inside closed branches).
inline QStringList shownObjects(const QTreeView* tree)
{
    QStringList titles;
    for (const QModelIndex& index : rows(tree)) {
        if (index.parent().isValid() && !tree->visualRect(index).isEmpty())
            titles << index.data().toString();
    }
    return titles;
}

// The titles of the ticked lines among the rows.
inline QStringList checkedTitles(const QTreeView* tree)
{
    QStringList titles;
    for (const QModelIndex& index : rows(tree)) {
        if (index.data(Qt::CheckStateRole).isValid() && index.data(Qt::CheckStateRole).toInt() == Qt::Checked)
            titles << index.data().toString();
    }
    return titles;
}

inline QModelIndex lineTitled(const QTreeView* tree, const QString& title)
{
    for (const QModelIndex& index : rows(tree)) {
        if (index.data().toString() == title)
            return index;
    }
    return QModelIndex();
}

// Clicks the check box at the start of a line, as a user does.
inline void clickCheckBox(QTreeView* tree, const QModelIndex& line)
{
    tree->scrollTo(line);
    const QRect rect = tree->visualRect(line);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(rect.left() + 10, rect.center().y()));
}

// Clicks the middle of a line's text: it becomes the current line.
inline void clickLine(QTreeView* tree, const QModelIndex& line)
{
    tree->scrollTo(line);
    const QRect rect = tree->visualRect(line);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(rect.left() + 60, rect.center().y()));
}

} // namespace view
