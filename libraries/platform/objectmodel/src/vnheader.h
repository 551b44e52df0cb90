#pragma once

#include "vnobjectmodel_export.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

/// What a table of measured columns says about itself when it becomes an
/// acquisition file: the run's name and date, the acquisition system, the
/// names of the columns after the time column, and the unit of that column.
class VNOBJECTMODEL_EXPORT VNHeader
{
public:
    VNHeader() = default;
    explicit VNHeader(const QString& name);

    QString name;
    QDateTime date;
    unsigned int acquisitionSystem = 0;
    /// One name per value column (the time column excluded); missing names
    /// are made up from the column's mass or number.
    QStringList columnNames;
    /// True when the time column holds seconds rather than minutes.
    bool timeInSeconds = false;
};
