#include "projectcommand.h"

#include "clicontext.h"
#include "projectdatabase.h"
#include "projectfolder.h"

#include <tdatabase.h>
#include <tacquisitionrun.h>
#include <tdescriptionacquisition.h>
#include <theaderdatabase.h>
#include <tmodulelauncher.h>
#include <vndatabase.h>

#include <QDir>
#include <QFile>
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
    return tr("init   makes DIR a project (created when missing): its folders and its project database\n"
              "list   analyses with their scans, times, masses and signals, and whether the project\n"
              "       database knows them (never changes anything)\n"
              "check  structure check of the project folders; missing ones are recreated, unless\n"
              "       --read-only, which only reports them (exit code 1 when some are missing)\n"
              "sync   synchronisation of the project database with the folders: analyses found on disk\n"
              "       are registered, records whose folder vanished are reported. Refused for a read-only\n"
              "       project and while an analysis module is running.\n"
              "list, check and sync refuse a folder that holds no project.",
              "init   fait de DIR un projet (créé s'il manque) : ses dossiers et sa base de données de projet\n"
              "list   analyses avec leurs scans, temps, masses et signaux, et si la base de données du\n"
              "       projet les connaît (ne modifie rien)\n"
              "check  vérification de la structure des dossiers du projet ; les dossiers manquants sont\n"
              "       recréés, sauf avec --read-only, qui les signale seulement (code de sortie 1 s'il en manque)\n"
              "sync   synchronisation de la base de données du projet avec les dossiers : les analyses\n"
              "       trouvées sur le disque sont enregistrées, les enregistrements dont le dossier a disparu\n"
              "       sont signalés. Refusée pour un projet en lecture seule et pendant qu'un module d'analyse\n"
              "       tourne.\n"
              "list, check et sync refusent un dossier qui ne contient pas de projet.");
}

QList<CliOption> ProjectCommand::options() const
{
    return {CliOption{QStringLiteral("read-only"), QChar(), 0, QString(),
                      tr("open the project read-only: nothing on disk changes",
                         "ouvre le projet en lecture seule : rien ne change sur le disque")},
            CliOption{QStringLiteral("module-in-use"), QChar(), 1, QStringLiteral("NAME"),
                      tr("sync as if the analysis module NAME were running",
                         "synchronise comme si le module d'analyse NAME tournait")}};
}

int ProjectCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QString action = arguments.positionals().at(0);
    const QString dir = arguments.positionals().at(1);
    const bool readOnly = arguments.isSet(QStringLiteral("read-only"));
    if (arguments.isSet(QStringLiteral("module-in-use")) && action != QLatin1String("sync"))
        return context.usageError(
            tr("--module-in-use goes with 'project sync' only", "--module-in-use ne va qu'avec 'project sync'"),
            name());
    if (action == QLatin1String("init")) {
        if (readOnly)
            return context.usageError(
                tr("--read-only does not go with 'project init'", "--read-only ne va pas avec 'project init'"), name());
        return init(context, dir);
    }
    if (action == QLatin1String("list"))
        return list(context, dir);
    if (action == QLatin1String("check"))
        return check(context, dir, readOnly);
    if (action == QLatin1String("sync"))
        return sync(context, dir, readOnly, arguments.values(QStringLiteral("module-in-use")));
    return context.usageError(
        tr("unknown action '%1' (init, list, check or sync)", "action inconnue '%1' (init, list, check ou sync)")
            .arg(action),
        name());
}

