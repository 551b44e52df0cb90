// Reference databases at scale, through the module (VNDatabaseTovi and the
// merged database). Sizes are divided by the first argument (default 1):
//   delivered: 20,000 compounds of 14 properties, 2,000 parameters, 5,000 aliases;
//   user: 5,000 compounds with 10,000 aliases, 1,000 parameters, 200 graphs
//   with 3 overlays each.
//
// Each step is printed beside a baseline timed in the same run:
// 1. creating the delivered content (one batch); baseline: the same rows
//    inserted with prepared statements in one transaction (target: 3x);
// 2. opening the delivered database and answering a first look-up
//    (target: under 1 s; printed also against reading the raw rows of step 1
//    with two prepared statements, the floor on this machine), then look-ups
//    by key and by name (target: under 5 microseconds each); baseline: the
//    same keys in a QHash;
// 3. importing every compound and alias of the delivered database into
//    another one (importObjectsByType); baseline: step 1's (target: 5x);
// 4. a full synchronisation of the merged database; baseline: the file copy
//    plus the user's rows inserted raw into it (target: 5x); then a
//    synchronisation when current (target: under 100 ms).
#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <tapplicationdata.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <ttovibatch.h>
#include <ttovicompound.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vndatabasetovimgr.h>
#include <vndatamodelgraph.h>
#include <vndatamodeloverlay.h>
#include <vngraphdocument.h>
#include <vnobject2tovi.h>
#include <vnobject2tovigraph.h>
#include <vnobjecttype.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <cstdio>
#include <memory>

