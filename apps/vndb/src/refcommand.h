#pragma once

#include "clicommand.h"

class ReferenceDatabases;
class VNObject2;
class VNToviDatabaseInterface;

/// `vndb ref ACTION ...`: the reference databases of a folder (delivered, user
/// and merged): made from the sample content, listed, searched, added to,
/// their aliases kept, and the merged one rebuilt. Changes go to the user's
/// database, and the merged one is brought up to date after them.
class RefCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("ref"); }
    QString synopsis() const override
    {
        return QStringLiteral("ACTION [ARGUMENTS] [--dir DIR] [--db delivered|user|merged]");
    }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 1; }
    int maximumPositionals() const override { return 6; }
    int run(CliContext& context, const CliArguments& arguments) override;

private:
    int init(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments);
    int list(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments);
    int show(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments);
    int add(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments);
    int alias(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments);
    int merge(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments);

    /// The object of any kind whose key is `key` in `db`, or null.
    static const VNObject2* findObject(VNToviDatabaseInterface* db, const QString& key, QString* kind);
};
