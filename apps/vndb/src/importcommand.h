#pragma once

#include "clicommand.h"

#include <QVector>

struct TImportedRun;

/// `vndb import DIR FILE [--name NAME]`: an instrument file or data folder that
/// the reader registry recognises becomes one new analysis per run it holds.
class ImportCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("import"); }
    QString synopsis() const override { return QStringLiteral("DIR FILE [--name NAME]"); }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;

    /// Reads `file` and adds its runs to the project `dir` as `analysis` + each
    /// run's suffix; false with a one-line reason, the project unchanged. The
    /// demo imports through this too.
    static bool importFile(const QString& dir, const QString& file, const QString& analysis,
                           QVector<TImportedRun>* imported, QString* format, QString* error);
    /// The analysis name a file or folder gives by default ("RUN" for "RUN.D/").
    static QString defaultName(const QString& file);
};