namespace {

class QuietLogger : public MessageLoggerInterface
{
public:
    void log(Level level, const QString& message) override
    {
        if (level >= LevelWarning)
            std::printf("!! %s\n", qPrintable(message));
    }
};

struct Sizes
{
    int compounds;
    int parameters;
    int aliases;
    int userCompounds;
    int userAliases;
    int userParameters;
    int graphs;
};

VNDatabaseTovi* makeTovi(Sedra::DatabaseType type)
{
    VNDatabaseFactory factory;
    auto* db = qobject_cast<VNDatabaseTovi*>(factory.createDatabase(Sedra::DatabaseType(type)));
    if (db)
        db->loadDatabase();
    return db;
}

// The twelve properties of a compound besides its identifier and master name.
QList<Sedra::TProperty> compoundProperties(int i)
{
    const QString n = QString::number(i);
    return {Sedra::TProperty(QStringLiteral("InChI"), QStringLiteral("InChI=1S/C19H40/c1-16(2)10-7-11-") + n),
            Sedra::TProperty(QStringLiteral("InChIKey"), QStringLiteral("XOJVVFBFDXDTEG-UHFFFAOYSA-") + n),
            Sedra::TProperty(QStringLiteral("formula"), QStringLiteral("C19H40")),
            Sedra::TProperty(QStringLiteral("CAS"), QStringLiteral("1921-70-") + n),
            Sedra::TProperty(QStringLiteral("family"), QStringLiteral("Isoprenoids")),
            Sedra::TProperty(QStringLiteral("carbons"), QString::number(10 + i % 30)),
            Sedra::TProperty(QStringLiteral("ORL_Name"), QStringLiteral("pristane ") + n),
            Sedra::TProperty(QStringLiteral("AnalysisType"), QStringLiteral("GC-MS")),
            Sedra::TProperty(QStringLiteral("StudyType"), QStringLiteral("Source")),
            Sedra::TProperty(QStringLiteral("ExpectedIons"), QStringLiteral("57;71;85")),
            Sedra::TProperty(QStringLiteral("FamilyName"), QStringLiteral("Acyclic isoprenoids")),
            Sedra::TProperty(QStringLiteral("Comment"), QStringLiteral("bench compound ") + n)};
}

// Fills `db` in one batch: compounds, parameters, then aliases spread over
// the compounds.
void fill(VNDatabaseTovi* db, const QString& prefix, int compounds, int parameters, int aliases)
{
    Sedra::TToviBatch batch(db);
    QList<const VNObject2Tovi*> made;
    made.reserve(compounds);
    for (int i = 0; i < compounds; ++i) {
        Sedra::TToviCompound model;
        model.setProperties(compoundProperties(i));
        model.setMasterName(prefix + QStringLiteral("compound ") + QString::number(i));
        model.setToviKey(prefix + QStringLiteral("K") + QString::number(i));
        if (Sedra::TToviCompound* c = db->createCompound(&model, prefix + QString::number(i)))
            made.append(dynamic_cast<const VNObject2Tovi*>(c->object()));
    }
    for (int i = 0; i < parameters; ++i) {
        const QString name = prefix + QStringLiteral("Pr/Ph ") + QString::number(i);
        db->createRatio(prefix + QStringLiteral("R") + QString::number(i), name, name, QStringLiteral("Pr/Ph"), i,
                        QStringLiteral("Redox"), QStringLiteral("GC"), QStringLiteral("Peak area ratio"),
                        QStringLiteral("Isoprenoids"), QStringLiteral("57"), QStringLiteral("Didyk et al. 1978"));
    }
    for (int i = 0; i < aliases && !made.isEmpty(); ++i) {
        db->aliasCreate(made.at(i % made.size()), QStringLiteral("name"),
                        QStringLiteral("Vendor ") + QString::number(i / made.size()),
                        QStringLiteral("alias ") + QString::number(i));
    }
    batch.commit();
}

// The baseline: the same number of rows and properties inserted with
// statements prepared once, in one transaction, into `db`.
void rawInsert(QSqlDatabase& db, const QString& prefix, int compounds, int parameters, int aliases)
{
    db.transaction();
    QSqlQuery object(db);
    object.prepare(QStringLiteral("INSERT INTO objects (type, key, name, parent_type, parent, path) "
                                  "VALUES (?, ?, ?, ?, ?, ?)"));
    QSqlQuery property(db);
    property.prepare(QStringLiteral("INSERT INTO properties (object, name, value, position) VALUES (?, ?, ?, ?)"));
    auto insert = [&](int type, const QString& key, const QString& name, int parentType, const QString& parent,
                      const QList<Sedra::TProperty>& properties) {
        object.addBindValue(type);
        object.addBindValue(key);
        object.addBindValue(name);
        object.addBindValue(parentType);
        object.addBindValue(parent);
        object.addBindValue(QString(QLatin1String("")));
        object.exec();
        const qint64 id = object.lastInsertId().toLongLong();
        int position = 0;
        for (const Sedra::TProperty& p : properties) {
            property.addBindValue(id);
            property.addBindValue(p.name());
            property.addBindValue(p.value());
            property.addBindValue(position++);
            property.exec();
        }
    };
    for (int i = 0; i < compounds; ++i) {
        QList<Sedra::TProperty> properties = compoundProperties(i);
        properties.prepend(Sedra::TProperty(QStringLiteral("MasterName"), QStringLiteral("compound")));
        properties.prepend(Sedra::TProperty(QStringLiteral("Compound ID"), prefix + QString::number(i)));
        insert(VNObjectTypeCompound, prefix + QString::number(i), QStringLiteral("compound"), 0, QString(), properties);
    }
    for (int i = 0; i < parameters; ++i) {
        QList<Sedra::TProperty> properties;
        for (int p = 0; p < 11; ++p)
            properties.append(Sedra::TProperty(QStringLiteral("P") + QString::number(p), QStringLiteral("Pr/Ph")));
        insert(VNObjectTypeRatio, prefix + QStringLiteral("R") + QString::number(i), QStringLiteral("Pr/Ph"), 0,
               QString(), properties);
    }
    for (int i = 0; i < aliases; ++i) {
        insert(VNObjectTypeAlias, prefix + QStringLiteral("A") + QString::number(i), QStringLiteral("Vendor"),
               VNObjectTypeCompound, prefix + QString::number(i % qMax(1, compounds)),
               {Sedra::TProperty(QStringLiteral("field"), QStringLiteral("name")),
                Sedra::TProperty(QStringLiteral("vendor"), QStringLiteral("Vendor")),
                Sedra::TProperty(QStringLiteral("value"), QStringLiteral("alias ") + QString::number(i))});
    }
    db.commit();
}

QSqlDatabase rawDatabase(const QString& file, const QString& name, bool create)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(file);
    db.open();
    if (create) {
        QSqlQuery(db).exec(QStringLiteral("CREATE TABLE objects (id INTEGER PRIMARY KEY AUTOINCREMENT, type INTEGER, "
                                          "key TEXT, name TEXT, parent_type INTEGER, parent TEXT, path TEXT, "
                                          "UNIQUE (type, key))"));
        QSqlQuery(db).exec(QStringLiteral("CREATE TABLE properties (object INTEGER, name TEXT, value TEXT, "
                                          "position INTEGER, PRIMARY KEY (object, name))"));
    }
    return db;
}

QString registeredFile(VNDatabaseToviMGR* manager, int type)
{
    auto* db = dynamic_cast<VNDatabaseTovi*>(manager->db(type));
    return db && db->getConnector() ? db->getConnector()->getDbFilename() : QString();
}

