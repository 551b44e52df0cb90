#include "projectcommand.h"

#include "clicontext.h"
#include "projectfolder.h"

#include <tdescriptionacquisition.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

QString ProjectCommand::summary() const
{
    return tr("list the analyses of a project, check its structure, synchronise it",
              "liste les analyses d'un projet, vérifie sa structure, le synchronise");
}

QString ProjectCommand::description() const
{
    return tr("list   analyses with their scans, times and masses\n"
              "check  structure check and repair of the project folders\n"
              "sync   synchronisation of the project's SQL root",
              "list   analyses avec leurs scans, temps et masses\n"
              "check  vérification et réparation des dossiers du projet\n"
              "sync   synchronisation de la racine SQL du projet");
}

QList<CliOption> ProjectCommand::options() const
{
    return {CliOption{QStringLiteral("read-only"), QChar(), 0, QString(),
                      tr("open the project read-only", "ouvre le projet en lecture seule")}};
}

int ProjectCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QString action = arguments.positionals().at(0);
    const QString dir = arguments.positionals().at(1);
    if (action == QLatin1String("list"))
        return list(context, dir);
    if (action == QLatin1String("check") || action == QLatin1String("sync")) {
        // Structure repair and synchronisation belong to the project database
        // (VNDatabase); doing them here by hand would disagree with it.
        return context.refuse(tr("'project %1' needs the project database, which this build does not have yet",
                                 "'project %1' a besoin de la base de données de projet, absente de cette version")
                                  .arg(action));
    }
    return context.usageError(tr("unknown action '%1' (list, check or sync)", "action inconnue '%1' (list, check ou sync)")
                                  .arg(action),
                              name());
}

int ProjectCommand::list(CliContext& context, const QString& dir)
{
    const ProjectFolder project(dir);
    QString error;
    if (!project.exists(&error))
        return context.refuse(error);
    QJsonArray analyses;
    context.print(tr("Project %1", "Projet %1").arg(project.path()));
    for (const QString& name : project.analyses()) {
        TDescriptionAcquisition description;
        QJsonObject entry;
        entry.insert(QStringLiteral("name"), name);
        const bool hasFile = QFileInfo(project.acquisitionFile(name)).isFile();
        entry.insert(QStringLiteral("acquisitionFile"), hasFile);
        if (description.load(project.descriptionFile(name))) {
            entry.insert(QStringLiteral("scans"), description.scanCount());
            entry.insert(QStringLiteral("acquisitionSystem"), double(description.acquisitionSystem()));
            entry.insert(QStringLiteral("startTime"), description.startTime());
            entry.insert(QStringLiteral("endTime"), description.endTime());
            entry.insert(QStringLiteral("signals"), QJsonArray::fromStringList(description.signalNames()));
            context.print(tr("  %1: %2 scans, %3 to %4 min, m/z %5 to %6, signals %7",
                             "  %1 : %2 scans, %3 à %4 min, m/z %5 à %6, signaux %7")
                              .arg(name)
                              .arg(description.scanCount())
                              .arg(description.startTime(), 0, 'f', 2)
                              .arg(description.endTime(), 0, 'f', 2)
                              .arg(description.lowMass(), 0, 'f', 2)
                              .arg(description.highMass(), 0, 'f', 2)
                              .arg(description.signalNames().join(QStringLiteral(", "))));
        } else {
            context.takeProblem();
            context.print(tr("  %1: no readable acquisition description", "  %1 : pas de description d'acquisition lisible")
                              .arg(name));
        }
        if (!hasFile)
            context.print(tr("    (no acquisition file)", "    (pas de fichier d'acquisition)"));
        analyses.append(entry);
    }
    QJsonObject json;
    json.insert(QStringLiteral("project"), project.path());
    json.insert(QStringLiteral("analyses"), analyses);
    context.printJson(json);
    return CliContext::Success;
}
