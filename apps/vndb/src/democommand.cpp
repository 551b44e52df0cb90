#include "democommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "diagramcommand.h"
#include "importcommand.h"
#include "parametervaluesrun.h"
#include "plotpainter.h"
#include "projectdatabase.h"
#include "projectfolder.h"
#include "referencedatabases.h"
#include "referenceselector.h"

#include <objectselectorctrl.h>
#include <objectselectormodel.h>
#include <tacquisitionrun.h>
#include <trunreader.h>
#include <tandimsfile.h>
#include <tchemstationfile.h>
#include <tcmfile.h>
#include <tcsvrunfile.h>
#include <tfile.h>
#include <tmodulelauncher.h>
#include <tprogressbarmgr.h>
#include <tsyntheticrun.h>
#include <ttovicompound.h>
#include <txmlmethod.h>
#include <vntovidatabaseinterface.h>

#include <QDir>
#include <QDomDocument>
#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>
#include <functional>

namespace {
// The sample runs: seeds fixed so that every demo shows the same peaks.
struct Sample
{
    const char* analysis;
    const char* file;
    TSyntheticRun::Kind kind;
    quint32 seed;
    int scans;
    int points;
    const char* title;
};
const Sample kSamples[] = {
    {"crude-oil-a", "crude-oil-a.cdf", TSyntheticRun::FullScan, 11, 3600, 120, "Crude oil A (full scan)"},
    {"crude-oil-b", "crude-oil-b.csv", TSyntheticRun::FullScan, 12, 3600, 60, "Crude oil B (full scan)"},
    {"biomarkers-msms", "biomarkers-msms.tcm", TSyntheticRun::MSMS, 13, 1800, 0, "Biomarkers (MS/MS)"},
    {"gas-oil-gcms", "gas-oil-gcms.D", TSyntheticRun::FullScan, 14, 3600, 60, "Gas oil (GC-MS with FID)"},
};

// The flame-ionisation trace recorded beside the mass scans: its own, denser
// time base (four points per scan), following the TIC as a real FID would.
TDetectorChannel fidBeside(const TAcquisitionRun& run)
{
    TDetectorChannel fid{QStringLiteral("FID1A"), QStringLiteral("pA"), QStringLiteral("Front Signal"), {}, {}};
    const int n = run.scanCount();
    if (n < 2)
        return fid;
    const double top = std::max(1.0, *std::max_element(run.tic.begin(), run.tic.end()));
    for (int i = 0; i < 4 * (n - 1); ++i) {
        const int s = i / 4;
        const double f = (i % 4) / 4.0;
        fid.times.append(run.rtimes.at(s) + f * (run.rtimes.at(s + 1) - run.rtimes.at(s)));
        fid.values.append(3.0 + 850.0 * ((1.0 - f) * run.tic.at(s) + f * run.tic.at(s + 1)) / top);
    }
    return fid;
}

QString topPeaks(const AnalysisSeries& series, int count)
{
    QVector<int> order(series.x.size());
    for (int i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return series.y.at(a) > series.y.at(b); });
    QStringList peaks;
    for (int i = 0; i < std::min(count, int(order.size())); ++i)
        peaks
            << QStringLiteral("%1 (%2)").arg(series.labels.value(order.at(i))).arg(series.y.at(order.at(i)), 0, 'f', 0);
    return peaks.join(QStringLiteral(", "));
}
} // namespace

QString DemoCommand::summary() const
{
    return tr("make a sample workspace and walk through the main job",
              "crée un espace de démonstration et parcourt le travail principal");
}

QString DemoCommand::description() const
{
    return tr(
        "DIR defaults to ./vndb-demo. It receives inputs/ (sample ANDI netCDF, CSV, MS/MS and ChemStation files),\n"
        "project/ (the project and its analyses), plots/ (the pictures drawn) and reference/ (the delivered,\n"
        "user and merged reference databases). Running the demo again keeps the files that exist.",
        "DIR vaut ./vndb-demo par défaut. Il reçoit inputs/ (fichiers d'exemple ANDI netCDF, CSV, MS/MS et "
        "ChemStation),\n"
        "project/ (le projet et ses analyses), plots/ (les images dessinées) et reference/ (les bases de\n"
        "référence livrée, utilisateur et fusionnée). Relancer la démonstration garde les fichiers existants.");
}

