#pragma once

// What the selector widget's tree view shows, read as a user sees it, and a
// click on a line's check box as a user makes it (offscreen).

#include <QPoint>
#include <QRect>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

namespace view {

// A line is shown when neither it nor any line above it is hidden.
inline bool shown(const QTreeWidgetItem* line)
{
    for (; line; line = line->parent()) {
        if (line->isHidden())
            return false;
    }
    return true;
}

// The titles of the object lines the tree view shows (categories left out).
inline QStringList shownObjects(QTreeWidget* tree)
{
    QStringList titles;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if ((*it)->parent() && shown(*it) && !tree->visualItemRect(*it).isEmpty())
            titles << (*it)->text(0);
    }
    return titles;
}

inline QStringList checkedTitles(QTreeWidget* tree)
{
    QStringList titles;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if ((*it)->data(0, Qt::CheckStateRole).isValid() && (*it)->checkState(0) == Qt::Checked)
            titles << (*it)->text(0);
    }
    return titles;
}

inline QTreeWidgetItem* lineTitled(QTreeWidget* tree, const QString& title)
{
    const QList<QTreeWidgetItem*> found = tree->findItems(title, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.first();
}

// Clicks the check box at the start of a line, as a user does.
inline void clickCheckBox(QTreeWidget* tree, QTreeWidgetItem* line)
{
    tree->scrollToItem(line);
    const QRect rect = tree->visualItemRect(line);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(rect.left() + 10, rect.center().y()));
}

} // namespace view
