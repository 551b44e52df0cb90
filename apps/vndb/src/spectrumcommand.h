#pragma once

#include "clicommand.h"

/// `vndb spectrum DIR ANALYSIS FIRST [LAST]`: the spectrum of one scan or the
/// mean spectrum of a range of scans.
class SpectrumCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("spectrum"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS FIRST [LAST]"); }
    QString summary() const override;
    QString description() const override;
    int minimumPositionals() const override { return 3; }
    int maximumPositionals() const override { return 4; }
    int run(CliContext& context, const CliArguments& arguments) override;

    /// Reads FIRST and LAST (LAST defaults to FIRST); false with a translated reason.
    static bool readScans(const QString& firstText, const QString& lastText, int* first, int* last, QString* error);
};