void DemoCommand::step(const QString& title)
{
    ++m_step;
    m_context->print();
    m_context->print(QStringLiteral("[%1/%2] %3").arg(m_step).arg(m_steps).arg(title));
    QJsonObject entry;
    entry.insert(QStringLiteral("step"), title);
    entry.insert(QStringLiteral("lines"), QJsonArray());
    m_log.append(entry);
}

void DemoCommand::say(const QString& line)
{
    m_context->print(QStringLiteral("      ") + line);
    if (m_log.isEmpty())
        return;
    QJsonObject entry = m_log.last().toObject();
    QJsonArray lines = entry.value(QStringLiteral("lines")).toArray();
    lines.append(line);
    entry.insert(QStringLiteral("lines"), lines);
    m_log.replace(m_log.size() - 1, entry);
}

int DemoCommand::run(CliContext& context, const CliArguments& arguments)
{
    m_context = &context;
    m_step = 0;
    m_log = QJsonArray();
    const QString dir = arguments.positionals().value(0, defaultFolder());
    m_root = QDir::cleanPath(QFileInfo(dir).absoluteFilePath());
    m_project = m_root + QStringLiteral("/project");
    if (QFileInfo(m_root).exists() && !QFileInfo(m_root).isDir())
        return context.refuse(tr("'%1' is not a folder", "'%1' n'est pas un dossier").arg(m_root));
    for (const QString& sub : {QStringLiteral("/inputs"), QStringLiteral("/project"), QStringLiteral("/plots")}) {
        if (!TFile::mkdirs(m_root + sub, false))
            return context.refuse(
                tr("cannot create the folder '%1'", "impossible de créer le dossier '%1'").arg(m_root + sub));
    }
    context.print(tr("Demo workspace: %1", "Espace de démonstration : %1").arg(m_root));

    const QList<std::function<bool()>> steps = {
        [this] { return makeInputs(); },       [this] { return importAnalyses(); },
        [this] { return checkProject(); },     [this] { return showData(); },
        [this] { return drawPlots(); },        [this] { return mergeReferences(); },
        [this] { return searchReferences(); }, [this] { return interpret(); },
    };
    m_steps = steps.size();
    for (const auto& run : steps) {
        if (!run())
            return context.refuse(m_error);
    }
    context.print();
    context.print(tr("Done. Try: vndb plot %1 crude-oil-a --eic 217 -o steranes.png",
                     "Terminé. Essayez : vndb plot %1 crude-oil-a --eic 217 -o steranes.png")
                      .arg(m_project));
    QJsonObject json;
    json.insert(QStringLiteral("workspace"), m_root);
    json.insert(QStringLiteral("project"), m_project);
    json.insert(QStringLiteral("steps"), m_log);
    context.printJson(json);
    return CliContext::Success;
}

bool DemoCommand::makeInputs()
{
    step(tr("Sample instrument files", "Fichiers d'instrument d'exemple"));
    TProgressBarMgr progress(int(std::size(kSamples)), tr("Generating runs", "Génération des acquisitions"));
    int done = 0;
    for (const Sample& sample : kSamples) {
        const QString path = m_root + QStringLiteral("/inputs/") + QLatin1String(sample.file);
        if (QFileInfo::exists(path)) {
            say(tr("%1: kept", "%1 : conservé").arg(QLatin1String(sample.file)));
            progress.setProgress(++done);
            continue;
        }
        TSyntheticRun::Options options;
        options.kind = sample.kind;
        options.seed = sample.seed;
        options.scanCount = sample.scans;
        if (sample.points > 0)
            options.pointsPerScan = sample.points;
        options.name = QLatin1String(sample.title);
        const TAcquisitionRun run = TSyntheticRun::generate(options);
        bool ok = false;
        QString what;
        if (path.endsWith(QLatin1String(".D"))) {
            ok = TChemStationFile::writeFolder(path, run, TAcquisitionRun(), {fidBeside(run)}, &m_error);
            what = QStringLiteral("Agilent ChemStation, data.ms + FID1A.ch");
        } else if (path.endsWith(QLatin1String(".cdf"))) {
            ok = TAndiMSFile::write(path, run);
            what = QStringLiteral("ANDI netCDF");
        } else if (path.endsWith(QLatin1String(".csv"))) {
            ok = TCSVRunFile::write(path, run);
            what = QStringLiteral("CSV");
        } else {
            ok = TCMFile::save(path, run, &m_error);
            what = QStringLiteral("MS/MS TCM");
        }
        if (!ok) {
            m_error
                = tr("cannot write the sample file '%1'", "impossible d'écrire le fichier d'exemple '%1'").arg(path);
            return false;
        }
        say(tr("%1: %2, %3 scans, %4", "%1 : %2, %3 scans, %4")
                .arg(QLatin1String(sample.file), what)
                .arg(run.scanCount())
                .arg(QLatin1String(sample.title)));
        progress.setProgress(++done);
    }
    return true;
}

