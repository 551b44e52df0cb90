#pragma once

#include "projectdatabase.h"
#include "referencedatabases.h"

#include <tcompoundmeasure.h>
#include <tidentifier.h>
#include <tparametercalculator.h>

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

class VNObject2Analysis;
class VNToviDatabaseInterface;

/// What `vndb params`, `vndb diagram` and the demo share: a project and the
/// reference databases opened together, the analyses chosen by name, and the
/// parameters of the merged reference database computed for each analysis
/// from what identification measured in it, and stored in the project.
class ParameterValuesRun
{
    Q_DECLARE_TR_FUNCTIONS(ParameterValuesRun)
public:
    /// Opens the reference databases of `referenceFolder`, then the project
    /// `project` (which must hold one) for writing. False with a translated
    /// `error`, having written nothing.
    bool open(const QString& project, const QString& referenceFolder, QString* error);
    /// The two halves of open(), for commands that check more in between.
    bool openReferences(const QString& referenceFolder, QString* error);
    bool openProject(const QString& project, QString* error);
    /// Whether every analysis named has its folder in `project` (checked
    /// before the project is opened, so that a refusal writes nothing).
    static bool checkNames(const QString& project, const QStringList& names, QString* error);

    VNToviDatabaseInterface* reference() const { return m_reference; }
    ProjectDatabase& project() { return m_project; }

    /// The analyses named (every analysis of the project when none is), in
    /// the order given; false with `error` naming the first unknown one.
    bool choose(const QStringList& names, QStringList* analyses, QString* error) const;

    /// The measures of the reference compounds in `analysis`: identification,
    /// which also stores the peaks it finds.
    TCompoundMeasures measures(const VNObject2Analysis* analysis, QString* error);

    /// Identifies the compounds of `analysis`, computes every parameter and
    /// stores the values. False with `error`.
    bool compute(const QString& analysis, QList<TParameterValue>* values, QString* error);

private:
    ProjectDatabase m_project;
    ReferenceDatabases m_databases;
    VNToviDatabaseInterface* m_reference = nullptr;
    QList<TIdentificationTarget> m_targets;
};
