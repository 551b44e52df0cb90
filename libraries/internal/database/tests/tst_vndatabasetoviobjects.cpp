// Compounds, ions, parameters, joints and aliases of a reference database:
// each look-up, the removal dispatch and its refusals, copies between
// databases with their aliases, and the neutral answers without mappers.
#include <messageloggerinterface.h>
#include <tapplicationdata.h>
#include <tassert.h>
#include <theaderdatabase.h>
#include <trecordinglogger.h>
#include <ttovialias.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <ttoviratio.h>
#include <ttranslator.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vndatabasetovisample.h>
#include <vnobject2tovicompound.h>
#include <vnobject2tovieic.h>
#include <vnobject2tovijoint.h>

#include "tst_vndatabasetovihelpers.h"

#include <QDomDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using ToviTest::addCompound;
using ToviTest::makeTovi;

namespace {
const QString kNoValue = QStringLiteral("-9999");

Sedra::TToviRatio* addRatio(VNDatabaseTovi* db, const QString& id, const QString& name, int order = 1)
{
    return db->createRatio(id, name, name + QStringLiteral(" (display)"), "Pr/Ph", order, "Redox", "GC-MS",
                           "Peak area ratio", "Isoprenoids", "57;71", "Didyk et al. 1978");
}

const VNObject2Tovi* tovi(const Sedra::TDatabaseObject* record)
{
    return record ? dynamic_cast<const VNObject2Tovi*>(record->object()) : nullptr;
}

bool hasWarning(const TRecordingLogger& log, const QString& text)
{
    return log.contains(MessageLoggerInterface::LevelWarning, text);
}
} // namespace