bool DemoCommand::importAnalyses()
{
    step(tr("Import into the project", "Import dans le projet"));
    const ProjectFolder project(m_project);
    for (const Sample& sample : kSamples) {
        const QString analysis = QLatin1String(sample.analysis);
        if (project.hasAnalysis(analysis)) {
            say(tr("%1: already in the project, kept", "%1 : déjà dans le projet, conservée").arg(analysis));
            continue;
        }
        QVector<TImportedRun> runs;
        QString format;
        if (!ImportCommand::importFile(m_project, m_root + QStringLiteral("/inputs/") + QLatin1String(sample.file),
                                       analysis, &runs, &format, &m_error))
            return false;
        const TAcquisitionRun& run = runs.first().run;
        say(tr("%1 <- %2 (%3): %4 scans, %5 points", "%1 <- %2 (%3) : %4 scans, %5 points")
                .arg(analysis, QLatin1String(sample.file), format)
                .arg(run.scanCount())
                .arg(run.pointCount()));
        for (const TDetectorChannel& channel : run.detectors)
            say(tr("%1: channel %2 (%3), %4 points", "%1 : voie %2 (%3), %4 points")
                    .arg(analysis, channel.name, channel.unit)
                    .arg(channel.values.size()));
    }
    return true;
}

bool DemoCommand::checkProject()
{
    step(tr("Project structure and database", "Structure et base de données du projet"));
    // The structure check and repair of the project database: a project made
    // by imports alone lacks the folders that analyses do not need.
    QStringList messages;
    const QList<ProjectDatabase::Folder> folders = ProjectDatabase::checkStructure(m_project, true, &messages);
    QStringList created;
    for (const ProjectDatabase::Folder& folder : folders) {
        if (!folder.exists) {
            m_error = tr("the folder '%1' of the project cannot be created",
                         "le dossier '%1' du projet ne peut pas être créé")
                          .arg(folder.name);
            return false;
        }
        if (!folder.existed)
            created << folder.name;
    }
    for (const QString& message : qAsConst(messages))
        say(message);
    say(created.isEmpty() ? tr("structure check: complete", "vérification de la structure : complète")
                          : tr("structure check: %1 repaired", "vérification de la structure : %1 réparé(s)")
                                .arg(created.join(QStringLiteral(", "))));

    const ProjectFolder project(m_project);
    for (const QString& analysis : project.analyses()) {
        TCMFile file;
        if (!file.open(project.acquisitionFile(analysis))) {
            m_error = AnalysisData::damaged(analysis, file.errorString());
            return false;
        }
        say(tr("%1/%2.tcm: %3 scans, acquisition system %4, m/z %5 to %6",
               "%1/%2.tcm : %3 scans, système d'acquisition %4, m/z %5 à %6")
                .arg(QDir(m_project).relativeFilePath(project.analysisPath(analysis)), analysis)
                .arg(file.nbScans())
                .arg(file.acquisitionSystem())
                .arg(file.lowMass(), 0, 'f', 2)
                .arg(file.highMass(), 0, 'f', 2));
    }

    // The SQL root: first as a read-only project and while a module runs, which
    // the project database refuses, then for real.
    if (QFileInfo::exists(ProjectDatabase::headerFile(m_project))) {
        ProjectDatabase readOnly;
        if (readOnly.open(m_project, true, &m_error))
            say(tr("read-only sync refused: %1", "synchronisation en lecture seule refusée : %1")
                    .arg(readOnly.synchronize().messages.value(0)));
    }
    ProjectDatabase database;
    if (!database.open(m_project, false, &m_error))
        return false;
    database.launcher()->moduleStarted(QStringLiteral("peak-detection"));
    say(tr("sync while a module runs refused: %1", "synchronisation pendant qu'un module tourne refusée : %1")
            .arg(database.synchronize().messages.value(0)));
    database.launcher()->moduleFinished(QStringLiteral("peak-detection"));
    const ProjectDatabase::SyncOutcome outcome = database.synchronize();
    if (outcome.refused) {
        m_error = outcome.messages.last();
        return false;
    }
    for (const QString& message : outcome.messages)
        say(message);
    say(tr("sync: %1 added; %2 analyses in %3", "synchronisation : %1 ajoutée(s) ; %2 analyses dans %3")
            .arg(outcome.report.registered.size())
            .arg(outcome.analyses.size())
            .arg(QFileInfo(ProjectDatabase::headerFile(m_project)).fileName()));
    return true;
}

