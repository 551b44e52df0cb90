#pragma once

#include "vndatabase_export.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QString>

class VNToviDatabaseInterface;

/// Fills a reference database (usually the delivered one) from a JSON file of
/// reference content: ions, compounds, joints, parameters and aliases, as in
/// the module's data/tovi-sample.json. Objects already present (same
/// identifier) are kept as they are.
class VNDATABASE_EXPORT VNDatabaseToviSample
{
    Q_DECLARE_TR_FUNCTIONS(VNDatabaseToviSample)
public:
    /// What a load brought in.
    struct Counts
    {
        int ions = 0;
        int compounds = 0;
        int joints = 0;
        int parameters = 0;
        int aliases = 0;
        int graphs = 0;
        int overlays = 0;
    };

    /// Loads `file` into `db` in one transaction. False, with the reason in
    /// `error` (translated), when the file cannot be read or is not reference
    /// content, or when nothing could be written; `counts` tells what was made.
    static bool load(VNToviDatabaseInterface* db, const QString& file, QString* error = nullptr,
                     Counts* counts = nullptr);
    /// The sample file delivered with the module, or an empty string.
    static QString defaultFile();

private:
    /// Graphs (axes naming parameters by key) and their overlays (zones and
    /// lines), each once by name.
    static void loadGraphs(VNToviDatabaseInterface* db, const QJsonArray& graphs, Counts* made);
};
