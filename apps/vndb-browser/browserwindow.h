#pragma once

#include <objectselectorctrl.h>
#include <objectselectormodel.h>

#include <QMainWindow>

class ObjectSelectorEditor;
class VNToviDatabaseInterface;

/// The merged reference database in the object selector: search line, quick filters,
/// custom filter lines, ticks and the details pane, as the application embeds
/// the selector. The window owns the model and the controller; the widget
/// belongs to the window.
class BrowserWindow : public QMainWindow
{
    Q_OBJECT
public:
    BrowserWindow(VNToviDatabaseInterface* database, const QStringList& kinds, QWidget* parent = nullptr);
    ~BrowserWindow() override;

    ObjectSelectorEditor* editor() const { return m_editor; }
    ObjectSelectorModel& model() { return m_model; }
    ObjectSelectorCtrl& controller() { return m_ctrl; }

    /// Types `text` in the search line, as a user would.
    void search(const QString& text);
    /// Ticks the object `id` and shows its details; false for an unknown id.
    bool tick(const QString& id);
    /// Shows the details of `id` without ticking it; false for an unknown id.
    bool showDetails(const QString& id);

private:
    ObjectSelectorModel m_model;
    ObjectSelectorCtrl m_ctrl;
    ObjectSelectorEditor* m_editor = nullptr;
};