bool DemoCommand::showData()
{
    step(tr("Signals of crude-oil-a and biomarkers-msms", "Signaux de crude-oil-a et biomarkers-msms"));
    const ProjectFolder project(m_project);
    AnalysisData oil;
    AnalysisSeries tic, spectrum, eic;
    if (!oil.open(project, QStringLiteral("crude-oil-a"), &m_error) || !oil.tic(&tic, &m_error))
        return false;
    const int apex = tic.apex();
    say(tr("TIC: %1 scans, highest at scan %2 (%3 min)", "TIC : %1 scans, maximum au scan %2 (%3 min)")
            .arg(tic.x.size())
            .arg(apex)
            .arg(tic.x.value(apex), 0, 'f', 2));
    if (!oil.spectrum(apex, apex, &spectrum, &m_error))
        return false;
    say(tr("spectrum at scan %1: %2 masses; largest %3", "spectre au scan %1 : %2 masses ; les plus fortes %3")
            .arg(apex)
            .arg(spectrum.x.size())
            .arg(topPeaks(spectrum, 5)));
    if (!oil.eic(191.0, 0.5, &eic, &m_error))
        return false;
    const int hopane = eic.apex();
    say(tr("EIC m/z 191 (hopanes): highest at %1 min, abundance %2",
           "EIC m/z 191 (hopanes) : maximum à %1 min, abondance %2")
            .arg(eic.x.value(hopane), 0, 'f', 2)
            .arg(eic.y.value(hopane), 0, 'f', 0));

    AnalysisData msms;
    AnalysisSeries msmsTic, transitions;
    if (!msms.open(project, QStringLiteral("biomarkers-msms"), &m_error) || !msms.tic(&msmsTic, &m_error))
        return false;
    const int msmsApex = msmsTic.apex();
    if (!msms.spectrum(msmsApex, msmsApex, &transitions, &m_error))
        return false;
    say(tr("MS/MS at scan %1: %2 transitions; largest %3", "MS/MS au scan %1 : %2 transitions ; les plus fortes %3")
            .arg(msmsApex)
            .arg(transitions.x.size())
            .arg(topPeaks(transitions, 3)));
    return true;
}

bool DemoCommand::drawPlots()
{
    step(tr("Plots", "Graphiques"));
    const ProjectFolder project(m_project);
    struct Plot
    {
        QString analysis;
        QString file;
        std::function<bool(AnalysisData&, AnalysisSeries*, QString*)> make;
    };
    const QList<Plot> plots = {
        {QStringLiteral("crude-oil-a"), QStringLiteral("crude-oil-a-tic.png"),
         [](AnalysisData& d, AnalysisSeries* s, QString* e) { return d.tic(s, e); }},
        {QStringLiteral("crude-oil-a"), QStringLiteral("crude-oil-a-eic191.png"),
         [](AnalysisData& d, AnalysisSeries* s, QString* e) { return d.eic(191.0, 0.5, s, e); }},
        {QStringLiteral("crude-oil-b"), QStringLiteral("crude-oil-b-spectrum.svg"),
         [](AnalysisData& d, AnalysisSeries* s, QString* e) {
             AnalysisSeries tic;
             return d.tic(&tic, e) && d.spectrum(tic.apex(), tic.apex(), s, e);
         }},
        {QStringLiteral("biomarkers-msms"), QStringLiteral("biomarkers-msms-spectrum.png"),
         [](AnalysisData& d, AnalysisSeries* s, QString* e) {
             AnalysisSeries tic;
             return d.tic(&tic, e) && d.spectrum(tic.apex(), tic.apex(), s, e);
         }},
    };
    for (const Plot& plot : plots) {
        AnalysisData data;
        AnalysisSeries series;
        if (!data.open(project, plot.analysis, &m_error) || !plot.make(data, &series, &m_error))
            return false;
        const QString path = m_root + QStringLiteral("/plots/") + plot.file;
        PlotPainter painter(series);
        if (!painter.write(path, QSize(1200, 700), &m_error))
            return false;
        say(tr("%1: %2", "%1 : %2").arg(QStringLiteral("plots/") + plot.file, painter.title()));
    }
    return true;
}

