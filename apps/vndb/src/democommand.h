#pragma once

#include "clicommand.h"

#include <QJsonArray>

class CliContext;

/// `vndb demo [DIR]`: builds a sample workspace (sample instrument files, a
/// project with analyses imported from ANDI netCDF, CSV and an MS/MS run) and
/// walks through the main job on it, printing what each step did. Running it
/// again keeps what exists and redoes the walkthrough.
class DemoCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("demo"); }
    QString synopsis() const override { return QStringLiteral("[DIR]"); }
    QString summary() const override;
    QString description() const override;
    int minimumPositionals() const override { return 0; }
    int maximumPositionals() const override { return 1; }
    int run(CliContext& context, const CliArguments& arguments) override;

    static QString defaultFolder() { return QStringLiteral("vndb-demo"); }

private:
    // The steps, in order; each prints what it did and returns false (after
    // its refusal) to stop the walkthrough.
    bool makeInputs();
    bool importAnalyses();
    bool checkProject();
    bool showData();
    bool drawPlots();
    bool mergeReferences();
    bool searchReferences();
    bool interpret();

    void step(const QString& title);
    void say(const QString& line);

    CliContext* m_context = nullptr;
    QString m_root;
    QString m_project;
    int m_step = 0;
    int m_steps = 0;
    QJsonArray m_log;
    QString m_error;
};
