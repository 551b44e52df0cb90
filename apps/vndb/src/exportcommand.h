#pragma once

#include "clicommand.h"

/// `vndb export DIR ANALYSIS -o FILE`: the measured data of an analysis written
/// in an interchange format that the extension of FILE chooses (the writer list
/// of the file-format library: .cdf ANDI netCDF, .mzML, .mzXML).
class ExportCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("export"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS -o FILE"); }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;
};
