#include "clicommand.h"

CliCommand::CliCommand(QObject* parent)
    : QObject(parent)
{ }

CliCommand::~CliCommand() = default;

QString CliCommand::helpText() const
{
    QStringList lines;
    lines << tr("Usage:", "Utilisation :") + QStringLiteral(" vndb ")
            + (name() + QLatin1Char(' ') + synopsis()).trimmed();
    lines << QString() << summary();
    if (!description().isEmpty())
        lines << QString() << description();
    QList<CliOption> all = options();
    all << CliOption{QStringLiteral("json"), QChar(), 0, QString(),
                     tr("print the result as JSON", "affiche le résultat en JSON")}
        << CliOption{QStringLiteral("lang"), QChar(), 1, QStringLiteral("en|fr"),
                     tr("language of the messages", "langue des messages")}
        << CliOption{QStringLiteral("help"), QLatin1Char('h'), 0, QString(),
                     tr("show this help", "affiche cette aide")};
    lines << QString() << tr("Options:", "Options :");
    for (const CliOption& option : qAsConst(all)) {
        QString left = QStringLiteral("  ");
        left += option.shortName.isNull() ? QStringLiteral("    ") : QStringLiteral("-%1, ").arg(option.shortName);
        left += QStringLiteral("--") + option.name;
        if (option.values > 0)
            left += QLatin1Char(' ') + option.valueName;
        // A long option keeps its own line so that the help texts stay in one column.
        if (left.size() >= 28)
            lines << left << QString(29, QLatin1Char(' ')) + option.help;
        else
            lines << left.leftJustified(28) + QLatin1Char(' ') + option.help;
    }
    return lines.join(QLatin1Char('\n'));
}