int ProjectCommand::list(CliContext& context, const QString& dir)
{
    const ProjectFolder project(dir);
    QString error;
    if (!project.holdsProject(&error))
        return context.refuse(error);
    // Listing reads: the project database is opened read-only, and only when
    // the project has one.
    ProjectDatabase database;
    const bool hasDatabase = QFileInfo(ProjectDatabase::headerFile(project.path())).exists();
    if (hasDatabase && !database.open(project.path(), true, &error))
        return context.refuse(error);
    const QStringList registered = database.registeredAnalyses();

    QJsonArray analyses;
    context.print(tr("Project %1", "Projet %1").arg(project.path()));
    if (!hasDatabase)
        context.print(tr("  (no project database yet: vndb project sync %1)",
                         "  (pas encore de base de données de projet : vndb project sync %1)")
                          .arg(project.path()));
    const QStringList folders = project.analyses();
    for (const QString& name : folders) {
        TDescriptionAcquisition description;
        QJsonObject entry;
        entry.insert(QStringLiteral("name"), name);
        const bool hasFile = QFileInfo(project.acquisitionFile(name)).isFile();
        entry.insert(QStringLiteral("acquisitionFile"), hasFile);
        entry.insert(QStringLiteral("registered"), registered.contains(name));
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
            context.print(
                tr("  %1: no readable acquisition description", "  %1 : pas de description d'acquisition lisible")
                    .arg(name));
        }
        QVector<TDetectorChannel> channels;
        QString why;
        if (project.channels(name, &channels, &why)) {
            QJsonArray list;
            for (const TDetectorChannel& channel : channels) {
                QJsonObject one;
                one.insert(QStringLiteral("name"), channel.name);
                one.insert(QStringLiteral("unit"), channel.unit);
                one.insert(QStringLiteral("points"), channel.values.size());
                list.append(one);
                context.print(
                    tr("    channel %1 (%2): %3 points, %4 to %5 min", "    voie %1 (%2) : %3 points, %4 à %5 min")
                        .arg(channel.name, channel.unit)
                        .arg(channel.values.size())
                        .arg(channel.times.value(0), 0, 'f', 2)
                        .arg(channel.times.isEmpty() ? 0.0 : channel.times.last(), 0, 'f', 2));
            }
            entry.insert(QStringLiteral("channels"), list);
        } else {
            context.print(QStringLiteral("    (") + why + QLatin1Char(')'));
        }
        if (!hasFile)
            context.print(tr("    (no acquisition file)", "    (pas de fichier d'acquisition)"));
        if (hasDatabase && !registered.contains(name))
            context.print(tr("    (not in the project database)", "    (absente de la base de données du projet)"));
        analyses.append(entry);
    }
    // Records whose folder is gone are part of the answer too.
    QJsonArray vanished;
    for (const QString& name : registered) {
        if (folders.contains(name))
            continue;
        vanished.append(name);
        context.print(tr("  %1: in the project database, but its folder is missing",
                         "  %1 : dans la base de données du projet, mais son dossier est introuvable")
                          .arg(name));
    }
    QJsonObject json;
    json.insert(QStringLiteral("project"), project.path());
    json.insert(QStringLiteral("database"), hasDatabase);
    json.insert(QStringLiteral("analyses"), analyses);
    json.insert(QStringLiteral("missingFolders"), vanished);
    context.printJson(json);
    return CliContext::Success;
}

int ProjectCommand::check(CliContext& context, const QString& dir, bool readOnly)
{
    const ProjectFolder project(dir);
    QString error;
    if (!project.holdsProject(&error))
        return context.refuse(error);
    QList<ProjectDatabase::Folder> folders;
    QStringList messages;
    folders = ProjectDatabase::checkStructure(project.path(), !readOnly, &messages);
    context.print(tr("Project %1", "Projet %1").arg(project.path()));
    QJsonArray jsonFolders;
    QStringList missing, created, failed;
    for (const ProjectDatabase::Folder& folder : qAsConst(folders)) {
        QString state;
        if (folder.existed)
            state = tr("%1 files, %2 folders", "%1 fichiers, %2 dossiers").arg(folder.files).arg(folder.folders);
        else if (readOnly)
            state = tr("missing (not repaired: read-only)", "manquant (non réparé : lecture seule)");
        else if (folder.exists)
            state = tr("missing, created", "manquant, créé");
        else
            state = tr("missing, cannot be created", "manquant, impossible à créer");
        if (!folder.existed) {
            missing << folder.name;
            (folder.exists ? created : failed) << folder.name;
        }
        context.print(QStringLiteral("  %1/: %2").arg(folder.name, state));
        QJsonObject entry;
        entry.insert(QStringLiteral("name"), folder.name);
        entry.insert(QStringLiteral("existed"), folder.existed);
        entry.insert(QStringLiteral("exists"), folder.exists);
        entry.insert(QStringLiteral("files"), folder.files);
        entry.insert(QStringLiteral("folders"), folder.folders);
        jsonFolders.append(entry);
    }
    for (const QString& message : qAsConst(messages))
        context.print(QStringLiteral("  ") + message);

    // Each analysis folder holds its acquisition file and its description.
    QJsonArray incomplete;
    for (const QString& name : project.analyses()) {
        QStringList lacks;
        if (!QFileInfo(project.acquisitionFile(name)).isFile())
            lacks << QFileInfo(project.acquisitionFile(name)).fileName();
        if (!QFileInfo(project.descriptionFile(name)).isFile())
            lacks << QFileInfo(project.descriptionFile(name)).fileName();
        if (lacks.isEmpty())
            continue;
        incomplete.append(name);
        context.print(
            tr("  analysis %1 lacks %2", "  l'analyse %1 n'a pas %2").arg(name, lacks.join(QStringLiteral(", "))));
    }

    QJsonObject json;
    json.insert(QStringLiteral("project"), project.path());
    json.insert(QStringLiteral("readOnly"), readOnly);
    json.insert(QStringLiteral("folders"), jsonFolders);
    json.insert(QStringLiteral("created"), QJsonArray::fromStringList(created));
    json.insert(QStringLiteral("messages"), QJsonArray::fromStringList(messages));
    json.insert(QStringLiteral("incompleteAnalyses"), incomplete);
    if (readOnly && !missing.isEmpty()) {
        context.printJson(json);
        return context.refuse(tr("the structure of project '%1' is incomplete (%2 missing); run the check without "
                                 "--read-only to repair it",
                                 "la structure du projet '%1' est incomplète (%2 manquant) ; lancez la vérification "
                                 "sans --read-only pour la réparer")
                                  .arg(project.path(), missing.join(QStringLiteral(", "))));
    }
    if (!failed.isEmpty()) {
        context.printJson(json);
        return context.refuse(tr("the structure of project '%1' cannot be repaired (%2)",
                                 "la structure du projet '%1' ne peut pas être réparée (%2)")
                                  .arg(project.path(), failed.join(QStringLiteral(", "))));
    }
    context.print(created.isEmpty() ? tr("Structure complete.", "Structure complète.")
                                    : tr("Structure repaired: %1 created.", "Structure réparée : %1 créé(s).")
                                          .arg(created.join(QStringLiteral(", "))));
    context.printJson(json);
    return CliContext::Success;
}

