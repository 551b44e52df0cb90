#include "cliapplication.h"

#include "clicommand.h"
#include "clicontext.h"

#include <tprogressbarmgr.h>
#include <ttranslator.h>

#include <QCoreApplication>

#include <cstdio>

CliApplication::CliApplication() = default;

CliApplication::~CliApplication()
{
    qDeleteAll(m_commands);
}

void CliApplication::addCommand(CliCommand* command)
{
    m_commands << command;
}

CliCommand* CliApplication::command(const QString& name) const
{
    for (CliCommand* command : m_commands) {
        if (command->name() == name)
            return command;
    }
    return nullptr;
}

QString CliApplication::helpText() const
{
    QStringList lines;
    lines << tr("vndb - projects, analyses and acquisition files of the geochemical database module",
                "vndb - projets, analyses et fichiers d'acquisition du module de base de données géochimique");
    lines << QString()
          << tr("Usage: vndb COMMAND [ARGUMENTS] [--lang en|fr] [--json]",
                "Utilisation : vndb COMMANDE [ARGUMENTS] [--lang en|fr] [--json]");
    lines << QString() << tr("Commands:", "Commandes :");
    for (const CliCommand* command : m_commands)
        lines << QStringLiteral("  ") + command->name().leftJustified(10) + QLatin1Char(' ') + command->summary();
    lines << QString()
          << tr("Each command explains itself with --help. Exit code 0 on success, 1 when the work is\n"
                "refused (the reason on one line), 2 when the command line is wrong.",
                "Chaque commande s'explique avec --help. Code de sortie 0 en cas de succès, 1 quand le travail\n"
                "est refusé (la raison sur une ligne), 2 quand la ligne de commande est erronée.");
    return lines.join(QLatin1Char('\n'));
}

int CliApplication::exec(const QStringList& input)
{
    // Global options may stand anywhere; they are taken out first so that the
    // language is set before any message is written.
    QStringList words;
    QString language = QStringLiteral("en");
    bool json = false;
    bool help = false;
    bool progress = true;
    QString languageError;
    for (int i = 0; i < input.size(); ++i) {
        const QString& word = input.at(i);
        if (word == QLatin1String("--lang") || word.startsWith(QLatin1String("--lang="))) {
            if (word == QLatin1String("--lang"))
                language = i + 1 < input.size() ? input.at(++i) : QString();
            else
                language = word.mid(7);
            if (language != QLatin1String("en") && language != QLatin1String("fr"))
                languageError = language;
        } else if (word == QLatin1String("--json")) {
            json = true;
        } else if (word == QLatin1String("--help") || word == QLatin1String("-h")) {
            help = true;
        } else if (word == QLatin1String("--no-progress")) {
            progress = false;
        } else {
            words << word;
        }
    }
    TTranslator::install(languageError.isNull() ? language : QStringLiteral("en"));
    CliContext context(json);
    if (!languageError.isNull())
        return context.usageError(
            tr("unknown language '%1' (en or fr)", "langue inconnue '%1' (en ou fr)").arg(languageError));

    if (words.value(0) == QLatin1String("--version")) {
        std::printf("vndb %s\n", qPrintable(QCoreApplication::applicationVersion()));
        return CliContext::Success;
    }
    if (words.isEmpty() || words.first() == QLatin1String("help")) {
        CliCommand* about = words.size() > 1 ? command(words.at(1)) : nullptr;
        const QString text = about ? about->helpText() : helpText();
        std::printf("%s\n", text.toUtf8().constData());
        return words.isEmpty() && !help ? CliContext::UsageError : CliContext::Success;
    }

    CliCommand* chosen = command(words.first());
    if (!chosen)
        return context.usageError(tr("unknown command '%1'", "commande inconnue '%1'").arg(words.first()));
    if (help) {
        std::printf("%s\n", chosen->helpText().toUtf8().constData());
        return CliContext::Success;
    }

    CliArguments arguments;
    QString error;
    if (!arguments.parse(words.mid(1), chosen->options(), &error))
        return context.usageError(error, chosen->name());
    const int count = arguments.positionals().size();
    if (count < chosen->minimumPositionals())
        return context.usageError(tr("missing arguments: vndb %1 %2", "arguments manquants : vndb %1 %2")
                                      .arg(chosen->name(), chosen->synopsis()),
                                  chosen->name());
    if (count > chosen->maximumPositionals())
        return context.usageError(tr("unexpected argument '%1'", "argument inattendu '%1'")
                                      .arg(arguments.positionals().at(chosen->maximumPositionals())),
                                  chosen->name());

    TProgressBarMgr::setTerminalOutput(progress && !json);
    const int code = chosen->run(context, arguments);
    if (code == CliContext::Success)
        context.flushProblems();
    return code;
}
