#pragma once

#include "clicommand.h"

class TAcquisitionRun;

/// `vndb import DIR FILE [--name NAME]`: an ANDI netCDF file, a text table or
/// an acquisition file becomes a new analysis of the project.
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

    /// Reads `file` and adds it to the project `dir` as `analysis`; false with
    /// a one-line reason, the project unchanged. The demo imports through this too.
    static bool importFile(const QString& dir, const QString& file, const QString& analysis, TAcquisitionRun* imported,
                           QString* format, QString* error);
};
