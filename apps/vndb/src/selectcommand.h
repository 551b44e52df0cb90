#pragma once

#include "clicommand.h"

/// `vndb select`: the reference selector without its window. The selector
/// model is filled with the reference content, the controller is driven as
/// the widget would drive it (search text, filters, ticks), and the visible
/// tree is printed with its ticks. The selection is saved and loaded in the
/// selector's own XML form.
class SelectCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("select"); }
    QString synopsis() const override
    {
        return QStringLiteral("[--kind KIND]... [--search TEXT] [--filter LABEL=VALUE]... [--tick ID]... "
                              "[--save FILE] [--load FILE]");
    }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 0; }
    int maximumPositionals() const override { return 0; }
    int run(CliContext& context, const CliArguments& arguments) override;
};
