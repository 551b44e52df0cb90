// vndb-browser: the object selector over the merged reference database in a window.
//   vndb-browser [--lang en|fr] [--kind KIND]... [--search TEXT] [--tick ID]...
//                [--details ID] [--dir DIR] [--screenshot FILE.png] [--size WxH]
#include "browserwindow.h"
#include "cliarguments.h"
#include "referencedatabases.h"
#include "referenceselector.h"

#include <tapplicationdata.h>
#include <ttranslator.h>

#include <QApplication>
#include <QCoreApplication>
#include <QThread>

#include <cstdio>

namespace {
QString tr(const char* english, const char* french)
{
    return QCoreApplication::translate("vndb-browser", english, french);
}

int fail(int code, const QString& message)
{
    std::fprintf(stderr, "vndb-browser: %s\n", message.toUtf8().constData());
    return code;
}

void quietQt(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg || qEnvironmentVariableIsSet("VNDB_DEBUG"))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

QList<CliOption> options()
{
    const auto option = [](const char* name, int values, const char* valueName) {
        return CliOption{QLatin1String(name), QChar(), values, QLatin1String(valueName), QString()};
    };
    return {option("lang", 1, "en|fr"),      option("kind", 1, "KIND"),  option("search", 1, "TEXT"),
            option("tick", 1, "ID"),         option("details", 1, "ID"), option("dir", 1, "DIR"),
            option("screenshot", 1, "FILE"), option("size", 1, "WxH"),   option("help", 0, "")};
}

QString helpText()
{
    return tr(
        "Usage: vndb-browser [--lang en|fr] [--kind KIND]... [--search TEXT] [--tick ID]... [--details ID]\n"
        "                    [--dir DIR] [--screenshot FILE.png] [--size WxH]\n\n"
        "The object selector over the merged reference database of DIR (else $TOVIDBDIR, else\n"
        "vndb-demo/reference): search line, quick filters, custom filter lines, ticks and details. KIND\n"
        "is compounds, parameters, joints or ions; IDs are those that 'vndb select' prints. --screenshot\n"
        "draws the window off screen into FILE and exits.",
        "Utilisation : vndb-browser [--lang en|fr] [--kind KIND]... [--search TEXT] [--tick ID]... [--details ID]\n"
        "                           [--dir DIR] [--screenshot FILE.png] [--size LxH]\n\n"
        "Le sélecteur d'objets sur la base de référence fusionnée de DIR (sinon $TOVIDBDIR, sinon\n"
        "vndb-demo/reference) : ligne de recherche, filtres rapides, lignes de filtre, coches et détails.\n"
        "KIND vaut compounds, parameters, joints ou ions ; les ID sont ceux qu'affiche 'vndb select'.\n"
        "--screenshot dessine la fenêtre hors écran dans FILE et quitte.");
}
} // namespace

int main(int argc, char** argv)
{
    // The command line is read before the application exists: a screenshot
    // needs no display, and is drawn off screen.
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    CliArguments arguments;
    QString error;
    const bool parsed = arguments.parse(words, options(), &error);
    const bool screenshot = parsed && arguments.isSet(QStringLiteral("screenshot"));
    if (screenshot)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietQt);
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vndb-browser"));
    TApplicationData applicationData; // where the reference databases are found ("TOVIDBDIR")

    const QString language = arguments.value(QStringLiteral("lang"));
    TTranslator::install(language == QLatin1String("fr") ? language : QStringLiteral("en"));
    if (!parsed)
        return fail(2, error);
    if (!language.isNull() && language != QLatin1String("en") && language != QLatin1String("fr"))
        return fail(2, tr("unknown language '%1' (en or fr)", "langue inconnue '%1' (en ou fr)").arg(language));
    if (arguments.isSet(QStringLiteral("help"))) {
        std::printf("%s\n", helpText().toUtf8().constData());
        return 0;
    }
    if (!arguments.positionals().isEmpty())
        return fail(2, tr("unexpected argument '%1'", "argument inattendu '%1'").arg(arguments.positionals().first()));
    const QStringList kinds = arguments.values(QStringLiteral("kind"));
    for (const QString& kind : kinds) {
        if (!ReferenceSelector::kinds().contains(kind))
            return fail(2,
                        tr("unknown kind '%1' (%2)", "type inconnu '%1' (%2)")
                            .arg(kind, ReferenceSelector::kinds().join(QStringLiteral(", "))));
    }
    QSize size(1100, 720);
    if (arguments.isSet(QStringLiteral("size"))) {
        const QStringList parts = arguments.value(QStringLiteral("size")).split(QLatin1Char('x'));
        int width = 0;
        int height = 0;
        if (parts.size() != 2 || !CliArguments::toIndex(parts.at(0), &width)
            || !CliArguments::toIndex(parts.at(1), &height) || width < 320 || height < 240 || width > 8000
            || height > 8000)
            return fail(2,
                        tr("'%1' is not a window size (WxH, from 320x240)",
                           "'%1' n'est pas une taille de fenêtre (LxH, à partir de 320x240)")
                            .arg(arguments.value(QStringLiteral("size"))));
        size = QSize(width, height);
    }

    ReferenceDatabases databases;
    const QString folder = arguments.isSet(QStringLiteral("dir")) ? arguments.value(QStringLiteral("dir"))
                                                                  : ReferenceDatabases::defaultFolder();
    VNToviDatabaseInterface* merged = nullptr;
    if (!databases.open(folder, false, &error) || !(merged = databases.database(Sedra::DatabaseToviMerged, &error)))
        return fail(1, error);

    BrowserWindow window(merged, kinds);
    window.resize(size);
    for (const QString& id : arguments.values(QStringLiteral("tick"))) {
        if (!window.tick(id))
            return fail(1, tr("no object with the ID '%1'", "aucun objet d'ID '%1'").arg(id));
    }
    if (arguments.isSet(QStringLiteral("search")))
        window.search(arguments.value(QStringLiteral("search")));
    if (arguments.isSet(QStringLiteral("details")) && !window.showDetails(arguments.value(QStringLiteral("details"))))
        return fail(
            1,
            tr("no object with the ID '%1'", "aucun objet d'ID '%1'").arg(arguments.value(QStringLiteral("details"))));
    window.show();

    if (!screenshot)
        return app.exec();
    // Let the layout settle and the fades end before the picture is taken.
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(60);
    }
    const QString file = arguments.value(QStringLiteral("screenshot"));
    if (!window.grab().save(file))
        return fail(1, tr("cannot write the screenshot '%1'", "impossible d'écrire la capture '%1'").arg(file));
    std::printf("%s\n", file.toUtf8().constData());
    return 0;
}
