#include "selectcommand.h"

#include "clicontext.h"
#include "referencedatabases.h"
#include "referenceselector.h"

#include <objectselectorctrl.h>
#include <objectselectoritem.h>
#include <objectselectormodel.h>
#include <txmlmethod.h>

#include <QDomDocument>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

QString SelectCommand::summary() const
{
    return tr("search, filter and tick the reference database in the object selector, without a window",
              "cherche, filtre et coche la base de référence dans le sélecteur d'objets, sans fenêtre");
}

QString SelectCommand::description() const
{
    return tr("Lists the merged reference database of the folder (--dir, else $TOVIDBDIR, else\n"
              "vndb-demo/reference; 'vndb ref init' makes one). KIND is compounds, parameters, joints or ions\n"
              "(all when absent). The search matches names (case-insensitive, anywhere in the name); a filter\n"
              "LABEL is one of the labels the selector shows (\"CAS\", \"Study type\", ...) or a stored key\n"
              "(\"formula\"); an empty VALUE asks only that the object has the property. IDs are printed beside\n"
              "the names (C:Pr, P:R001, I:m/z 191, ...). --load restores a selection saved by --save before the\n"
              "new ticks are added.",
              "Liste la base de référence fusionnée du dossier (--dir, sinon $TOVIDBDIR, sinon\n"
              "vndb-demo/reference ; 'vndb ref init' en crée une). KIND vaut compounds, parameters, joints ou\n"
              "ions (tous en son absence). La recherche porte sur les noms (sans distinction de casse, n'importe\n"
              "où dans le nom) ; le LABEL d'un filtre est l'un des libellés du sélecteur (\"CAS\", \"Type\n"
              "d'étude\", ...) ou une clé stockée (\"formula\") ; une VALUE vide demande seulement que l'objet ait\n"
              "la propriété. Les ID sont affichés à côté des noms (C:Pr, P:R001, I:m/z 191, ...). --load\n"
              "restaure une sélection enregistrée par --save avant d'ajouter les nouvelles coches.");
}

QList<CliOption> SelectCommand::options() const
{
    return {
        CliOption{QStringLiteral("kind"), QChar(), 1, QStringLiteral("KIND"),
                  tr("list this kind (repeatable)", "liste ce type (répétable)")},
        CliOption{QStringLiteral("search"), QChar(), 1, QStringLiteral("TEXT"),
                  tr("names containing TEXT", "noms contenant TEXT")},
        CliOption{QStringLiteral("filter"), QChar(), 1, QStringLiteral("LABEL=VALUE"),
                  tr("a filter on a property (repeatable)", "un filtre sur une propriété (répétable)")},
        CliOption{QStringLiteral("tick"), QChar(), 1, QStringLiteral("ID"),
                  tr("tick an object (repeatable)", "coche un objet (répétable)")},
        CliOption{QStringLiteral("save"), QChar(), 1, QStringLiteral("FILE"),
                  tr("save the ticks to FILE (XML)", "enregistre les coches dans FILE (XML)")},
        CliOption{QStringLiteral("load"), QChar(), 1, QStringLiteral("FILE"),
                  tr("restore the ticks saved in FILE", "restaure les coches enregistrées dans FILE")},
        CliOption{QStringLiteral("dir"), QChar(), 1, QStringLiteral("DIR"),
                  tr("folder of the reference databases (as for vndb ref)",
                     "dossier des bases de référence (comme pour vndb ref)")},
    };
}

int SelectCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QStringList kinds = arguments.values(QStringLiteral("kind"));
    for (const QString& kind : kinds) {
        if (!ReferenceSelector::kinds().contains(kind))
            return context.usageError(tr("unknown kind '%1' (%2)", "type inconnu '%1' (%2)")
                                          .arg(kind, ReferenceSelector::kinds().join(QStringLiteral(", "))),
                                      name());
    }
    QList<QPair<QString, QString>> filterValues;
    QString error;
    if (!arguments.keyValues(QStringLiteral("filter"), &filterValues, &error))
        return context.usageError(error, name());
    // The selector lists the merged reference database, as in the application.
    ReferenceDatabases databases;
    const QString folder = arguments.isSet(QStringLiteral("dir")) ? arguments.value(QStringLiteral("dir"))
                                                                  : ReferenceDatabases::defaultFolder();
    VNToviDatabaseInterface* merged = nullptr;
    if (!databases.open(folder, false, &error) || !(merged = databases.database(Sedra::DatabaseToviMerged, &error)))
        return context.refuse(error);

    ObjectSelectorModel model;
    ReferenceSelector::fill(model, merged, kinds, true);
    ObjectSelectorCtrl ctrl;
    ctrl.setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
    ctrl.setModel(&model);

    // Everything that can be refused is checked before anything is written.
    if (arguments.isSet(QStringLiteral("load"))) {
        const QString file = arguments.value(QStringLiteral("load"));
        QDomDocument document;
        QDomElement root;
        if (TXMLMethod::load(&document, file, false, false))
            root = document.documentElement();
        if (root.isNull() || !ctrl.load(root))
            return context.refuse(tr("'%1' holds no selector selection (version 2.0)",
                                     "'%1' ne contient pas de sélection du sélecteur (version 2.0)")
                                      .arg(file));
    }
    for (const QString& id : arguments.values(QStringLiteral("tick"))) {
        ObjectSelectorItemInterface* item = ReferenceSelector::find(model, id);
        if (!item || !item->isCheckable())
            return context.refuse(tr("no object with the ID '%1'", "aucun objet d'ID '%1'").arg(id));
        ctrl.toggleCheckRequested(item, true);
    }
    QStringList labels;
    model.visibleFilters(labels);
    QJsonObject filters;
    for (const auto& filter : qAsConst(filterValues)) {
        QString label = filter.first;
        const QString& value = filter.second;
        // A stored key is accepted for the label that shows it.
        if (!labels.contains(label) && !model.visibleFilterKey(label).isNull())
            label = model.visibleFilterKey(label);
        if (!labels.contains(label))
            return context.refuse(
                tr("unknown filter '%1'; the filters are: %2", "filtre inconnu '%1' ; les filtres sont : %2")
                    .arg(label, labels.join(QStringLiteral(", "))));
        ctrl.enableFilterRequested(label);
        ctrl.updateFilterRequested(label, value);
        filters.insert(label, value);
    }
    if (arguments.isSet(QStringLiteral("search")))
        ctrl.searchRequested(arguments.value(QStringLiteral("search")));
    else
        ctrl.searchWithFilterRequested();

    if (arguments.isSet(QStringLiteral("save"))) {
        const QString file = arguments.value(QStringLiteral("save"));
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("vndbSelection"));
        document.appendChild(root);
        if (!ctrl.save(root) || !TXMLMethod::save(&document, file, false, false))
            return context.refuse(
                tr("cannot write the selection to '%1'", "impossible d'écrire la sélection dans '%1'").arg(file));
    }

    // The visible tree: categories are always shown, objects when they match.
    QJsonArray categories;
    int shown = 0;
    int total = 0;
    QStringList ticked;
    for (ReferenceSelector::Node* category = model.root().getFirstSon(); category; category = category->getBrother()) {
        ObjectSelectorItemInterface* head = category->attribute;
        QJsonArray items;
        QStringList lines;
        for (ReferenceSelector::Node* node = category->getFirstSon(); node; node = node->getBrother()) {
            ObjectSelectorItemInterface* item = node->attribute;
            if (!item)
                continue;
            ++total;
            if (item->isChecked())
                ticked << item->id();
            if (!node->isVisible())
                continue;
            ++shown;
            lines << QStringLiteral("  [%1] %2  (%3)")
                         .arg(item->isChecked() ? QLatin1Char('x') : QLatin1Char(' '))
                         .arg(item->title(), item->id());
            QJsonObject entry;
            entry.insert(QStringLiteral("id"), item->id());
            entry.insert(QStringLiteral("title"), item->title());
            entry.insert(QStringLiteral("checked"), item->isChecked());
            items.append(entry);
        }
        context.print(QStringLiteral("%1 (%2)").arg(head ? head->title() : QString()).arg(items.size()));
        for (const QString& line : qAsConst(lines))
            context.print(line);
        QJsonObject entry;
        entry.insert(QStringLiteral("id"), head ? head->id() : QString());
        entry.insert(QStringLiteral("title"), head ? head->title() : QString());
        entry.insert(QStringLiteral("items"), items);
        categories.append(entry);
    }
    context.print(tr("%1 of %2 objects shown, %3 ticked", "%1 objets affichés sur %2, %3 coché(s)")
                      .arg(shown)
                      .arg(total)
                      .arg(ticked.size()));
    QJsonObject json;
    json.insert(QStringLiteral("categories"), categories);
    json.insert(QStringLiteral("shown"), shown);
    json.insert(QStringLiteral("total"), total);
    json.insert(QStringLiteral("ticked"), QJsonArray::fromStringList(ticked));
    json.insert(QStringLiteral("filters"), filters);
    context.printJson(json);
    return CliContext::Success;
}
