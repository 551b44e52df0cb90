#include "tovi_testdatabase.h"

#include <testfiles.h>
#include <ttovialias.h>
#include <ttovibatch.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <ttoviratio.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vnobject2tovicompound.h>
#include <vnobject2tovieic.h>
#include <vnobject2tovijoint.h>
#include <vnobject2toviratio.h>

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Sedra;

namespace {

// A compound described as the module describes one before creating it.
std::unique_ptr<TToviCompound> model(const QString& masterName, const QString& toviKey, const QString& cas = QString())
{
    auto made = std::make_unique<TToviCompound>();
    made->setMasterName(masterName);
    made->setToviKey(toviKey);
    made->setCas(cas);
    made->setFormula("C19H40");
    made->setInChIKey("XOJVVFBFDXDTEG-UHFFFAOYSA-N");
    made->setInChI("InChI=1S/C19H40/c1-16(2)10-7-11-17(3)12-8-13-18(4)14-9-15-19(5)6/h16-19H,7-15H2,1-6H3");
    made->setFamily("isoprenoids");
    made->setCarbons("19");
    made->setOrlName("Pr");
    made->setAnalysisType("GC-MS");
    made->setStudyType("Redox");
    made->setExpectedIons("57;71");
    made->setFamilyName("Saturated hydrocarbons");
    return made;
}

struct Reference : ToviKinds
{
    using ToviKinds::ToviKinds;

    // A compound made from a model with these names, under `id`.
    TToviCompound* compound(const QString& id, const QString& masterName, const QString& toviKey) const
    {
        return compounds->createCompound(model(masterName, toviKey).get(), id);
    }
};

// A ratio with only its key, master name and display order.
TToviRatio* plainRatio(TToviRatioMapper* ratios, const QString& id, const QString& name, int order)
{
    return ratios->createRatio(id, name, {}, {}, order, {}, {}, {}, {}, {}, {});
}

// The key a new ratio is given when it names none; empty when refused.
QString nextRatioKey(TToviRatioMapper* ratios)
{
    const TToviRatio* made = plainRatio(ratios, QString(), "r", 1);
    return made ? made->ratioId() : QString();
}

} // namespace

