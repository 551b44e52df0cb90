#include "parametervaluesrun.h"

#include "projectfolder.h"

#include <vndatabase.h>
#include <vnobject2analysis.h>
#include <vnparametervalues.h>
#include <vntovidatabaseinterface.h>

bool ParameterValuesRun::open(const QString& project, const QString& referenceFolder, QString* error)
{
    return ProjectFolder(project).holdsProject(error) && openReferences(referenceFolder, error)
        && openProject(project, error);
}

bool ParameterValuesRun::openReferences(const QString& referenceFolder, QString* error)
{
    return m_databases.open(referenceFolder, false, error)
        && (m_reference = m_databases.database(Sedra::DatabaseToviMerged, error)) != nullptr;
}

bool ParameterValuesRun::openProject(const QString& project, QString* error)
{
    if (!ProjectFolder(project).holdsProject(error) || !m_project.open(project, false, error))
        return false;
    // Analyses imported since the project was last opened get their records.
    const ProjectDatabase::SyncOutcome outcome = m_project.synchronize();
    if (outcome.refused) {
        *error = outcome.messages.value(outcome.messages.size() - 1);
        return false;
    }
    return true;
}

bool ParameterValuesRun::checkNames(const QString& project, const QStringList& names, QString* error)
{
    const ProjectFolder folder(project);
    if (!folder.holdsProject(error))
        return false;
    for (const QString& name : names) {
        if (!folder.hasAnalysis(name)) {
            *error = tr("no analysis '%1' in the project", "aucune analyse '%1' dans le projet").arg(name);
            return false;
        }
    }
    return true;
}

bool ParameterValuesRun::choose(const QStringList& names, QStringList* analyses, QString* error) const
{
    const QStringList known = m_project.registeredAnalyses();
    if (names.isEmpty()) {
        *analyses = known;
        return true;
    }
    for (const QString& name : names) {
        if (!known.contains(name)) {
            *error = tr("no analysis '%1' in the project", "aucune analyse '%1' dans le projet").arg(name);
            return false;
        }
    }
    *analyses = names;
    return true;
}

TCompoundMeasures ParameterValuesRun::measures(const VNObject2Analysis* analysis, QString* error)
{
    VNDatabase* db = m_project.database();
    if (!db || !analysis) {
        *error = tr("no analysis to identify", "aucune analyse à identifier");
        return TCompoundMeasures();
    }
    // What cannot be measured in an analysis is said compound by compound in
    // the measures themselves, and then by the parameters that need them.
    if (m_targets.isEmpty())
        m_targets = VNDatabase::identificationTargets(m_reference);
    return db->analysisIdentify(analysis, m_targets);
}

bool ParameterValuesRun::compute(const QString& name, QList<TParameterValue>* values, QString* error)
{
    VNDatabase* db = m_project.database();
    const VNObject2Analysis* analysis = db ? db->getAnalysis(name) : nullptr;
    if (!analysis) {
        *error = tr("no analysis '%1' in the project", "aucune analyse '%1' dans le projet").arg(name);
        return false;
    }
    QString why;
    const TCompoundMeasures found = measures(analysis, &why);
    if (!why.isEmpty()) {
        *error = why;
        return false;
    }
    *values = VNParameterValues::compute(db, analysis, found, m_reference, error);
    return !values->isEmpty() || VNParameterValues::definitions(m_reference).isEmpty();
}
