#include "refcommand.h"

#include "clicontext.h"
#include "referencedatabases.h"

#include <ttovialias.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <ttoviratio.h>
#include <vnobject2tovi.h>
#include <vntovidatabaseinterface.h>

#include <QJsonArray>
#include <QJsonObject>

namespace {
// The name a person knows an object by: its master name when stored.
QString displayName(VNToviDatabaseInterface* db, const VNObject2* object)
{
    bool found = false;
    const Sedra::TProperty master = db->getObjectProperties(object, QStringLiteral("MasterName"), &found);
    return found && !master.value().isEmpty() ? master.value() : object->name();
}

QJsonObject properties(VNToviDatabaseInterface* db, const VNObject2* object)
{
    QJsonObject json;
    if (const QList<Sedra::TProperty>* list = db->getObjectProperties(object)) {
        for (const Sedra::TProperty& property : *list)
            json.insert(property.name(), property.value());
    }
    return json;
}

} // namespace

QString RefCommand::summary() const
{
    return tr("the reference databases: make, list, show, add, aliases, merge",
              "les bases de référence : créer, lister, afficher, ajouter, alias, fusionner");
}

QString RefCommand::description() const
{
    return tr("init [--sample FILE]             delivered database from the sample content, empty user\n"
              "                                 database, merged database; kept when they exist\n"
              "list KIND [--search T] [--filter KEY=VALUE]   KIND: compounds, parameters, ions, joints,\n"
              "                                 graphs, overlays\n"
              "show KEY                         every stored property of one object (key or name)\n"
              "add-compound NAME [--formula F] [--cas C] [--inchi I] [--key K]\n"
              "add-ion NAME VALUE | add-parameter ID NAME [--formula F] | add-joint COMPOUND ION\n"
              "alias add|update KEY FIELD VENDOR VALUE | alias delete KEY FIELD VENDOR\n"
              "alias delete-vendor VENDOR | alias vendors | alias list\n"
              "merge [--check]                  rebuild the merged database, or only say whether it is current\n"
              "The folder is --dir, else $TOVIDBDIR, else vndb-demo/reference. Lists read the merged database\n"
              "unless --db says otherwise; changes go to the user database (the delivered one is read-only for\n"
              "the user) and the merged one is rebuilt after them.",
              "init [--sample FILE]             base livrée depuis le contenu d'exemple, base utilisateur vide,\n"
              "                                 base fusionnée ; conservées si elles existent\n"
              "list KIND [--search T] [--filter CLÉ=VALEUR]  KIND : compounds, parameters, ions, joints,\n"
              "                                 graphs, overlays\n"
              "show CLÉ                         toutes les propriétés d'un objet (clé ou nom)\n"
              "add-compound NOM [--formula F] [--cas C] [--inchi I] [--key K]\n"
              "add-ion NOM VALEUR | add-parameter ID NOM [--formula F] | add-joint COMPOSÉ ION\n"
              "alias add|update CLÉ CHAMP FOURNISSEUR VALEUR | alias delete CLÉ CHAMP FOURNISSEUR\n"
              "alias delete-vendor FOURNISSEUR | alias vendors | alias list\n"
              "merge [--check]                  reconstruit la base fusionnée, ou dit seulement si elle est à jour\n"
              "Le dossier est --dir, sinon $TOVIDBDIR, sinon vndb-demo/reference. Les listes lisent la base\n"
              "fusionnée sauf indication de --db ; les modifications vont dans la base utilisateur (la base\n"
              "livrée est en lecture seule pour l'utilisateur) et la base fusionnée est reconstruite ensuite.");
}