class TestToviStorage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void cleanup() { TTranslator::install("en"); }

    void compoundsAreFoundByEveryKeyAndSurviveReload()
    {
        const QString path = folder();
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            QVERIFY(db.opened);
            QVERIFY(db.compounds && db.ratios && db.ions && db.joints && db.aliases);
            auto pristane = model("Pristane", "Pr;iC19", "1921-70-6");
            auto phytane = model("Phytane", "Ph", "638-36-8");
            TToviCompound* pr = db.compounds->createCompound(pristane.get(), "C-PR");
            TToviCompound* ph = db.compounds->createCompound(phytane.get(), QString());
            QVERIFY(pr && ph);
            QVERIFY2(ph->compoundId().startsWith("USR-C"), qPrintable(ph->compoundId()));
            // Every key the selector lists is stored.
            for (const char* key :
                 {TToviCompound::KeyId, TToviCompound::KeyMasterName, TToviCompound::KeyInChI,
                  TToviCompound::KeyInChIKey, TToviCompound::KeyFormula, TToviCompound::KeyCAS,
                  TToviCompound::KeyFamily, TToviCompound::KeyCarbons, TToviCompound::KeyORLName,
                  TToviCompound::KeyToVIKey, TToviCompound::KeyAnalysisType, TToviCompound::KeyStudyType,
                  TToviCompound::KeyExpectedIons, TToviCompound::KeyFamilyName})
                QVERIFY2(pr->hasProperty(QLatin1String(key)), key);
            QCOMPARE(pr->compound()->db(), &db);
            // The model stays free and unchanged.
            QVERIFY(!pristane->compound()->db());
            // A new master name moves the compound in the name index; its alias stays.
            QVERIFY(db.aliases->aliasCreate(ph->object(), "masterName", "V", "Phytan"));
            ph->setMasterName("Phytane (renamed)");
            QCOMPARE(db.compounds->getCompoundByName("Phytane (renamed)"), ph->object());
            QVERIFY(!db.compounds->getCompoundByName("Phytane"));
            QVERIFY(db.headerDb()->saveObjectToFile(ph, true));
        }
        Reference db(DatabaseToviUser, path, &m_factory);
        QCOMPARE(db.compounds->compoundList().size(), 2);
        TToviCompound* pr = db.compounds->compound("C-PR");
        QVERIFY(pr);
        QCOMPARE(db.compounds->getCompoundByName("Pristane"), pr->object());
        QCOMPARE(db.compounds->getByToViKey({"Pr", "iC19"}), pr);
        QVERIFY(!db.compounds->getByToViKey({"Pr"}));
        QVERIFY(!db.compounds->getByToViKey({"iC19", "Pr"}));
        QCOMPARE((QStringList{pr->compound()->toviKey(), pr->cas(), pr->carbons(), pr->name()}),
                 (QStringList{"Pr;iC19", "1921-70-6", "19", "Pristane"}));
        QCOMPARE(db.compounds->compoundList().first(), pr);
        const VNObject2* renamed = db.compounds->getCompoundByName("Phytane (renamed)");
        QVERIFY(renamed && !db.compounds->getCompoundByName("Phytane"));
        QCOMPARE(db.aliases->aliasesOf(renamed).size(), 1);

        // Removal takes the compound from memory and file.
        QVERIFY(db.compounds->remove(pr->object(), true, true));
        QVERIFY(!db.compounds->compound("C-PR"));
        QVERIFY(!db.compounds->getByToViKey({"Pr", "iC19"}));
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeCompound), 1);
    }

    void compoundCreationRefusals()
    {
        Reference db(DatabaseToviDelivered, folder(), &m_factory);
        auto first = model("Hopane", "H30");
        QVERIFY(db.compounds->createCompound(first.get(), "X"));
        // An identifier is never reused, whatever the model.
        QVERIFY(!db.compounds->createCompound(first.get(), "X"));
        QCOMPARE(db.compounds->count(), 1);
        // Without a model the identifier names the compound.
        TToviCompound* bare = db.compounds->createCompound(nullptr, QString());
        QVERIFY(bare);
        QVERIFY(bare->compoundId().startsWith("ORL-C"));
        QCOMPARE(bare->masterName(), bare->compoundId());
        // Keys made in a row never collide (a taken key is refused), even around
        // a key given by hand.
        QVERIFY(db.compounds->createCompound(nullptr, "ORL-C000004"));
        for (int i = 0; i < 5; ++i)
            QVERIFY(db.compounds->createCompound(nullptr, QString()));
        // Reference keys that are all empty identify nothing and match nothing.
        auto blank = model("Unknown", ";");
        QVERIFY(db.compounds->createCompound(blank.get(), QString()));
        QVERIFY(!db.compounds->getByToViKey({QString(), QString()}));
        QVERIFY(!db.compounds->getByToViKey({QString()}));
        QVERIFY(!db.compounds->getByToViKey({}));
        // The reference keys of a stored compound are its identity: fixed.
        TToviCompound* hopane = db.compounds->compound("X");
        QVERIFY(!hopane->setToviKey("other"));
        QVERIFY(hopane->setToviKey("H30"));
        QCOMPARE(db.compounds->getByToViKey({"H30"}), hopane);
        // Joints and aliases are made from their objects only.
        QVERIFY(!db.joints->create("j"));
        QVERIFY(!db.aliases->create("a"));
    }

    void generatedKeysNeverComeBack()
    {
        // A graph's axis names a ratio by key: a removed ratio's key must not be
        // given to the next one, in this session or after reopening.
        const QString path = folder();
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            const QStringList keys{nextRatioKey(db.ratios), nextRatioKey(db.ratios), nextRatioKey(db.ratios)};
            QCOMPARE(keys, (QStringList{"USR-R000001", "USR-R000002", "USR-R000003"}));
            QVERIFY(db.ratios->remove(db.ratios->get(keys.last()), true, true));
            QCOMPARE(nextRatioKey(db.ratios), "USR-R000004");
            QVERIFY(db.ratios->remove(db.ratios->get("USR-R000004"), true, true));
            // Inside a batch too.
            TToviBatch batch(&db);
            QCOMPARE(nextRatioKey(db.ratios), "USR-R000005");
            QVERIFY(batch.commit());
            QVERIFY(db.ratios->remove(db.ratios->get("USR-R000005"), true, true));
        }
        Reference db(DatabaseToviUser, path, &m_factory);
        QCOMPARE(db.ratios->count(), 2);
        QCOMPARE(nextRatioKey(db.ratios), "USR-R000006");
        // A key given by hand in the generated range is stepped over.
        QVERIFY(plainRatio(db.ratios, "USR-R000007", "hand", 7));
        QCOMPARE(nextRatioKey(db.ratios), "USR-R000008");
    }

    void ratiosKeepTheirElevenValuesAndDisplayOrder()
    {
        const QString path = folder();
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            TToviRatio* prph = db.ratios->createRatio("R001", "Pr/Ph", "Pr / Ph", "Pr/Ph", 20, "Redox", "GC-MS",
                                                      "Peak area ratio", "Saturates", "57;71", "Didyk et al. 1978");
            QVERIFY(prph);
            QVERIFY(plainRatio(db.ratios, "R002", "CPI", 10));
            // A second ratio of the same master name, and one placed at the end.
            QVERIFY(plainRatio(db.ratios, "R003", "Pr/Ph", 20));
            TToviRatio* last = plainRatio(db.ratios, QString(), "Ts/(Ts+Tm)", -1);
            QVERIFY(last);
            QCOMPARE(last->displayOrder(), 21);
            // Refusals: a taken identifier, an empty master name.
            QVERIFY(!plainRatio(db.ratios, "R001", "x", 1));
            QVERIFY(!plainRatio(db.ratios, "R009", QString(), 1));
            // Aliases: a ratio is found by an alias value, a compound with the same
            // alias value is not a ratio.
            TToviCompound* c = db.compound("C-PR", "Pristane", "Pr");
            QVERIFY(db.aliases->aliasCreate(prph->object(), "masterName", "A", "pristane/phytane"));
            QVERIFY(db.aliases->aliasCreate(prph->object(), "masterName", "B", "pristane/phytane"));
            QVERIFY(db.aliases->aliasCreate(c->object(), "masterName", "A", "pristane/phytane"));
        }
        Reference db(DatabaseToviUser, path, &m_factory);
        TToviRatio* prph = db.ratios->ratio("R001");
        QVERIFY(prph);
        QCOMPARE((QStringList{prph->masterName(), prph->displayFormula(), prph->formula(), prph->studyType(),
                              prph->analysisType(), prph->processType(), prph->familyName(), prph->expectedIons(),
                              prph->literatureReference()}),
                 (QStringList{"Pr/Ph", "Pr / Ph", "Pr/Ph", "Redox", "GC-MS", "Peak area ratio", "Saturates", "57;71",
                              "Didyk et al. 1978"}));
        QCOMPARE(prph->displayOrder(), 20);
        QCOMPARE(prph->ratio()->displayOrder(), 20);

        QCOMPARE(db.ratios->getByMasterName("Pr/Ph"), prph);
        QCOMPARE(db.ratios->getAllByMasterName("Pr/Ph"), (QList<TToviRatio*>{prph, db.ratios->ratio("R003")}));
        QVERIFY(db.ratios->getAllByMasterName("nothing").isEmpty());

        QStringList ordered;
        for (const TToviRatio* r : db.ratios->listByDisplayOrder())
            ordered.append(r->masterName());
        QCOMPARE(ordered, QStringList({"CPI", "Pr/Ph", "Pr/Ph", "Ts/(Ts+Tm)"}));

        QCOMPARE(db.ratios->getByAliasesValue("pristane/phytane"), QList<const VNObject2*>{prph->object()});
        QVERIFY(db.ratios->getByAliasesValue("Pristane/Phytane").isEmpty());

        // Removing a ratio removes its aliases.
        QVERIFY(db.ratios->remove(prph->object(), true, true));
        QVERIFY(db.ratios->getByAliasesValue("pristane/phytane").isEmpty());
        QCOMPARE(db.aliases->getByValue("pristane/phytane").size(), 1);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeAlias), 1);
    }

    void ionsAndJointsFollowTheirCompoundAndIon()
    {
        const QString path = folder();
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            TToviCompound* pr = db.compound("C-PR", "Pristane", "Pr");
            TToviCompound* ph = db.compound("C-PH", "Phytane", "Ph");
            TToviEIC* ion57 = db.ions->createEIC("m/z 57", "57");
            TToviEIC* ion71 = db.ions->createEIC("m/z 71", "71", "I71");
            QVERIFY(pr && ph && ion57 && ion71);
            // The same ion name twice is one key: refused.
            QVERIFY(!db.ions->createEIC("m/z 57", "58"));
            QVERIFY(!db.ions->createEIC(QString(), "58"));

            TToviJoint* j1 = db.joints->createJoint(pr, ion57, QString());
            TToviJoint* j2 = db.joints->createJoint(pr, ion71, "Pristane by 71");
            TToviJoint* j3 = db.joints->createJoint(ph, ion57, QString());
            QVERIFY(j1 && j2 && j3);
            QCOMPARE(j1->name(), "Pristane / m/z 57");
            QVERIFY(!db.joints->createJoint(pr, ion57, "again"));
            QVERIFY(!db.joints->createJoint(nullptr, ion57, QString()));
            // A record of another database is not ours to join.
            Reference other(DatabaseToviMerged, path, &m_factory);
            TToviEIC* foreign = other.ions->createEIC("m/z 85", "85");
            QVERIFY(foreign);
            QVERIFY(!db.joints->createJoint(pr, foreign, QString()));
        }
        Reference db(DatabaseToviUser, path, &m_factory);
        QCOMPARE(db.joints->jointList().size(), 3);
        TToviJoint* j2 = db.joints->get("C-PR", "I71");
        QVERIFY(j2);
        QCOMPARE(j2->name(), "Pristane by 71");
        // By the ion's name as well as by its key.
        QCOMPARE(db.joints->get("C-PR", "m/z 71"), j2);
        QVERIFY(!db.joints->get("C-PH", "m/z 71"));
        // Read back, each joint knows its compound and its ion again.
        for (const TToviJoint* j : db.joints->jointList()) {
            QVERIFY(j->joint()->compound() && j->joint()->eic());
            QCOMPARE(j->joint()->compound()->key(), j->compoundKey());
            QCOMPARE(j->joint()->eic()->key(), j->eicKey());
        }
        QCOMPARE(db.ions->getEICByName("m/z 71")->ionId(), "I71");
        QCOMPARE(db.joints->jointsOfEIC("m/z 57").size(), 2);

        // An ion removed by the database itself takes its joints along.
        const VNObject2* ion57 = db.ions->get("m/z 57");
        QVERIFY(db.removeObject(ion57, true));
        QCOMPARE(db.joints->jointList().size(), 1);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeJoint), 1);
        // A compound removed takes its remaining joint.
        QVERIFY(db.compounds->remove(db.compounds->get("C-PR"), true, true));
        QVERIFY(db.joints->jointList().isEmpty());
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeJoint), 0);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeIon), 1);
    }

    void aliasesPerVendor()
    {
        const QString path = folder();
        const QString field = "masterName";
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            TToviCompound* pr = db.compound("C-PR", "Pristane", "Pr");
            TToviCompound* ph = db.compound("C-PH", "Phytane", "Ph");
            QVERIFY(db.aliases->aliasCreate(pr->object(), field, "VendorA", "Pristan"));
            QVERIFY(db.aliases->aliasCreate(pr->object(), field, "VendorB", "PRIST"));
            QVERIFY(db.aliases->aliasCreate(ph->object(), field, "VendorA", "Phytan"));
            QVERIFY(db.aliases->aliasCreate(ph->object(), "CAS", "VendorC", "638-36-8"));
            // One value per (object, field, vendor); an object must be ours.
            QVERIFY(!db.aliases->aliasCreate(pr->object(), field, "VendorA", "other"));
            QVERIFY(!db.aliases->aliasCreate(pr->object(), QString(), "VendorA", "x"));
            QVERIFY(!db.aliases->aliasCreate(nullptr, field, "VendorA", "x"));
            TToviCompound loose;
            QVERIFY(!db.aliases->aliasCreate(loose.object(), field, "VendorA", "x"));
        }
        Reference db(DatabaseToviUser, path, &m_factory);
        const VNObject2* pr = db.compounds->get("C-PR");
        const VNObject2* ph = db.compounds->get("C-PH");
        QCOMPARE(db.aliases->aliasList().size(), 4);
        QCOMPARE(db.aliases->vendorList(), (QStringList{"VendorA", "VendorB", "VendorC"}));
        TToviAlias* a = db.aliases->getAlias(pr, field, "VendorA");
        QVERIFY(a);
        QCOMPARE(a->getValue(), "Pristan");
        QCOMPARE(a->getParent()->object(), pr);
        QCOMPARE(db.compounds->compound(pr)->getDependantObjects().size(), 2);
        QVERIFY(!db.aliases->getAlias(pr, field, "VendorC"));
        QVERIFY(!db.aliases->getAlias(pr, field, "vendora"));

        // Update in place, with arguments that live in the alias being replaced.
        QVERIFY(db.aliases->aliasUpdate(pr, a->getField(), a->getVendor(), "2,6,10,14-TMPD"));
        QVERIFY(db.aliases->getByValue("Pristan").isEmpty());
        QCOMPARE(db.aliases->getByValue("2,6,10,14-TMPD").size(), 1);
        QVERIFY(db.aliases->aliasUpdate(pr, field, "VendorA", "2,6,10,14-TMPD"));
        QVERIFY(!db.aliases->aliasUpdate(pr, field, "VendorZ", "x"));
        QCOMPARE(db.aliases->aliasList().size(), 4);

        // One alias, then a whole vendor.
        QVERIFY(db.aliases->removeAlias(pr, field, "VendorB"));
        QVERIFY(!db.aliases->removeAlias(pr, field, "VendorB"));
        QVERIFY(db.aliases->removeVendor("VendorA"));
        QVERIFY(db.aliases->removeVendor("nobody"));
        QCOMPARE(db.aliases->vendorList(), QStringList{"VendorC"});
        QVERIFY(db.aliases->aliasesOf(pr).isEmpty());
        QCOMPARE(db.aliases->aliasesOf(ph).size(), 1);

        // What was written is what a new reader finds.
        Reference again(DatabaseToviUser, path, &m_factory);
        QCOMPARE(again.aliases->vendorList(), QStringList{"VendorC"});
        QCOMPARE(again.aliases->aliasList().size(), 1);
        QCOMPARE(again.aliases->aliasList().first()->getValue(), "638-36-8");
    }

    void awkwardTextRoundTrips_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("quotes") << "it's a \"quoted\" name; 'DROP TABLE objects; --";
        QTest::newRow("semicolons") << ";;a;b;;";
        QTest::newRow("french") << "Hopane 17α(H),21β(H) — très étudié, dérivé naphténique";
        QTest::newRow("wide") << "藿烷 🧪 ŠČŽ ﬁ";
        QTest::newRow("control") << "line one\nline two\ttab\r\n";
        QTest::newRow("separator") << QString("a") + QChar(0x1f) + "b";
        QTest::newRow("long") << QString(200000, QLatin1Char('x')) + "end";
    }

    void awkwardTextRoundTrips()
    {
        QFETCH(QString, text);
        const QString path = folder();
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            auto m = model(text, text);
            m->setFormula(text);
            QVERIFY(db.compounds->createCompound(m.get(), text));
            TToviRatio* r = db.ratios->createRatio(text, text, text, text, 1, text, text, text, text, text, text);
            QVERIFY(r);
            QVERIFY(db.ions->createEIC(text, text));
            QVERIFY(db.aliases->aliasCreate(r->object(), text, text, text));
        }
        Reference db(DatabaseToviUser, path, &m_factory);
        TToviCompound* c = db.compounds->compound(text);
        TToviRatio* r = db.ratios->ratio(text);
        const TToviEIC* ion = db.ions->getEICByName(text);
        const TToviAlias* a = db.aliases->getAlias(r ? r->object() : nullptr, text, text);
        QVERIFY(c && r && ion && a);
        QCOMPARE((QStringList{c->masterName(), c->formula(), c->toviKey(), r->literatureReference(), ion->value(),
                              a->getValue()}),
                 (QStringList{text, text, text, text, text, text}));
        QCOMPARE(db.compounds->getCompoundByName(text), c->object());
        QCOMPARE(db.compounds->getByToViKey(text.split(QLatin1Char(';'))), c);
        QCOMPARE(db.ratios->getByMasterName(text), r);
        QCOMPARE(db.ratios->getByAliasesValue(text), QList<const VNObject2*>({r->object()}));
        QCOMPARE(db.aliases->vendorList(), QStringList({text}));
    }

    void damagedFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("french");
        QTest::newRow("text") << QByteArray("this is not a database at all\n").repeated(200) << false;
        QTest::newRow("text fr") << QByteArray("pas une base\n").repeated(300) << true;
        QTest::newRow("header only") << QByteArray("SQLite format 3").append('\0').append(QByteArray(4000, '\x7f'))
                                     << false;
    }

    void damagedFilesAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, french);
        TTranslator::install(french ? "fr" : "en");
        const QString path = folder();
        const QString file = QDir(path).filePath(THeaderConnector::fileNameForType(DatabaseToviUser));
        QVERIFY(writeFile(file, content));
        TRecordingLogger logger;
        Reference db(DatabaseToviUser, path, &m_factory);
        QVERIFY(!db.opened);
        QVERIFY(!db.headerDb()->lastError().isEmpty());
        const QStringList warnings = logger.messages(MessageLoggerInterface::LevelWarning);
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.first().contains(file), qPrintable(warnings.first()));
        QVERIFY2(warnings.first().contains(french ? "ne peut pas être ouvert" : "cannot be opened"),
                 qPrintable(warnings.first()));
        // Nothing can be created and nothing is written over the file.
        QVERIFY(!db.compound("a", "a", "a"));
        QVERIFY(!db.tovi() || !db.tovi()->graphOverlaySync());
        QCOMPARE(readAll(file), content);
    }

    // Every kind of change is refused and told, in the user's language.
    void readOnlyDatabaseRefusesChanges()
    {
        const QString path = folder();
        {
            Reference db(DatabaseToviDelivered, path, &m_factory);
            TToviCompound* c = db.compound("C1", "Pristane", "Pr");
            QVERIFY(db.aliases->aliasCreate(c->object(), "masterName", "V", "x"));
            QVERIFY(db.tovi()->writeSerialNumber("ORL-1"));
        }
        TRecordingLogger logger;
        Reference db(DatabaseToviDelivered, path, &m_factory, true);
        QVERIFY(db.opened);
        const VNObject2* c = db.compounds->get("C1");
        QVERIFY(c);
        QVERIFY(!db.compounds->createCompound(nullptr, "C2"));
        QVERIFY(!plainRatio(db.ratios, "R", "R", 1));
        QVERIFY(!db.ions->createEIC("none", "-9999"));
        QVERIFY(!db.aliases->aliasCreate(c, "CAS", "V", "y"));
        QVERIFY(
            logger.contains(MessageLoggerInterface::LevelWarning, "Impossible to modify a <b>read only</b> database"));
        TTranslator::install("fr");
        QVERIFY(!db.aliases->aliasUpdate(c, "masterName", "V", "y"));
        QVERIFY(!db.aliases->removeVendor("V"));
        QVERIFY(!db.compounds->remove(c, true, true));
        QVERIFY(!db.tovi()->writeSerialNumber("changed"));
        QVERIFY(logger.contains(MessageLoggerInterface::LevelWarning,
                                "Impossible de modifier une base de données en <b>lecture seule</b>"));
        QCOMPARE(db.tovi()->serialNumber(), "ORL-1");
        QCOMPARE(db.aliases->getAlias(c, "masterName", "V")->getValue(), "x");
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeCompound), 1);
    }

    void batchWritesOnceAtTheEnd()
    {
        const QString path = folder();
        // A bare connector: the mappers tell it its database.
        Reference db(DatabaseToviUser, path, &m_factory, false, false);
        QVERIFY(!db.tovi()->referenceDatabase());
        {
            TToviBatch batch(&db);
            QVERIFY(batch.isActive());
            auto m = model("c", QString());
            for (int i = 0; i < 300; ++i) {
                m->setMasterName(QString("compound %1").arg(i));
                m->setToviKey(QString("k%1").arg(i));
                TToviCompound* c = db.compounds->createCompound(m.get(), QString());
                QVERIFY(c);
                QVERIFY(db.aliases->aliasCreate(c->object(), "masterName", "V", QString("alias %1").arg(i)));
            }
            {
                TToviBatch nested(&db);
                QVERIFY(db.ions->createEIC("m/z 191", "191"));
                QVERIFY(nested.commit());
            }
            // Records removed or changed before the end of the batch are written
            // as they stand then.
            TToviCompound* gone = db.compounds->createCompound(nullptr, "gone");
            QVERIFY(gone);
            QVERIFY(db.aliases->aliasCreate(gone->object(), "f", "W", "v"));
            QVERIFY(db.compounds->remove(gone->object(), true, true));
            const VNObject2* c7 = db.aliases->getByValue("alias 7").first()->getParent()->object();
            QVERIFY(db.aliases->aliasUpdate(c7, "masterName", "V", "seven"));
            QCOMPARE(db.tovi()->referenceDatabase(), &db);
            // Nothing is in the file before the outermost batch ends.
            QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeCompound), 0);
            QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeIon), 0);
            QCOMPARE(db.compounds->count(), 300);
            QVERIFY(batch.commit());
            QVERIFY(batch.commit());
        }
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeCompound), 300);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeAlias), 300);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeIon), 1);
        QVERIFY(!db.headerDb()->hasPendingChanges());
        // Outside a batch every creation is written at once.
        QVERIFY(db.compounds->createCompound(nullptr, QString()));
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeCompound), 301);
        Reference again(DatabaseToviUser, path, &m_factory);
        QCOMPARE(again.compounds->getByToViKey({"k299"})->masterName(), "compound 299");
        QVERIFY(again.aliases->getByValue("alias 7").isEmpty());
        QCOMPARE(again.aliases->getByValue("seven").size(), 1);
        QCOMPARE(again.aliases->getByValue("alias 8").size(), 1);
        QVERIFY(!again.compounds->compound("gone"));
        QCOMPARE(again.aliases->vendorList(), QStringList({"V"}));

        // A batch that outlives its database ends without touching it; one
        // whose header was bound anew ends by a plain flush.
        auto* doomed = new ToviTestDatabase(DatabaseToviMerged, path, &m_factory);
        TToviBatch orphan(doomed);
        QVERIFY(orphan.isActive());
        delete doomed;
        QVERIFY(!orphan.commit());
        Reference rebound(DatabaseToviMerged, path, &m_factory);
        TToviBatch stale(&rebound);
        QVERIFY(rebound.ions->createEIC("m/z 217", "217"));
        QVERIFY(rebound.headerDb()->setCurrentProject(&rebound));
        QVERIFY(stale.commit());
    }

    void serialNumberThroughAnyConnection()
    {
        const QString path = folder();
        ToviTestDatabase db(DatabaseToviUser, path, &m_factory);
        THeaderToviConnector* connector = db.tovi();
        QVERIFY(connector);
        // A new file has a serial of its own from its creation.
        QVERIFY(!connector->serialNumber().isEmpty());
        ToviTestDatabase twin(DatabaseToviUser, folder(), &m_factory);
        QVERIFY(twin.tovi() && !twin.tovi()->serialNumber().isEmpty());
        QVERIFY(twin.tovi()->serialNumber() != connector->serialNumber());
        QVERIFY(connector->writeSerialNumber("20261123-1"));
        QCOMPARE(connector->serialNumber(), "20261123-1");
        const QString file = connector->getDbFilename();
        {
            QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", file);
            other.setDatabaseName(file);
            QVERIFY(other.open());
            QCOMPARE(connector->readSerialNumber(&other), "20261123-1");
            QVERIFY(connector->writeSerialNumber("stamp;with 'quotes' é", &other));
            QCOMPARE(connector->readSerialNumber(&other), "stamp;with 'quotes' é");
            other.close();
            // A closed connection reads nothing and writes nothing.
            QCOMPARE(connector->readSerialNumber(&other), QString(""));
            QVERIFY(!connector->writeSerialNumber("x", &other));
        }
        QSqlDatabase::removeDatabase(file);
        QCOMPARE(connector->serialNumber(), "stamp;with 'quotes' é");
        QCOMPARE(connector->readSerialNumber(nullptr), QString(""));
        // A database that is not a header has no serial number to give.
        const QString stranger = QDir(path).filePath("stranger.sqlite");
        {
            QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", stranger);
            other.setDatabaseName(stranger);
            QVERIFY(other.open());
            QSqlQuery(other).exec("CREATE TABLE t (a)");
            QCOMPARE(connector->readSerialNumber(&other), QString(""));
            QVERIFY(!connector->writeSerialNumber("x", &other));
            other.close();
        }
        QSqlDatabase::removeDatabase(stranger);
    }

    void serialChangesWithEveryCommittedWrite_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("write");
        QTest::addColumn<bool>("changes");
        const QStringList writes = {"ion", "compound in a batch", "update", "alias", "removal", "nothing"};
        for (const DatabaseType type : {DatabaseToviDelivered, DatabaseToviUser, DatabaseToviMerged}) {
            for (const QString& write : writes) {
                // The merged database's serial is the merge's stamp: only the merge writes it.
                const bool changes = type != DatabaseToviMerged && write != "nothing";
                QTest::addRow("%d %s", int(type), qPrintable(write)) << int(type) << write << changes;
            }
        }
    }

    void serialChangesWithEveryCommittedWrite()
    {
        QFETCH(int, type);
        QFETCH(QString, write);
        QFETCH(bool, changes);
        const QString path = folder();
        Reference db(DatabaseType(type), path, &m_factory);
        QVERIFY(db.opened);
        TToviCompound* pristane = db.compound("1921-70-6", "pristane", "Pr");
        QVERIFY(pristane);
        QVERIFY(db.headerDb()->flushDatabase());
        const QString before = db.tovi()->serialNumber();
        QVERIFY(!before.isEmpty());

        bool written = true;
        if (write == "ion") {
            written = db.ions->createEIC("m/z 191", "191") != nullptr;
        } else if (write == "compound in a batch") {
            TToviBatch batch(&db);
            written = db.compound("638-36-8", "phytane", "Ph") && batch.commit();
        } else if (write == "update") {
            pristane->setFamily("acyclic isoprenoids");
            written = db.headerDb()->saveObjectToFile(pristane, true);
        } else if (write == "alias") {
            written = db.aliases->aliasCreate(pristane->object(), "MasterName", "V", "Pristane (V)") != nullptr;
        } else if (write == "removal") {
            QList<TDatabaseObject*> gone{pristane};
            written = db.headerDb()->removeObjects(gone, true);
        }
        QVERIFY(written);
        const QString after = db.tovi()->serialNumber();
        QCOMPARE(after != before, changes);
        // What the file says, not only the open connection.
        QCOMPARE(db.tovi()->readSerialNumberFromFile(db.fileName()), after);
    }

    void aFileOfTheFirstSchemaGainsRetentionIndices_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("opened for writing") << false;
        QTest::newRow("opened read-only") << true;
    }

    // A reference database written before compounds had a retention index opens,
    // gains the field empty when it may be written, and is otherwise unchanged.
    void aFileOfTheFirstSchemaGainsRetentionIndices()
    {
        QFETCH(bool, readOnly);
        const QString path = folder();
        QString file;
        {
            Reference db(DatabaseToviUser, path, &m_factory);
            QVERIFY(db.compound("1921-70-6", "pristane", "Pr") && db.compound("638-36-8", "phytane", "Ph"));
            QVERIFY(db.ions->createEIC("m/z 57", "57"));
            file = db.fileName();
        }
        // What the previous version wrote: schema 1, compounds without the field.
        QVERIFY(runSql(file, {"UPDATE meta SET value = '1' WHERE name = 'schema_version'"}).isValid());
        const auto rows = [&file](const QString& where) {
            return runSql(file,
                          {"SELECT group_concat(object || ':' || name || '=' || IFNULL(value, '') || '@' || position, "
                           "'|') FROM (SELECT * FROM properties "
                           + where + " ORDER BY object, name)"})
                .toString();
        };
        const QString before = rows("");
        const QString objects
            = runSql(file, {"SELECT group_concat(id || type || key || name, '|') FROM objects"}).toString();
        const QByteArray bytes = readAll(file);
        {
            Reference db(DatabaseToviUser, path, &m_factory, readOnly);
            QVERIFY(db.opened);
            for (const char* key : {"1921-70-6", "638-36-8"}) {
                TToviCompound* compound = db.compounds->compound(key);
                QVERIFY(compound);
                QVERIFY(compound->retentionIndex().isEmpty());
            }
        }
        if (readOnly) {
            QCOMPARE(readAll(file), bytes); // nothing written
            return;
        }
        QCOMPARE(runSql(file, {"SELECT value FROM meta WHERE name = 'schema_version'"}).toString(), "3");
        QCOMPARE(runSql(file, {"SELECT count(*) FROM properties WHERE name = 'RetentionIndex' AND value = ''"}).toInt(),
                 2);
        QCOMPARE(rows("WHERE name <> 'RetentionIndex'"), before);
        QCOMPARE(runSql(file, {"SELECT group_concat(id || type || key || name, '|') FROM objects"}).toString(),
                 objects);
        // A later version's file is refused, not read wrongly.
        QVERIFY(runSql(file, {"UPDATE meta SET value = '4' WHERE name = 'schema_version'"}).isValid());
        // Reference headers keep no parameter values.
        QCOMPARE(runSql(file, {"SELECT count(*) FROM sqlite_master WHERE name = 'parameter_values'"}).toInt(), 0);
        Reference newer(DatabaseToviUser, path, &m_factory);
        QVERIFY(!newer.opened);
    }

private:
    TMapperFactory m_factory;
    QTemporaryDir m_dir;
    int m_case = 0;
    QString folder() { return m_dir.filePath(QString("case%1").arg(++m_case)); }
};

QTEST_GUILESS_MAIN(TestToviStorage)
#include "tovi_storage_test.moc"
