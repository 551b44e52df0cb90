#pragma once

#include "modulelauncherinterface.h"
#include "vnapplication_export.h"

#include <QHash>
#include <QObject>
#include <QStringList>

/// The default module launcher: it does not start programs itself, it keeps
/// the account of the modules that the application says are running. A module
/// started twice must be finished twice.
class VNAPPLICATION_EXPORT TModuleLauncher : public QObject, public ModuleLauncherInterface
{
    Q_OBJECT
public:
    /// With `install`, the launcher is the installed one while it lives.
    explicit TModuleLauncher(bool install = true, QObject* parent = nullptr);
    ~TModuleLauncher() override;

    bool isModuleInUse() const override;

    void moduleStarted(const QString& name);
    /// False when `name` was not running (nothing changes then).
    bool moduleFinished(const QString& name);
    /// The running modules, sorted, each once.
    QStringList runningModules() const;

signals:
    void moduleInUseChanged(bool inUse);

private:
    QHash<QString, int> m_running;
};