bool DemoCommand::mergeReferences()
{
    step(tr("Reference databases and their merge", "Bases de référence et leur fusion"));
    ReferenceDatabases databases;
    bool filled = false;
    if (!databases.open(m_root + QStringLiteral("/reference"), true, &m_error)
        || !databases.fillDelivered(QString(), &filled, &m_error))
        return false;
    say(filled
            ? tr("delivered database filled from the sample content", "base livrée remplie depuis le contenu d'exemple")
            : tr("delivered database kept", "base livrée conservée"));
    // A compound of the user's own, which the merged database must then show
    // beside the delivered content.
    VNToviDatabaseInterface* user = databases.database(Sedra::DatabaseToviUser, &m_error);
    if (!user)
        return false;
    const QString name = QStringLiteral("Lycopane");
    if (!user->getCompoundByName(name)) {
        Sedra::TToviCompound model;
        model.setFormula(QStringLiteral("C40H82"));
        model.setCas(QStringLiteral("45316-02-8"));
        model.setFamily(QStringLiteral("isoprenoids"));
        if (databases.addCompound(name, QStringLiteral("Lyc"), &model, &m_error).isEmpty()
            || !databases.userChanged(&m_error))
            return false;
        say(tr("user database: %1 added (vndb ref add-compound)",
               "base utilisateur : %1 ajouté (vndb ref add-compound)")
                .arg(name));
    } else if (!databases.merge(&m_error)) {
        return false;
    }
    for (Sedra::DatabaseType type :
         {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
        VNToviDatabaseInterface* db = databases.database(type, &m_error);
        if (!db)
            return false;
        say(tr("%1: %2", "%1 : %2").arg(ReferenceDatabases::fileName(type), ReferenceDatabases::counts(db)));
    }
    const int missing = databases.missingFromMerged(&m_error);
    if (missing < 0)
        return false;
    say(missing == 0
            ? tr("the merged database holds both sources (vndb ref merge --check)",
                 "la base fusionnée contient les deux sources (vndb ref merge --check)")
            : tr("the merged database lacks %1 objects", "il manque %1 objets à la base fusionnée").arg(missing));
    return true;
}

bool DemoCommand::searchReferences()
{
    step(tr("Reference selector", "Sélecteur de références"));
    // Over the merged database of the previous step, as the application lists it.
    ReferenceDatabases databases;
    VNToviDatabaseInterface* merged = nullptr;
    if (!databases.open(m_root + QStringLiteral("/reference"), false, &m_error)
        || !(merged = databases.database(Sedra::DatabaseToviMerged, &m_error)))
        return false;
    ObjectSelectorModel model;
    ReferenceSelector::fill(model, merged, {}, true);
    ObjectSelectorCtrl ctrl;
    ctrl.setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
    ctrl.setModel(&model);
    const auto countShown = [&model](const QString& category) {
        QStringList names;
        for (auto* node = model.root().getFirstSon(); node; node = node->getBrother()) {
            if (!node->attribute || node->attribute->id() != category)
                continue;
            for (auto* son = node->getFirstSon(); son; son = son->getBrother()) {
                if (son->isVisible() && son->attribute)
                    names << son->attribute->title();
            }
        }
        return names;
    };
    say(tr("%1 objects of the merged database: compounds, parameters, joints, ions",
           "%1 objets de la base fusionnée : composés, paramètres, jointures, ions")
            .arg(model.getAllItems().size() - ReferenceSelector::kinds().size()));
    ctrl.searchRequested(QStringLiteral("hopane"));
    say(tr("search \"hopane\": %1 compounds, %2 parameters", "recherche \"hopane\" : %1 composés, %2 paramètres")
            .arg(countShown(QStringLiteral("compounds")).size())
            .arg(countShown(QStringLiteral("parameters")).size()));
    const QString carbons = tr("Carbons", "Carbones");
    ctrl.enableFilterRequested(carbons);
    ctrl.updateFilterRequested(carbons, QStringLiteral("30"));
    say(tr("and %1 = 30: %2", "et %1 = 30 : %2")
            .arg(carbons, countShown(QStringLiteral("compounds")).join(QStringLiteral(", "))));
    for (const QString& id : {QStringLiteral("C:C30H"), QStringLiteral("P:R003")}) {
        if (ObjectSelectorItemInterface* item = ReferenceSelector::find(model, id))
            ctrl.toggleCheckRequested(item, true);
    }
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("vndbSelection"));
    document.appendChild(root);
    const QString file = m_root + QStringLiteral("/selection.xml");
    if (!ctrl.save(root) || !TXMLMethod::save(&document, file, false, false)) {
        m_error = tr("cannot write the selection to '%1'", "impossible d'écrire la sélection dans '%1'").arg(file);
        return false;
    }
    say(tr("%1 ticked, saved to selection.xml (vndb select --dir %2 --load %3)",
           "%1 coché(s), enregistré(s) dans selection.xml (vndb select --dir %2 --load %3)")
            .arg(ctrl.getSelectedItems(nullptr).size())
            .arg(m_root + QStringLiteral("/reference"), file));
    return true;
}

