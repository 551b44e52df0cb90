#pragma once

#include "clicommand.h"

/// `vndb project list|check|sync DIR [--read-only]`: the analyses of a project
/// and its structure, through the project database as the application opens
/// it (database factory, project manager, module launcher).
class ProjectCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("project"); }
    QString synopsis() const override { return QStringLiteral("init|list|check|sync DIR [--read-only]"); }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;

private:
    int init(CliContext& context, const QString& dir);
    int list(CliContext& context, const QString& dir);
    int check(CliContext& context, const QString& dir, bool readOnly);
    int sync(CliContext& context, const QString& dir, bool readOnly, const QStringList& modules);
};