QList<CliOption> RefCommand::options() const
{
    const auto option = [](const char* name, const char* value, const QString& help) {
        return CliOption{QLatin1String(name), QChar(), value ? 1 : 0, QLatin1String(value ? value : ""), help};
    };
    return {option("dir", "DIR", tr("folder of the reference databases", "dossier des bases de référence")),
            option("db", "delivered|user|merged", tr("which database", "quelle base")),
            option("search", "TEXT", tr("names containing TEXT", "noms contenant TEXT")),
            option("filter", "KEY=VALUE",
                   tr("a stored property containing VALUE (repeatable)", "une propriété contenant VALUE (répétable)")),
            option("sample", "FILE", tr("reference content for init", "contenu de référence pour init")),
            option("formula", "F",
                   tr("formula of a new compound or parameter", "formule d'un nouveau composé ou paramètre")),
            option("cas", "C", tr("CAS number of a new compound", "numéro CAS d'un nouveau composé")),
            option("inchi", "I", tr("InChI of a new compound", "InChI d'un nouveau composé")),
            option("key", "K",
                   tr("key of a new compound (default: its name)", "clé d'un nouveau composé (par défaut : son nom)")),
            option("check", nullptr,
                   tr("merge: only say whether the merged database is current",
                      "merge : dit seulement si la base fusionnée est à jour"))};
}

int RefCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QString action = arguments.positionals().at(0);
    static const QHash<QString, QPair<int, int>> words = {
        {QStringLiteral("init"), {1, 1}},      {QStringLiteral("list"), {2, 2}},
        {QStringLiteral("show"), {2, 2}},      {QStringLiteral("add-compound"), {2, 2}},
        {QStringLiteral("add-ion"), {3, 3}},   {QStringLiteral("add-parameter"), {3, 3}},
        {QStringLiteral("add-joint"), {3, 3}}, {QStringLiteral("alias"), {2, 6}},
        {QStringLiteral("merge"), {1, 1}},
    };
    if (!words.contains(action))
        return context.usageError(tr("unknown action '%1'", "action inconnue '%1'").arg(action), name());
    const int count = arguments.positionals().size();
    if (count < words.value(action).first || count > words.value(action).second)
        return context.usageError(
            tr("wrong number of arguments for 'ref %1'", "nombre d'arguments incorrect pour 'ref %1'").arg(action),
            name());
    const QString which = arguments.value(QStringLiteral("db"));
    if (!which.isNull() && ReferenceDatabases::typeOf(which) == Sedra::DatabaseUndefined)
        return context.usageError(
            tr("unknown database '%1' (delivered, user or merged)", "base inconnue '%1' (delivered, user ou merged)")
                .arg(which),
            name());

    ReferenceDatabases databases;
    QString error;
    const QString folder = arguments.isSet(QStringLiteral("dir")) ? arguments.value(QStringLiteral("dir"))
                                                                  : ReferenceDatabases::defaultFolder();
    if (!databases.open(folder, action == QLatin1String("init"), &error))
        return context.refuse(error);
    if (action == QLatin1String("init"))
        return init(context, databases, arguments);
    if (action == QLatin1String("list"))
        return list(context, databases, arguments);
    if (action == QLatin1String("show"))
        return show(context, databases, arguments);
    if (action == QLatin1String("alias"))
        return alias(context, databases, arguments);
    if (action == QLatin1String("merge"))
        return merge(context, databases, arguments);
    return add(context, databases, arguments);
}

