// A module of the application as it would use the installed library.
#include <databasefactoryinterface.h>
#include <tapplicationdata.h>
#include <ttovicompound.h>
#include <ttree.h>
#include <txmlmethod.h>
#include <vndatabasefactory.h>
#include <vndatabaseinfo.h>
#include <vndatabasetovi.h>
#include <vndatabasetovimgr.h>

#include <QCoreApplication>
#include <QDomDocument>
#include <QTemporaryDir>
#include <cstdio>

struct Payload
{
    virtual ~Payload() = default;
    int value = 0;
};

// The three reference databases of a folder, opened and registered as the
// application does; what is added to the user database through the library
// alone must be in the merged database after updateMergedDB().
static int userAdditionsReachTheMergedDatabase()
{
    QTemporaryDir folder;
    TApplicationData data;
    data.setValue(QStringLiteral("TOVIDBDIR"), folder.path());
    VNDatabaseFactory factory;
    DatabaseFactoryInterface::install(&factory);
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    for (Sedra::DatabaseType type :
         {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
        auto* db = qobject_cast<VNDatabaseTovi*>(factory.createDatabase(type));
        if (!db || !db->loadDatabase())
            return 10;
        manager->setDb(db);
    }
    auto* user = dynamic_cast<VNDatabaseTovi*>(manager->db(Sedra::DatabaseToviUser));
    if (!user->updateMergedDB())
        return 11;
    Sedra::TToviCompound model;
    model.setMasterName(QStringLiteral("gammacerane"));
    model.setFormula(QStringLiteral("C30H52"));
    if (!user->createEIC(QStringLiteral("m/z 191"), QStringLiteral("191")) || !user->createCompound(&model, "Ga"))
        return 12;
    if (!user->updateMergedDB())
        return 13;
    VNToviDatabaseInterface* merged = manager->db(Sedra::DatabaseToviMerged);
    if (!merged || !merged->getEICByName(QStringLiteral("m/z 191")) || !merged->getCompound(QStringLiteral("Ga")))
        return 14;
    VNDatabaseToviMGR::clear();
    return 0;
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    TTree<Payload*> root;
    root.setAutoDelete(true);
    for (int i = 0; i < 3; ++i)
        (new TTree<Payload*>(&root, i))->attribute = new Payload;
    if (root.getNbItems() != 4 || root.getSon(0)->getNodeId() != 2)
        return 1;

    QDomDocument document;
    QDomElement top = document.createElement(QStringLiteral("consumer"));
    document.appendChild(top);
    TXMLMethod::addToElement(top, QStringLiteral("Version"), QStringLiteral("2.0"));
    if (TXMLMethod::getInfoString(top, QStringLiteral("Version")) != QLatin1String("2.0"))
        return 2;
    if (const int failed = userAdditionsReachTheMergedDatabase()) {
        std::printf("consumer: the user's additions did not reach the merged database (%d)\n", failed);
        return failed;
    }
    std::printf("consumer linked VNDatabase %s\n", qPrintable(VNDatabaseInfo::version()));
    return 0;
}