class TestToviObjects : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { TTranslator::install(QStringLiteral("en")); }
    void init()
    {
        ToviTest::useNewFolder(m_data, m_dir);
        TAssert::clear();
    }
    void cleanup()
    {
        m_data.reset();
        m_dir.reset();
        TTranslator::install(QStringLiteral("en"));
    }

    void compoundsAreFoundByEachLookUp()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser));
        Sedra::TToviCompound* pristane = addCompound(db.get(), "C1", "pristane", "Pr;iC19");
        Sedra::TToviCompound* phytane = addCompound(db.get(), "C2", "phytane", "Ph;iC20");
        QVERIFY(pristane && phytane);
        QVERIFY(!addCompound(db.get(), "C1", "again", "X")); // identifier taken
        QCOMPARE(db->getCompound(QStringLiteral("C1")), pristane->object());
        QCOMPARE(db->getCompound(pristane->object()), pristane);
        QCOMPARE(db->getCompoundByName(QStringLiteral("phytane")), phytane->object());
        QCOMPARE(db->getCompoundByToViKey({"Ph", "iC20"}), phytane);
        QVERIFY(!db->getCompoundByToViKey({"iC20", "Ph"}));
        QVERIFY(!db->getCompound(QStringLiteral("c1")));
        QCOMPARE(db->getAllCompounds(), (QList<const VNObject2*>{pristane->object(), phytane->object()}));
        QCOMPARE(db->getAllToviCompounds(), (QList<Sedra::TToviCompound*>{pristane, phytane}));
        bool found = false;
        QCOMPARE(db->getObjectProperties(pristane->object(), QStringLiteral("CAS"), &found).value(),
                 QStringLiteral("1921-70-6"));
        QVERIFY(found);

        // By identity only: an object of another database is not ours.
        std::unique_ptr<VNDatabaseTovi> other(makeTovi(Sedra::DatabaseToviMerged));
        Sedra::TToviCompound* twin = addCompound(other.get(), "C1", "pristane", "Pr;iC19");
        QVERIFY(!db->getCompound(twin->object()));

        QVERIFY(!db->compoundRemove(nullptr));
        QVERIFY(db->compoundRemove(phytane->object()));
        QVERIFY(!db->getCompound(QStringLiteral("C2")));
    }

    // Ions, the "none" ion made once on demand, and joints pairing a compound with an ion.
    void ionsAndJoints()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser));
        Sedra::TToviEIC* eic = db->createEIC(QStringLiteral("m/z 191"), QStringLiteral("191"));
        QVERIFY(eic);
        QCOMPARE(db->getEIC(QStringLiteral("m/z 191")), eic->object());
        QCOMPARE(db->getEIC(eic->object()), eic);
        QVERIFY(!db->getEIC(static_cast<const VNObject2*>(nullptr)));
        QCOMPARE(db->getEICByName(QStringLiteral("m/z 191")), eic->object());
        QVERIFY(!db->getEICByName(QStringLiteral("none")));
        const Sedra::TToviEIC* none = db->getNoneEIC();
        QVERIFY(none);
        QCOMPARE(none->EICName(), QStringLiteral("none"));
        QCOMPARE(none->value(), kNoValue);
        QCOMPARE(db->getNoneEIC(), none);
        QCOMPARE(db->getAllIons().size(), 2);

        QVERIFY(addCompound(db.get(), "C30", "C30 hopane", "H30"));
        QVERIFY(!db->createJoint("missing", "m/z 191", "x"));
        QVERIFY(!db->createJoint("C30", "missing", "x"));
        Sedra::TToviJoint* joint = db->createJoint("C30", "m/z 191", "hopane on 191");
        QVERIFY(joint);
        QVERIFY(!db->createJoint("C30", "m/z 191", "twice")); // a pair is joined once
        QCOMPARE(db->getJoint(joint->object()), joint);
        QCOMPARE(db->getJoint(joint->key()), joint->object());
        QCOMPARE(db->getJoint(QStringLiteral("C30"), QStringLiteral("m/z 191")), joint->object());
        QVERIFY(!db->getJoint(QStringLiteral("missing"), QStringLiteral("m/z 191")));
        const auto* object = dynamic_cast<const VNObject2ToviJoint*>(joint->object());
        QVERIFY(object && object->compound() && object->eic());
        QCOMPARE(db->getAllJoints().size(), 1);
        QVERIFY(!db->jointRemove(nullptr));
        QVERIFY(db->jointRemove(joint->object()));
        QVERIFY(db->getAllJoints().isEmpty());
        QVERIFY(!db->EICRemove(nullptr));
        QVERIFY(db->EICRemove(eic->object()));
        QCOMPARE(db->getAllIons().size(), 1);
    }

    void parametersAndTheirLookUps()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser));
        Sedra::TToviRatio* first = addRatio(db.get(), "R1", "Pr/Ph", 2);
        Sedra::TToviRatio* second = addRatio(db.get(), "R2", "Pr/Ph", 1);
        Sedra::TToviRatio* cpi = addRatio(db.get(), QString(), "CPI", -1);
        QVERIFY(first && second && cpi);
        QVERIFY(!cpi->ratioId().isEmpty()); // a new identifier
        // The eleven values arrive in order, none in another's place.
        QCOMPARE((QStringList{first->masterName(), first->displayFormula(), first->formula(),
                              QString::number(first->displayOrder()), first->studyType(), first->analysisType(),
                              first->processType(), first->familyName(), first->expectedIons(),
                              first->literatureReference()}),
                 (QStringList{"Pr/Ph", "Pr/Ph (display)", "Pr/Ph", "2", "Redox", "GC-MS", "Peak area ratio",
                              "Isoprenoids", "57;71", "Didyk et al. 1978"}));

        QCOMPARE(db->getRatio(QStringLiteral("R1")), first->object());
        QCOMPARE(db->getRatio(first->object()), first);
        QVERIFY(!db->getRatio(static_cast<const VNObject2*>(nullptr)));
        QCOMPARE(db->getRatioByMasterName(QStringLiteral("Pr/Ph")), first->object());
        QCOMPARE(db->getRatiosByMasterName(QStringLiteral("Pr/Ph")),
                 (QList<const VNObject2*>{first->object(), second->object()}));
        QVERIFY(db->getRatiosByMasterName(QStringLiteral("pr/ph")).isEmpty());
        QVERIFY(db->aliasCreate(tovi(second), QStringLiteral("name"), QStringLiteral("V"),
                                QStringLiteral("pristane/phytane")));
        QCOMPARE(db->getRatiosByAliasesValue(QStringLiteral("pristane/phytane")),
                 QList<const VNObject2*>{second->object()});
        QCOMPARE(db->getAllRatios().size(), 3);
        // A graph document that names no parameter, or none at all.
        QDomDocument document;
        QVERIFY(document.setContent(QStringLiteral("<GraphDocument><informations/></GraphDocument>")));
        QVERIFY(db->getRatioUids(document).isEmpty());
        QVERIFY(db->getRatioUids(QDomDocument()).isEmpty());

        QVERIFY(db->ratioRemove(static_cast<Sedra::TToviRatio*>(nullptr), false)); // nothing to remove
        QVERIFY(db->ratioRemove(second, true));
        QVERIFY(!db->getRatio(QStringLiteral("R2")));
        QVERIFY(db->getRatiosByAliasesValue(QStringLiteral("pristane/phytane")).isEmpty());
    }

    void removalDispatchAndRenamingRefusals_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("removeText");
        QTest::addColumn<QString>("renameText");
        QTest::newRow("en") << "en"
                            << "Impossible to remove <b>%1</b>, in a <b>Read only</b> project"
                            << "Impossible to rename <b>%1</b>, project is <b>Read only</b>";
        QTest::newRow("fr") << "fr"
                            << "Impossible de supprimer <b>%1</b>, le projet est en <b>Lecture Seule</b>"
                            << "Impossible de renommer <b>%1</b>, le projet est en <b>Lecture Seule</b>";
    }

    void removalDispatchAndRenamingRefusals()
    {
        QFETCH(QString, language);
        QFETCH(QString, removeText);
        QFETCH(QString, renameText);
        {
            std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviDelivered));
            QVERIFY(addRatio(db.get(), "R1", "Ts/Tm"));
            QVERIFY(addCompound(db.get(), "C1", "Ts & <Tm>", "Ts"));
            QVERIFY(db->createEIC(QStringLiteral("m/z 191"), QStringLiteral("191")));
        }
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviDelivered));
        db->setReadOnly(true);
        TTranslator::install(language);
        TRecordingLogger log;
        const VNObject2* compound = db->getCompound(QStringLiteral("C1"));
        QVERIFY(compound);
        QVERIFY(!db->removeObject(compound, true));
        QVERIFY(hasWarning(log, removeText.arg(QStringLiteral("Ts &amp; &lt;Tm&gt;"))));
        QVERIFY(!db->objectRename(compound, QStringLiteral("Ts")));
        QVERIFY(hasWarning(log, renameText.arg(QStringLiteral("Ts &amp; &lt;Tm&gt;"))));
        QVERIFY(!db->removeObject(nullptr, true));
        QVERIFY(!db->objectRename(nullptr, QStringLiteral("x")));
        QCOMPARE(log.messages(MessageLoggerInterface::LevelWarning).size(), 2);
        QVERIFY(db->getCompound(QStringLiteral("C1")));

        // Writable: every kind goes through its own removal; renaming is never done.
        db.reset(makeTovi(Sedra::DatabaseToviDelivered));
        QVERIFY(!db->objectRename(db->getCompound(QStringLiteral("C1")), QStringLiteral("Ts (new)")));
        QVERIFY(!db->objectRename(db->getCompound(QStringLiteral("C1")), QStringLiteral("   ")));
        QCOMPARE(db->getCompound(QStringLiteral("C1"))->name(), QStringLiteral("Ts & <Tm>"));
        // A parameter goes at once even when the caller asks to wait.
        QVERIFY(db->removeObject(db->getRatio(QStringLiteral("R1")), false));
        QVERIFY(db->removeObject(db->getCompound(QStringLiteral("C1")), false));
        QVERIFY(db->removeObject(db->getEIC(QStringLiteral("m/z 191")), false));
        db.reset(makeTovi(Sedra::DatabaseToviDelivered));
        QVERIFY(!db->getRatio(QStringLiteral("R1")));
        QVERIFY(!db->getCompound(QStringLiteral("C1")));
        QVERIFY(!db->getEIC(QStringLiteral("m/z 191")));
    }

    void aliasesAndTheMasterNameRule()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser));
        Sedra::TToviCompound* compound = addCompound(db.get(), "C1", "pristane", "Pr");
        const VNObject2Tovi* object = tovi(compound);
        QVERIFY(db->aliasCreate(object, "CAS", "A", "1921-70-6"));
        QCOMPARE(compound->masterName(), QStringLiteral("pristane"));
        QVERIFY(!db->aliasCreate(object, "CAS", "A", "dup"));

        // "masterName" on creation renames the compound, at once and for good.
        QVERIFY(db->aliasCreate(object, "masterName", "A", "2,6,10,14-tetramethylpentadecane"));
        QCOMPARE(compound->masterName(), QStringLiteral("2,6,10,14-tetramethylpentadecane"));
        // Not on update, and not for another spelling of the field.
        QVERIFY(db->aliasUpdate(object, "masterName", "A", "Pr"));
        QCOMPARE(compound->masterName(), QStringLiteral("2,6,10,14-tetramethylpentadecane"));
        QVERIFY(db->aliasCreate(object, "MasterName", "B", "iC19"));
        QCOMPARE(compound->masterName(), QStringLiteral("2,6,10,14-tetramethylpentadecane"));

        Sedra::TToviAlias* alias = db->getAlias(object, "CAS", "A");
        QVERIFY(alias);
        QVERIFY(db->aliasUpdate(alias, QStringLiteral("1921-70-6 (checked)")));
        QCOMPARE(db->getAlias(object, "CAS", "A")->getValue(), QStringLiteral("1921-70-6 (checked)"));
        QVERIFY(!db->aliasUpdate(static_cast<const Sedra::TToviAlias*>(nullptr), QStringLiteral("x")));
        QVERIFY(TAssert::contains(QStringLiteral("alias != nullptr && alias->getParent() != nullptr"),
                                  QStringLiteral("vndatabasetovi")));

        QCOMPARE(db->getAliasVendors(), (QStringList{"A", "B"}));
        QCOMPARE(db->getAllAlias().size(), 3);
        QVERIFY(db->aliasDeleteSingleItem(object, "MasterName", "B"));
        QVERIFY(!db->aliasDeleteSingleItem(object, "MasterName", "B"));
        QCOMPARE(db->getAliasVendors(), QStringList{QStringLiteral("A")});
        QVERIFY(db->aliasDeleteByVendor(QStringLiteral("A")));
        QVERIFY(db->getAliasVendors().isEmpty());
        QVERIFY(db->getAllAlias().isEmpty());

        // The master name given by the alias survived a reopening.
        db.reset(makeTovi(Sedra::DatabaseToviUser));
        QCOMPARE(db->getCompound(QStringLiteral("C1"))->name(), QStringLiteral("2,6,10,14-tetramethylpentadecane"));
    }

    void copiesBetweenDatabasesKeepAliases()
    {
        std::unique_ptr<VNDatabaseTovi> user(makeTovi(Sedra::DatabaseToviUser));
        std::unique_ptr<VNDatabaseTovi> merged(makeTovi(Sedra::DatabaseToviMerged));
        Sedra::TToviCompound* compound = addCompound(user.get(), "USR-C1", "oleanane", "Ol;C30");
        QVERIFY(compound);
        QVERIFY(user->aliasCreate(tovi(compound), "CAS", "A", "471-67-6"));
        QVERIFY(user->aliasCreate(tovi(compound), "name", "B", "18\u03b1-oleanane"));
        Sedra::TToviEIC* eic = user->createEIC("m/z 191", "191");
        Sedra::TToviJoint* joint = user->createJoint("USR-C1", "m/z 191", "oleanane 191");
        Sedra::TToviRatio* ratio = addRatio(user.get(), "USR-R1", "Oleanane index");
        QVERIFY(eic && joint && ratio);

        // The destination already knows the compound under its own key, with an
        // older value for one alias.
        Sedra::TToviCompound* known = addCompound(merged.get(), "ORL-C9", "oleanane (delivered)", "Ol;C30");
        QVERIFY(merged->aliasCreate(tovi(known), "CAS", "A", "0-00-0"));
        QVERIFY(merged->aliasCreate(tovi(known), "name", "B", "18\u03b1-oleanane"));

        bool first = false, second = false;
        int count = 0;
        TRecordingLogger log;
        const VNObject2* copied = merged->objectCopy(compound->object(), first, second, count);
        QCOMPARE(copied, known->object()); // found by its reference keys, not made again
        QVERIFY(log.contains(MessageLoggerInterface::LevelDebug,
                             QString::fromLatin1("Le composé %1 existe déjà").arg("oleanane (delivered)")));
        QCOMPARE(merged->getAlias(tovi(known), "CAS", "A")->getValue(), QStringLiteral("471-67-6"));
        QCOMPARE(merged->getAlias(tovi(known), "name", "B")->getValue(), QStringLiteral("18\u03b1-oleanane"));
        QCOMPARE(merged->getAllAlias().size(), 2);
        QVERIFY(!first && !second && count == 0); // handed through untouched

        // The ion arrives with the "no value" text; the joint finds the known compound.
        const VNObject2* copiedJoint = merged->objectCopy(joint->object(), first, second, count);
        QVERIFY(copiedJoint);
        QCOMPARE(merged->getJoint(copiedJoint)->compoundKey(), QStringLiteral("ORL-C9"));
        const Sedra::TToviEIC* copiedIon = merged->getEIC(merged->getEIC(QStringLiteral("m/z 191")));
        QVERIFY(copiedIon);
        QCOMPARE(copiedIon->value(), kNoValue);
        QCOMPARE(merged->objectCopy(joint->object(), first, second, count), copiedJoint); // by its key

        const VNObject2* copiedRatio = merged->objectCopy(ratio->object(), first, second, count);
        QVERIFY(copiedRatio);
        QCOMPARE(merged->getRatio(copiedRatio)->literatureReference(), QStringLiteral("Didyk et al. 1978"));
        QCOMPARE(merged->objectCopy(ratio->object(), first, second, count), copiedRatio);

        // A compound the destination lacks is made under the source's identifier.
        Sedra::TToviCompound* gammacerane = addCompound(user.get(), "USR-C2", "gammacerane", "Gam");
        QVERIFY(user->aliasCreate(tovi(gammacerane), "masterName", "A", "gammacerane (C30)"));
        const VNObject2* made = merged->objectCopy(gammacerane->object(), first, second, count);
        QVERIFY(made);
        QCOMPARE(made->key(), QStringLiteral("USR-C2"));
        QCOMPARE(made->name(), QStringLiteral("gammacerane (C30)"));
        QCOMPARE(merged->getAlias(dynamic_cast<const VNObject2Tovi*>(made), "masterName", "A")->getValue(),
                 QStringLiteral("gammacerane (C30)"));

        QVERIFY(!merged->objectCopy(nullptr, first, second, count));
        // Everything is on file.
        merged.reset(makeTovi(Sedra::DatabaseToviMerged));
        QCOMPARE(merged->getAllCompounds().size(), 2);
        QCOMPARE(merged->getAllAlias().size(), 3);
        QCOMPARE(merged->getAllJoints().size(), 1);
        QCOMPARE(merged->getAllRatios().size(), 1);
    }

    void jointCopyThatCannotBeMadeSaysSo_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("text");
        QTest::newRow("en") << "en"
                            << "Impossible to copy Joint %1";
        QTest::newRow("fr") << "fr"
                            << "Impossible de copier la jointure %1";
    }

    void jointCopyThatCannotBeMadeSaysSo()
    {
        QFETCH(QString, language);
        QFETCH(QString, text);
        std::unique_ptr<VNDatabaseTovi> user(makeTovi(Sedra::DatabaseToviUser));
        QVERIFY(addCompound(user.get(), "C1", "tricyclic terpane", "TT"));
        QVERIFY(user->createEIC("m/z 191", "191"));
        Sedra::TToviJoint* joint = user->createJoint("C1", "m/z 191", "TT/191");
        QVERIFY(joint);
        std::unique_ptr<VNDatabaseTovi> merged(makeTovi(Sedra::DatabaseToviMerged));
        merged->setReadOnly(true); // neither the ion nor the compound can be made
        TTranslator::install(language);
        TRecordingLogger log;
        bool first = false, second = false;
        int count = 0;
        QVERIFY(!merged->objectCopy(joint->object(), first, second, count));
        QVERIFY(log.contains(MessageLoggerInterface::LevelError, text.arg(QStringLiteral("TT/191"))));
    }

    void importWholeKinds()
    {
        std::unique_ptr<VNDatabaseTovi> user(makeTovi(Sedra::DatabaseToviUser));
        std::unique_ptr<VNDatabaseTovi> merged(makeTovi(Sedra::DatabaseToviMerged));
        for (int i = 0; i < 50; ++i) {
            Sedra::TToviCompound* c = addCompound(user.get(), QStringLiteral("C%1").arg(i),
                                                  QStringLiteral("compound %1").arg(i), QStringLiteral("K%1").arg(i));
            QVERIFY(c);
            QVERIFY(user->aliasCreate(tovi(c), "name", "A", QStringLiteral("alias %1").arg(i)));
        }
        QVERIFY(!merged->importObjectsByType(nullptr, VNObjectTypeCompound));
        QVERIFY(merged->importObjectsByType(user.get(), VNObjectTypeCompound));
        QVERIFY(merged->importObjectsByType(user.get(), VNObjectTypeCompound)); // again: nothing doubled
        QVERIFY(merged->importObjectsByType(user.get(), 4242));                 // unknown kind: nothing
        merged.reset(makeTovi(Sedra::DatabaseToviMerged));
        QCOMPARE(merged->getAllCompounds().size(), 50);
        QCOMPARE(merged->getAllAlias().size(), 50);
        QCOMPARE(merged->getCompound(QStringLiteral("C49"))->name(), QStringLiteral("compound 49"));
    }

    void sampleContentLoads()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviDelivered));
        QString error;
        QVERIFY(!VNDatabaseToviSample::load(db.get(), m_dir->filePath("missing.json"), &error));
        QVERIFY(error.contains("missing.json"));
        const auto write = [this](const char* name, const QByteArray& content) {
            QFile file(m_dir->filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                            : QString();
        };
        QVERIFY(!VNDatabaseToviSample::load(db.get(), write("bad.json", "{\"compounds\": [ {\"toviKey\": "), &error));
        QVERIFY(db->getAllCompounds().isEmpty());

        const QString small = write("small.json", R"({"compounds":[{"toviKey":"Pr","name":"Pristane","carbons":19,
                            "retentionIndex":1707}],
            "ions":[{"name":"m/z 57","value":"57"}],
            "joints":[{"compound":"Pr","ion":"m/z 57"}],
            "parameters":[{"ratioId":"R1","name":"Pr/Ph","displayOrder":1}],
            "aliases":[{"kind":"compound","ref":"Pr","field":"name","vendor":"V","value":"iC19"},
                       {"kind":"ratio","ref":"R1","field":"name","vendor":"V","value":"pristane/phytane"}]})");
        VNDatabaseToviSample::Counts counts;
        QVERIFY(VNDatabaseToviSample::load(db.get(), small, &error, &counts));
        QCOMPARE((QList<int>{counts.compounds, counts.ions, counts.joints, counts.parameters, counts.aliases}),
                 (QList<int>{1, 1, 1, 1, 2}));
        db.reset(makeTovi(Sedra::DatabaseToviDelivered));
        QCOMPARE(db->getCompound(db->getCompound(QStringLiteral("Pr")))->carbons(), QStringLiteral("19"));
        QCOMPARE(db->getCompound(db->getCompound(QStringLiteral("Pr")))->retentionIndex(), QStringLiteral("1707"));
        QCOMPARE(db->getRatiosByAliasesValue(QStringLiteral("pristane/phytane")).size(), 1);
    }

    // Last: it ends the shared mapper factory's life.
    void withoutMappersEveryOperationAnswersNeutrally()
    {
        std::unique_ptr<VNDatabaseTovi> before(makeTovi(Sedra::DatabaseToviUser));
        Sedra::TToviCompound* compound = addCompound(before.get(), "C1", "pristane", "Pr");
        QVERIFY(before->aliasCreate(tovi(compound), "CAS", "A", "1921-70-6"));
        Sedra::TToviAlias* alias = before->getAlias(tovi(compound), "CAS", "A");

        VNDatabaseTovi::s_mapperFactoryClear();
        QVERIFY(!VNDatabaseTovi::s_mapperFactory);
        VNDatabaseTovi::s_mapperFactoryClear();
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser));
        TAssert::clear();
        TRecordingLogger log;
        QVERIFY(!db->getCompound(QStringLiteral("C1")));
        QVERIFY(TAssert::contains(QStringLiteral("mapper != 0"), QStringLiteral("vndatabasetovi")));
        QVERIFY(!db->createEIC("m/z 57", "57"));
        QVERIFY(!db->getNoneEIC());
        QVERIFY(!addRatio(db.get(), "R1", "CPI"));
        QVERIFY(!db->createJoint("C1", "m/z 57", "x"));
        QVERIFY(db->getAllCompounds().isEmpty());
        QVERIFY(db->getAllAlias().isEmpty());
        QVERIFY(db->getAliasVendors().isEmpty());
        QVERIFY(!db->aliasDeleteSingleItem(tovi(compound), "CAS", "A"));
        QVERIFY(!db->compoundRemove(compound->object()));
        QVERIFY(db->ratioRemove(static_cast<Sedra::TToviRatio*>(nullptr), true));
        const int before_ = TAssert::count();
        QVERIFY(!db->aliasUpdate(alias, QStringLiteral("x")));
        QCOMPARE(TAssert::count(), before_ + 1);
        QCOMPARE((QStringList{TAssert::failures().constLast().expression, TAssert::failures().constLast().file}),
                 (QStringList{"mapper != nullptr", "vndatabasetovi"}));
    }

private:
    std::unique_ptr<TApplicationData> m_data;
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestToviObjects)
#include "tst_vndatabasetoviobjects.moc"