bool DemoCommand::interpret()
{
    step(tr("Parameters and a diagram", "Paramètres et diagramme"));
    ParameterValuesRun run;
    if (!run.open(m_project, m_root + QStringLiteral("/reference"), &m_error))
        return false;
    // The full-scan runs: their n-alkanes, isoprenoids and hopanes are what
    // the classic parameters read.
    const QStringList analyses
        = {QStringLiteral("crude-oil-a"), QStringLiteral("crude-oil-b"), QStringLiteral("gas-oil-gcms")};
    const QStringList shown = {QStringLiteral("Pr/Ph"), QStringLiteral("Pr/n-C17"), QStringLiteral("Ph/n-C18"),
                               QStringLiteral("CPI"), QStringLiteral("Ts/(Ts+Tm)")};
    for (const QString& analysis : analyses) {
        QList<TParameterValue> values;
        if (!run.compute(analysis, &values, &m_error))
            return false;
        QStringList parts;
        for (const QString& name : shown) {
            for (const TParameterValue& value : qAsConst(values)) {
                if (value.name != name)
                    continue;
                parts << (value.ok ? QStringLiteral("%1 %2").arg(name, QString::number(value.value, 'f', 2))
                                   : tr("%1 - (%2)", "%1 - (%2)").arg(name, value.reason));
            }
        }
        say(tr("%1: %2", "%1 : %2").arg(analysis, parts.join(QStringLiteral(", "))));
    }
    say(tr("stored in the project with every other parameter (vndb params %1)",
           "enregistrés dans le projet avec tous les autres paramètres (vndb params %1)")
            .arg(m_project));
    // Two diagrams of the sample content: maturity (both values measured in
    // every run) and source (the isoprenoids), whose legend names the runs
    // that lack a value.
    const QList<QPair<QString, QString>> diagrams
        = {{QStringLiteral("Ts/(Ts+Tm) vs CPI"), QStringLiteral("plots/maturity-diagram.png")},
           {QStringLiteral("Pr/n-C17 vs Ph/n-C18"), QStringLiteral("plots/pristane-phytane-diagram.png")}};
    for (const auto& [graphName, file] : diagrams) {
        const VNObject2* graph = DiagramCommand::findGraph(run.reference(), graphName);
        if (!graph) {
            say(tr("no graph '%1' in the reference databases (made by an earlier version): no diagram",
                   "aucun graphe '%1' dans les bases de référence (faites par une version antérieure) : pas de "
                   "diagramme")
                    .arg(graphName));
            continue;
        }
        QStringList placed, unplaced;
        if (!DiagramCommand::draw(run, graph, analyses, m_root + QLatin1Char('/') + file, QSize(900, 600), &placed,
                                  &unplaced, &m_error))
            return false;
        say(tr("%1: %2 with its zones; placed: %3; not placed: %4",
               "%1 : %2 avec ses zones ; placées : %3 ; non placées : %4")
                .arg(file, graphName, placed.isEmpty() ? tr("none", "aucune") : placed.join(QStringLiteral(", ")),
                     unplaced.isEmpty() ? tr("none", "aucune") : unplaced.join(QStringLiteral(", "))));
    }
    return true;
}