double ms(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

void line(const char* what, double value, double baseline, const char* target)
{
    std::printf("%-48s %10.1f ms   baseline %10.1f ms   ratio %5.2f   (%s)\n", what, value, baseline,
                baseline > 0 ? value / baseline : 0.0, target);
}

// The floor of opening: every row of the raw file of step 1 read with two
// prepared statements into a hash of property lists by object.
double rawRead(const QString& file)
{
    QElapsedTimer timer;
    timer.start();
    QHash<qint64, QList<Sedra::TProperty>> read;
    {
        QSqlDatabase db = rawDatabase(file, QStringLiteral("rawread"), false);
        QSqlQuery objects(db);
        objects.prepare(QStringLiteral("SELECT id, type, key, name, parent_type, parent, path FROM objects"));
        objects.exec();
        while (objects.next())
            read.insert(objects.value(0).toLongLong(),
                        {Sedra::TProperty(objects.value(2).toString(), objects.value(3).toString())});
        QSqlQuery properties(db);
        properties.prepare(QStringLiteral("SELECT object, name, value FROM properties ORDER BY object, position"));
        properties.exec();
        while (properties.next())
            read[properties.value(0).toLongLong()].append(
                Sedra::TProperty(properties.value(1).toString(), properties.value(2).toString()));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("rawread"));
    return read.isEmpty() ? 0 : ms(timer);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int divisor = qMax(1, argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 1);
    const Sizes s{20000 / divisor, 2000 / divisor, 5000 / divisor,        5000 / divisor,
                  10000 / divisor, 1000 / divisor, qMax(1, 200 / divisor)};
    QuietLogger logger;
    MessageLoggerInterface* previous = MessageLoggerInterface::setDefault(&logger);
    QTemporaryDir dir;
    TApplicationData data;
    data.setValue(QStringLiteral("TOVIDBDIR"), dir.filePath(QStringLiteral("tovi")));
    VNDatabaseFactory factory;
    DatabaseFactoryInterface::install(&factory);
    QElapsedTimer timer;

    std::printf("delivered: %d compounds, %d parameters, %d aliases; user: %d compounds, %d aliases, "
                "%d parameters, %d graphs x 3 overlays\n",
                s.compounds, s.parameters, s.aliases, s.userCompounds, s.userAliases, s.userParameters, s.graphs);

    // 1. Creation.
    double rawCreate = 0;
    {
        QSqlDatabase raw = rawDatabase(dir.filePath(QStringLiteral("raw.sqlite")), QStringLiteral("raw"), true);
        timer.start();
        rawInsert(raw, QStringLiteral("ORL-"), s.compounds, s.parameters, s.aliases);
        rawCreate = ms(timer);
        raw.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("raw"));
    double create = 0;
    {
        std::unique_ptr<VNDatabaseTovi> delivered(makeTovi(Sedra::DatabaseToviDelivered));
        timer.start();
        fill(delivered.get(), QStringLiteral("ORL-"), s.compounds, s.parameters, s.aliases);
        create = ms(timer);
    }
    line("1. create delivered content", create, rawCreate, "target 3x");

    // 2. Opening and look-ups.
    {
        const double rawOpen = rawRead(dir.filePath(QStringLiteral("raw.sqlite")));
        timer.start();
        std::unique_ptr<VNDatabaseTovi> delivered(makeTovi(Sedra::DatabaseToviDelivered));
        const VNObject2* first = delivered->getCompound(QStringLiteral("ORL-0"));
        const double open = ms(timer);
        std::printf("%-48s %10.1f ms   %s   (target under 1000 ms)\n", "2. open + first look-up", open,
                    first ? "found" : "NOT FOUND");
        line("   the same, against reading the raw rows", open, rawOpen, "how far from the floor");
        QStringList keys;
        QStringList names;
        QHash<QString, int> hash;
        for (int i = 0; i < s.compounds; ++i) {
            keys.append(QStringLiteral("ORL-") + QString::number(i));
            names.append(QStringLiteral("ORL-compound ") + QString::number(i));
            hash.insert(keys.last(), i);
        }
        int found = 0;
        timer.start();
        for (const QString& key : keys)
            found += delivered->getCompound(key) ? 1 : 0;
        const double byKey = ms(timer);
        timer.start();
        for (const QString& name : names)
            found += delivered->getCompoundByName(name) ? 1 : 0;
        const double byName = ms(timer);
        timer.start();
        for (const QString& key : keys)
            found += hash.contains(key) ? 1 : 0;
        const double inHash = ms(timer);
        const double n = qMax(1, s.compounds);
        std::printf("%-48s %10.3f us   by name %.3f us   QHash %.3f us   (%d found; target under 5 us)\n",
                    "   look-up by key, each", byKey * 1000 / n, byName * 1000 / n, inHash * 1000 / n, found);
    }

    // 3. Import of every compound and alias into another database.
    {
        std::unique_ptr<VNDatabaseTovi> delivered(makeTovi(Sedra::DatabaseToviDelivered));
        data.setValue(QStringLiteral("TOVIDBDIR"), dir.filePath(QStringLiteral("other")));
        std::unique_ptr<VNDatabaseTovi> other(makeTovi(Sedra::DatabaseToviMerged));
        data.setValue(QStringLiteral("TOVIDBDIR"), dir.filePath(QStringLiteral("tovi")));
        timer.start();
        other->importObjectsByType(delivered.get(), VNObjectTypeCompound);
        const double import = ms(timer);
        line("3. import compounds with their aliases", import, rawCreate, "target 5x");
        std::printf("   imported %d compounds, %d aliases\n", int(other->getAllCompounds().size()),
                    int(other->getAllAlias().size()));
    }

    // 4. Merged database.
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    manager->setDb(makeTovi(Sedra::DatabaseToviDelivered));
    VNDatabaseTovi* user = makeTovi(Sedra::DatabaseToviUser);
    manager->setDb(user);
    manager->setDb(makeTovi(Sedra::DatabaseToviMerged));
    fill(user, QStringLiteral("USR-"), s.userCompounds, s.userParameters, s.userAliases);
    for (int g = 0; g < s.graphs; ++g) {
        VNDataModelGraph model(Plavo::VIEW_ORTHOGONAL);
        model.setToVIName(QStringLiteral("graph ") + QString::number(g));
        model.setAxisKey(0, QStringLiteral("USR-R0"));
        model.setAxisKey(1, QStringLiteral("USR-R1"));
        const QDomDocument document = VNGraphDocument::create(model);
        const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(user->createGraph(&model, document));
        for (int o = 0; graph && o < 3; ++o) {
            VNDataModelOverlay overlay;
            overlay.setToVIName(QStringLiteral("zone ") + QString::number(o));
            user->overlayCreate(graph, &overlay, document);
        }
    }
    const QString deliveredFile = registeredFile(manager, 7);
    const QString userFile = registeredFile(manager, 9);

    double baseline = 0;
    {
        const QString copy = dir.filePath(QStringLiteral("baseline.sqlite"));
        timer.start();
        QFile::copy(deliveredFile, copy);
        {
            QSqlDatabase from = rawDatabase(userFile, QStringLiteral("from"), false);
            QSqlDatabase to = rawDatabase(copy, QStringLiteral("to"), false);
            to.transaction();
            QSqlQuery insertObject(to);
            insertObject.prepare(QStringLiteral("INSERT INTO objects (type, key, name, parent_type, parent, path) "
                                                "VALUES (?, ?, ?, ?, ?, ?)"));
            QSqlQuery insertProperty(to);
            insertProperty.prepare(
                QStringLiteral("INSERT INTO properties (object, name, value, position) VALUES (?, ?, ?, ?)"));
            QHash<qint64, qint64> ids;
            QSqlQuery objects(from);
            objects.exec(QStringLiteral("SELECT id, type, key, name, parent_type, parent, path FROM objects"));
            while (objects.next()) {
                for (int c = 1; c <= 6; ++c)
                    insertObject.addBindValue(objects.value(c));
                insertObject.exec();
                ids.insert(objects.value(0).toLongLong(), insertObject.lastInsertId().toLongLong());
            }
            QSqlQuery properties(from);
            properties.exec(QStringLiteral("SELECT object, name, value, position FROM properties"));
            while (properties.next()) {
                insertProperty.addBindValue(ids.value(properties.value(0).toLongLong()));
                for (int c = 1; c <= 3; ++c)
                    insertProperty.addBindValue(properties.value(c));
                insertProperty.exec();
            }
            to.commit();
            from.close();
            to.close();
        }
        baseline = ms(timer);
        QSqlDatabase::removeDatabase(QStringLiteral("from"));
        QSqlDatabase::removeDatabase(QStringLiteral("to"));
    }
    timer.start();
    const bool rebuilt = user->updateMergedDB();
    line("4. full synchronisation of the merged database", ms(timer), baseline, "target 5x");
    timer.start();
    const bool current = user->updateMergedDB();
    const double again = ms(timer);
    auto* merged = dynamic_cast<VNDatabaseTovi*>(manager->db(Sedra::DatabaseToviMerged));
    std::printf("%-48s %10.1f ms   (target under 100 ms)\n", "   synchronisation when current", again);
    std::printf("   merged: %s/%s, %d compounds, %d aliases, %d parameters, %d graphs, %d overlays, serial %s\n",
                rebuilt ? "ok" : "FAILED", current ? "ok" : "FAILED",
                merged ? int(merged->getAllCompounds().size()) : -1, merged ? int(merged->getAllAlias().size()) : -1,
                merged ? int(merged->getAllRatios().size()) : -1, merged ? int(merged->getAllGraphs().size()) : -1,
                merged ? int(merged->getAllOverlays().size()) : -1, merged ? qPrintable(merged->serialNumber()) : "-");
    VNDatabaseToviMGR::clear();
    DatabaseFactoryInterface::uninstall(&factory);
    MessageLoggerInterface::setDefault(previous);
    return 0;
}