int ProjectCommand::sync(CliContext& context, const QString& dir, bool readOnly, const QStringList& modules)
{
    const ProjectFolder project(dir);
    QString error;
    if (!project.holdsProject(&error))
        return context.refuse(error);
    const QString header = ProjectDatabase::headerFile(project.path());
    const bool hadHeader = QFileInfo::exists(header);
    ProjectDatabase::SyncOutcome outcome;
    {
        ProjectDatabase database;
        if (!database.open(project.path(), readOnly, &error))
            return context.refuse(error);
        for (const QString& module : modules)
            database.launcher()->moduleStarted(module);
        outcome = database.synchronize();
    }
    if (outcome.refused) {
        // A refused synchronisation leaves the folder as it was: a header
        // file made only for this attempt goes again.
        if (!hadHeader)
            QFile::remove(header);
        return context.refuse(outcome.messages.last());
    }
    const QStringList& messages = outcome.messages;
    const Sedra::TSyncReport& report = outcome.report;
    const QStringList& registered = outcome.analyses;
    context.print(tr("Project %1", "Projet %1").arg(project.path()));
    for (const QString& message : qAsConst(messages))
        context.print(QStringLiteral("  ") + message);
    context.print(
        tr("Synchronised: %1 added, %2 with a missing folder, %3 skipped; %4 analyses in the project database.",
           "Synchronisé : %1 ajoutée(s), %2 sans dossier, %3 ignorée(s) ; %4 analyses dans la base de données du "
           "projet.")
            .arg(report.registered.size())
            .arg(report.missing.size())
            .arg(report.skipped.size())
            .arg(registered.size()));
    QJsonObject json;
    json.insert(QStringLiteral("project"), project.path());
    json.insert(QStringLiteral("database"), header);
    json.insert(QStringLiteral("added"), QJsonArray::fromStringList(report.registered));
    json.insert(QStringLiteral("missingFolders"), QJsonArray::fromStringList(report.missing));
    json.insert(QStringLiteral("skipped"), QJsonArray::fromStringList(report.skipped));
    json.insert(QStringLiteral("analyses"), QJsonArray::fromStringList(registered));
    json.insert(QStringLiteral("messages"), QJsonArray::fromStringList(messages));
    context.printJson(json);
    return CliContext::Success;
}

int ProjectCommand::init(CliContext& context, const QString& dir)
{
    const ProjectFolder project(dir);
    const QFileInfo info(project.path());
    if (info.exists() && !info.isDir())
        return context.refuse(tr("'%1' is not a folder", "'%1' n'est pas un dossier").arg(project.path()));
    const bool existed = info.exists();
    if (!existed && !QDir().mkpath(project.path()))
        return context.refuse(
            tr("cannot create the folder '%1'", "impossible de créer le dossier '%1'").arg(project.path()));
    QStringList messages;
    QStringList folders;
    for (const ProjectDatabase::Folder& folder : ProjectDatabase::checkStructure(project.path(), true, &messages)) {
        if (!folder.exists)
            return context.refuse(tr("the folder '%1' of project '%2' cannot be created",
                                     "le dossier '%1' du projet '%2' ne peut pas être créé")
                                      .arg(folder.name, project.path()));
        folders << folder.name;
    }
    ProjectDatabase::SyncOutcome outcome;
    {
        ProjectDatabase database;
        QString error;
        if (!database.open(project.path(), false, &error))
            return context.refuse(error);
        outcome = database.synchronize();
    }
    if (outcome.refused)
        return context.refuse(outcome.messages.last());
    context.print(tr("Project %1 ready: folders %2; project database %3; %4 analyses registered",
                     "Projet %1 prêt : dossiers %2 ; base de données de projet %3 ; %4 analyses enregistrées")
                      .arg(project.path(), folders.join(QStringLiteral(", ")),
                           QFileInfo(ProjectDatabase::headerFile(project.path())).fileName())
                      .arg(outcome.analyses.size()));
    QJsonObject json;
    json.insert(QStringLiteral("project"), project.path());
    json.insert(QStringLiteral("folders"), QJsonArray::fromStringList(folders));
    json.insert(QStringLiteral("database"), ProjectDatabase::headerFile(project.path()));
    json.insert(QStringLiteral("analyses"), QJsonArray::fromStringList(outcome.analyses));
    context.printJson(json);
    return CliContext::Success;
}