int RefCommand::init(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments)
{
    QString error;
    if (!databases.database(Sedra::DatabaseToviUser, &error))
        return context.refuse(error);
    QJsonObject json;
    context.print(tr("Reference databases in %1", "Bases de référence dans %1").arg(databases.folder()));
    bool filled = false;
    if (!databases.fillDelivered(arguments.value(QStringLiteral("sample")), &filled, &error))
        return context.refuse(error);
    context.print(
        filled ? tr("  delivered: filled from the sample content", "  livrée : remplie depuis le contenu d'exemple")
               : tr("  delivered: kept", "  livrée : conservée"));
    json.insert(QStringLiteral("filled"), filled);
    if (!databases.merge(&error))
        return context.refuse(error);
    for (Sedra::DatabaseType type :
         {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
        VNToviDatabaseInterface* db = databases.database(type, &error);
        if (!db)
            return context.refuse(error);
        context.print(QStringLiteral("  %1 (%2): %3")
                          .arg(ReferenceDatabases::nameOf(type), ReferenceDatabases::fileName(type),
                               ReferenceDatabases::counts(db)));
        json.insert(ReferenceDatabases::nameOf(type), ReferenceDatabases::counts(db));
    }
    json.insert(QStringLiteral("folder"), databases.folder());
    context.printJson(json);
    return CliContext::Success;
}

int RefCommand::list(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments)
{
    const QString kind = arguments.positionals().at(1);
    if (!ReferenceDatabases::kinds().contains(kind))
        return context.usageError(tr("unknown kind '%1' (%2)", "type inconnu '%1' (%2)")
                                      .arg(kind, ReferenceDatabases::kinds().join(QStringLiteral(", "))),
                                  name());
    QList<QPair<QString, QString>> filters;
    QString filterError;
    if (!arguments.keyValues(QStringLiteral("filter"), &filters, &filterError))
        return context.usageError(filterError, name());
    const QString which
        = arguments.isSet(QStringLiteral("db")) ? arguments.value(QStringLiteral("db")) : QStringLiteral("merged");
    QString error;
    VNToviDatabaseInterface* db = databases.database(ReferenceDatabases::typeOf(which), &error);
    if (!db)
        return context.refuse(error);
    const QString search = arguments.value(QStringLiteral("search"));
    const QList<const VNObject2*> objects = ReferenceDatabases::objectsOf(db, kind);
    QJsonArray items;
    for (const VNObject2* object : objects) {
        const QString shown = displayName(db, object);
        if (!search.isEmpty() && !shown.contains(search, Qt::CaseInsensitive))
            continue;
        bool matches = true;
        for (const auto& filter : qAsConst(filters)) {
            bool found = false;
            const Sedra::TProperty property = db->getObjectProperties(object, filter.first, &found);
            matches = matches && found && property.value().contains(filter.second, Qt::CaseInsensitive);
        }
        if (!matches)
            continue;
        context.print(QStringLiteral("  %1  %2").arg(object->key(), -12).arg(shown));
        QJsonObject entry;
        entry.insert(QStringLiteral("key"), object->key());
        entry.insert(QStringLiteral("name"), shown);
        entry.insert(QStringLiteral("properties"), properties(db, object));
        items.append(entry);
    }
    context.print(tr("%1 of %2 %3 in the %4 database", "%1 sur %2 %3 dans la base %4")
                      .arg(items.size())
                      .arg(objects.size())
                      .arg(kind, which));
    QJsonObject json;
    json.insert(QStringLiteral("database"), which);
    json.insert(QStringLiteral("kind"), kind);
    json.insert(QStringLiteral("total"), objects.size());
    json.insert(QStringLiteral("items"), items);
    context.printJson(json);
    return CliContext::Success;
}

const VNObject2* RefCommand::findObject(VNToviDatabaseInterface* db, const QString& key, QString* kind)
{
    const QList<QPair<QString, const VNObject2*>> candidates = {
        {QStringLiteral("compound"), db->getCompound(key)},
        {QStringLiteral("parameter"), db->getRatio(key)},
        {QStringLiteral("ion"), db->getEIC(key)},
        {QStringLiteral("joint"), db->getJoint(key)},
        {QStringLiteral("compound"), db->getCompoundByName(key)},
        {QStringLiteral("parameter"), db->getRatioByMasterName(key)},
        {QStringLiteral("ion"), db->getEICByName(key)},
    };
    for (const auto& candidate : candidates) {
        if (candidate.second) {
            *kind = candidate.first;
            return candidate.second;
        }
    }
    return nullptr;
}

int RefCommand::show(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments)
{
    const QString key = arguments.positionals().at(1);
    const QString which
        = arguments.isSet(QStringLiteral("db")) ? arguments.value(QStringLiteral("db")) : QStringLiteral("merged");
    QString error;
    VNToviDatabaseInterface* db = databases.database(ReferenceDatabases::typeOf(which), &error);
    if (!db)
        return context.refuse(error);
    QString kind;
    const VNObject2* object = findObject(db, key, &kind);
    if (!object)
        return context.refuse(
            tr("no object '%1' in the %2 reference database", "aucun objet '%1' dans la base de référence %2")
                .arg(key, which));
    context.print(QStringLiteral("%1 %2: %3").arg(kind, object->key(), displayName(db, object)));
    const QJsonObject stored = properties(db, object);
    for (auto it = stored.begin(); it != stored.end(); ++it)
        context.print(QStringLiteral("  %1: %2").arg(it.key(), it.value().toString()));
    QJsonArray aliases;
    for (const Sedra::TToviAlias* alias : db->getAllAlias()) {
        const auto* tovi = dynamic_cast<const VNObject2Tovi*>(object);
        if (!tovi || db->getAlias(tovi, alias->getField(), alias->getVendor()) != alias)
            continue;
        context.print(tr("  alias %1 (%2): %3", "  alias %1 (%2) : %3")
                          .arg(alias->getField(), alias->getVendor(), alias->getValue()));
        QJsonObject entry;
        entry.insert(QStringLiteral("field"), alias->getField());
        entry.insert(QStringLiteral("vendor"), alias->getVendor());
        entry.insert(QStringLiteral("value"), alias->getValue());
        aliases.append(entry);
    }
    QJsonObject json;
    json.insert(QStringLiteral("kind"), kind);
    json.insert(QStringLiteral("key"), object->key());
    json.insert(QStringLiteral("name"), displayName(db, object));
    json.insert(QStringLiteral("properties"), stored);
    json.insert(QStringLiteral("aliases"), aliases);
    context.printJson(json);
    return CliContext::Success;
}

int RefCommand::add(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments)
{
    const QString action = arguments.positionals().at(0);
    const QString which
        = arguments.isSet(QStringLiteral("db")) ? arguments.value(QStringLiteral("db")) : QStringLiteral("user");
    if (which != QLatin1String("user"))
        return context.refuse(
            tr("the %1 reference database cannot be changed; changes go to the user database",
               "la base de référence %1 ne peut pas être modifiée ; les modifications vont dans la base utilisateur")
                .arg(which));
    QString error;
    VNToviDatabaseInterface* user = databases.database(Sedra::DatabaseToviUser, &error);
    VNToviDatabaseInterface* merged = databases.database(Sedra::DatabaseToviMerged, &error);
    if (!user || !merged)
        return context.refuse(error);
    const QString first = arguments.positionals().at(1);
    const QString second = arguments.positionals().value(2);
    QString made;
    // Everything is checked against the merged database first: a name that the
    // delivered content already has would otherwise come twice.
    if (action == QLatin1String("add-compound")) {
        Sedra::TToviCompound model;
        model.setFormula(arguments.value(QStringLiteral("formula")));
        model.setCas(arguments.value(QStringLiteral("cas")));
        model.setInChI(arguments.value(QStringLiteral("inchi")));
        made = databases.addCompound(first, arguments.value(QStringLiteral("key")), &model, &error);
        if (made.isEmpty())
            return context.refuse(error);
    } else if (action == QLatin1String("add-ion")) {
        if (merged->getEICByName(first) || user->getEICByName(first))
            return context.refuse(tr("ion '%1' exists already", "l'ion '%1' existe déjà").arg(first));
        double value = 0.0;
        if (!CliArguments::toNumber(second, &value) || value <= 0.0)
            return context.refuse(tr("'%1' is not a mass", "'%1' n'est pas une masse").arg(second));
        const Sedra::TToviEIC* ion = user->createEIC(first, second);
        if (!ion)
            return context.refuse(tr("ion '%1' cannot be added", "l'ion '%1' ne peut pas être ajouté").arg(first));
        made = ion->key();
    } else if (action == QLatin1String("add-parameter")) {
        if (merged->getRatio(first) || user->getRatio(first))
            return context.refuse(tr("parameter '%1' exists already", "le paramètre '%1' existe déjà").arg(first));
        const QString formula
            = arguments.isSet(QStringLiteral("formula")) ? arguments.value(QStringLiteral("formula")) : second;
        const Sedra::TToviRatio* ratio = user->createRatio(first, second, second, formula, 9999, QString(), QString(),
                                                           QString(), QString(), QString(), QString());
        if (!ratio)
            return context.refuse(
                tr("parameter '%1' cannot be added", "le paramètre '%1' ne peut pas être ajouté").arg(first));
        made = ratio->key();
    } else if (action == QLatin1String("add-joint")) {
        // A joint ties a compound and an ion of the same database.
        const VNObject2* compound
            = user->getCompound(first) ? user->getCompound(first) : user->getCompoundByName(first);
        const VNObject2* ion = user->getEIC(second) ? user->getEIC(second) : user->getEICByName(second);
        if (!compound)
            return context.refuse(
                tr("compound '%1' is not in the user database", "le composé '%1' n'est pas dans la base utilisateur")
                    .arg(first));
        if (!ion)
            return context.refuse(
                tr("ion '%1' is not in the user database", "l'ion '%1' n'est pas dans la base utilisateur")
                    .arg(second));
        if (user->getJoint(compound->key(), ion->key()))
            return context.refuse(
                tr("joint %1 / %2 exists already", "la jointure %1 / %2 existe déjà").arg(first, second));
        const Sedra::TToviJoint* joint = user->createJoint(
            compound->key(), ion->key(), QStringLiteral("%1 / %2").arg(compound->name(), ion->name()));
        if (!joint)
            return context.refuse(
                tr("joint %1 / %2 cannot be added", "la jointure %1 / %2 ne peut pas être ajoutée").arg(first, second));
        made = joint->key();
    }
    if (!databases.userChanged(&error))
        return context.refuse(error);
    context.print(tr("%1 added to the user database; merged database rebuilt (%2)",
                     "%1 ajouté à la base utilisateur ; base fusionnée reconstruite (%2)")
                      .arg(made, ReferenceDatabases::counts(databases.database(Sedra::DatabaseToviMerged, &error))));
    QJsonObject json;
    json.insert(QStringLiteral("key"), made);
    context.printJson(json);
    return CliContext::Success;
}

int RefCommand::alias(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments)
{
    const QStringList words = arguments.positionals().mid(1);
    const QString action = words.value(0);
    QString error;
    const bool reading = action == QLatin1String("vendors") || action == QLatin1String("list");
    const QString which = arguments.isSet(QStringLiteral("db"))
        ? arguments.value(QStringLiteral("db"))
        : (reading ? QStringLiteral("merged") : QStringLiteral("user"));
    if (!reading && which != QLatin1String("user"))
        return context.refuse(
            tr("the %1 reference database cannot be changed; changes go to the user database",
               "la base de référence %1 ne peut pas être modifiée ; les modifications vont dans la base utilisateur")
                .arg(which));
    VNToviDatabaseInterface* db = databases.database(ReferenceDatabases::typeOf(which), &error);
    if (!db)
        return context.refuse(error);
    QJsonObject json;
    if (action == QLatin1String("vendors")) {
        const QStringList vendors = db->getAliasVendors();
        for (const QString& vendor : vendors)
            context.print(vendor);
        json.insert(QStringLiteral("vendors"), QJsonArray::fromStringList(vendors));
        context.printJson(json);
        return CliContext::Success;
    }
    if (action == QLatin1String("list")) {
        QJsonArray list;
        for (const Sedra::TToviAlias* alias : db->getAllAlias()) {
            context.print(QStringLiteral("  %1  %2 (%3): %4")
                              .arg(alias->name(), alias->getField(), alias->getVendor(), alias->getValue()));
            QJsonObject entry;
            entry.insert(QStringLiteral("key"), alias->key());
            entry.insert(QStringLiteral("field"), alias->getField());
            entry.insert(QStringLiteral("vendor"), alias->getVendor());
            entry.insert(QStringLiteral("value"), alias->getValue());
            list.append(entry);
        }
        json.insert(QStringLiteral("aliases"), list);
        context.printJson(json);
        return CliContext::Success;
    }
    const QHash<QString, int> counts = {{QStringLiteral("add"), 5},
                                        {QStringLiteral("update"), 5},
                                        {QStringLiteral("delete"), 4},
                                        {QStringLiteral("delete-vendor"), 2}};
    if (!counts.contains(action) || words.size() != counts.value(action))
        return context.usageError(
            tr("alias: add|update KEY FIELD VENDOR VALUE, delete KEY FIELD VENDOR, delete-vendor VENDOR, vendors, list",
               "alias : add|update CLÉ CHAMP FOURNISSEUR VALEUR, delete CLÉ CHAMP FOURNISSEUR, delete-vendor "
               "FOURNISSEUR, vendors, list"),
            name());
    bool done = false;
    if (action == QLatin1String("delete-vendor")) {
        if (!db->getAliasVendors().contains(words.at(1)))
            return context.refuse(tr("no alias of vendor '%1' in the user database",
                                     "aucun alias du fournisseur '%1' dans la base utilisateur")
                                      .arg(words.at(1)));
        done = db->aliasDeleteByVendor(words.at(1));
    } else {
        QString kind;
        const auto* object = dynamic_cast<const VNObject2Tovi*>(findObject(db, words.at(1), &kind));
        if (!object)
            return context.refuse(tr("no object '%1' in the user reference database",
                                     "aucun objet '%1' dans la base de référence utilisateur")
                                      .arg(words.at(1)));
        const QString field = words.at(2);
        const QString vendor = words.at(3);
        const bool exists = db->getAlias(object, field, vendor) != nullptr;
        if (action == QLatin1String("add")) {
            if (exists)
                return context.refuse(tr("the alias %1 of %2 for %3 exists already (alias update changes it)",
                                         "l'alias %1 de %2 pour %3 existe déjà (alias update le modifie)")
                                          .arg(field, words.at(1), vendor));
            done = db->aliasCreate(object, field, vendor, words.at(4)) != nullptr;
        } else if (!exists) {
            return context.refuse(
                tr("no alias %1 of %2 for %3", "aucun alias %1 de %2 pour %3").arg(field, words.at(1), vendor));
        } else if (action == QLatin1String("update")) {
            done = db->aliasUpdate(object, field, vendor, words.at(4));
        } else {
            done = db->aliasDeleteSingleItem(object, field, vendor);
        }
    }
    if (!done)
        return context.refuse(tr("the alias cannot be changed", "l'alias ne peut pas être modifié"));
    if (!databases.userChanged(&error))
        return context.refuse(error);
    context.print(
        tr("alias %1 done; merged database rebuilt", "alias %1 fait ; base fusionnée reconstruite").arg(action));
    json.insert(QStringLiteral("done"), action);
    context.printJson(json);
    return CliContext::Success;
}

int RefCommand::merge(CliContext& context, ReferenceDatabases& databases, const CliArguments& arguments)
{
    QString error;
    QJsonObject json;
    if (arguments.isSet(QStringLiteral("check"))) {
        // The merged database holds every object of both sources.
        const int missing = databases.missingFromMerged(&error);
        VNToviDatabaseInterface* merged = missing < 0 ? nullptr : databases.database(Sedra::DatabaseToviMerged, &error);
        if (!merged)
            return context.refuse(error);
        json.insert(QStringLiteral("current"), missing == 0);
        json.insert(QStringLiteral("missing"), missing);
        context.printJson(json);
        if (missing > 0)
            return context.refuse(
                tr("the merged reference database lacks %1 objects of the delivered and user ones (vndb ref merge)",
                   "la base de référence fusionnée n'a pas %1 objets des bases livrée et utilisateur (vndb ref merge)")
                    .arg(missing));
        context.print(
            tr("The merged reference database is current: %1", "La base de référence fusionnée est à jour : %1")
                .arg(ReferenceDatabases::counts(merged)));
        return CliContext::Success;
    }
    if (!databases.merge(&error))
        return context.refuse(error);
    // A rebuild replaces the merged database: it is fetched again.
    VNToviDatabaseInterface* merged = databases.database(Sedra::DatabaseToviMerged, &error);
    if (!merged)
        return context.refuse(error);
    context.print(tr("Merged: %1", "Fusionnée : %1").arg(ReferenceDatabases::counts(merged)));
    json.insert(QStringLiteral("merged"), ReferenceDatabases::counts(merged));
    context.printJson(json);
    return CliContext::Success;
}
