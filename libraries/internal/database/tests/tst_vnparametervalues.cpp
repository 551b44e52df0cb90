// Parameter values through the module: the reference database's parameters in
// display order, computed on areas or heights as their process type says,
// stored with the analysis and read back after the project is reopened.
#include <tanalysismapper.h>
#include <tapplicationdata.h>
#include <tparametervalue.h>
#include <ttovicompound.h>
#include <ttranslator.h>
#include <vndatabase.h>
#include <vndatabasetovi.h>
#include <vnobject2analysis.h>
#include <vnparametervalues.h>

#include "tst_vndatabasetovihelpers.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

TCompoundMeasure found(const QString& name, double area, double height)
{
    TCompoundMeasure m;
    m.shortName = name;
    m.found = true;
    m.area = area;
    m.height = height;
    return m;
}

const VNObject2Analysis* addAnalysis(VNDatabase* db, const QString& name)
{
    auto* mapper = dynamic_cast<const Sedra::TAnalysisMapper*>(db->getMapper(VNObjectTypeAnalysis));
    if (!mapper || !mapper->createAnalysis(name))
        return nullptr;
    return db->getAnalysis(name);
}

} // namespace

class TestParameterValuesModule : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        TTranslator::install("en");
        ToviTest::useNewFolder(m_data, m_dir);
        m_reference.reset(ToviTest::makeTovi(Sedra::DatabaseToviUser));
        QVERIFY(m_reference);
        for (const char* name : {"Pr", "Ph", "P", "nC17", "Ts", "Tm"}) {
            Sedra::TToviCompound model;
            model.setMasterName(QString::fromLatin1(name));
            model.setOrlName(QString::fromLatin1(name));
            model.setToviKey(QString::fromLatin1(name));
            QVERIFY(m_reference->createCompound(&model, QString::fromLatin1(name)));
        }
        // Created out of display order, on purpose.
        QVERIFY(m_reference->createRatio("R3", "Ts/(Ts+Tm)", "Ts/(Ts+Tm)", "Ts/(Ts+Tm)", 30, "Maturity", "GC-MS",
                                         "Peak height ratio", "Terpanes", "191", ""));
        QVERIFY(m_reference->createRatio("R1", "Pr/Ph", "Pr/Ph", "Pr/Ph", 10, "Redox", "GC-MS", "Peak area ratio",
                                         "Isoprenoids", "57", ""));
        QVERIFY(m_reference->createRatio("R2", "Pr/n-C17", "Pr/n-C17", "Pr/nC17", 20, "Maturity", "GC-MS",
                                         "Peak area ratio", "Isoprenoids", "57", ""));
        QVERIFY(m_reference->createRatio("R4", "P/Py", "P/Py", "P/Py", 40, "Maturity", "GC-MS", "Peak area ratio",
                                         "Aromatics", "178", ""));
    }
    void cleanup()
    {
        m_reference.reset();
        m_data.reset();
        m_dir.reset();
    }

    void definitionsInDisplayOrder()
    {
        const QList<TParameterDefinition> definitions = VNParameterValues::definitions(m_reference.get());
        QCOMPARE(definitions.size(), 4);
        QStringList names;
        for (const TParameterDefinition& d : definitions)
            names << d.name;
        QCOMPARE(names, (QStringList{"Pr/Ph", "Pr/n-C17", "Ts/(Ts+Tm)", "P/Py"}));
        QCOMPARE(definitions.at(1).formula, QStringLiteral("Pr/nC17"));
        QCOMPARE(definitions.at(2).processType, QStringLiteral("Peak height ratio"));
        QVERIFY(VNParameterValues::compoundNames(m_reference.get()).contains("nC17"));
    }

    void computedStoredAndReadBack()
    {
        QTemporaryDir project;
        const QString path = project.path();
        {
            VNDatabase db(path, QString());
            const VNObject2Analysis* oil = addAnalysis(&db, "Oil 1");
            QVERIFY(oil);
            QString error;
            const QList<TParameterValue> values = VNParameterValues::compute(
                &db, oil, {found("Pr", 300, 10), found("Ph", 200, 40), found("Ts", 30, 9), found("Tm", 90, 3)},
                m_reference.get(), &error);
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QCOMPARE(values.size(), 4);
            QVERIFY(values.at(0).ok);
            QCOMPARE(values.at(0).value, 1.5);
            QVERIFY(!values.at(1).ok);
            QCOMPARE(values.at(1).reason, QStringLiteral("no value for nC17"));
            QVERIFY(values.at(2).ok);
            QCOMPARE(values.at(2).value, 0.75); // heights: 9 / (9 + 3)
            QCOMPARE(values.at(3).reason, QStringLiteral("unknown name 'Py'"));
        }
        VNDatabase db(path, QString());
        const QList<TParameterValue> stored = VNParameterValues::stored(&db, db.getAnalysis("Oil 1"));
        QCOMPARE(stored.size(), 4);
        QCOMPARE(stored.at(0).key, QStringLiteral("R1"));
        QCOMPARE(stored.at(0).name, QStringLiteral("Pr/Ph"));
        QCOMPARE(stored.at(0).value, 1.5);
        QVERIFY(!stored.at(1).ok);
        QCOMPARE(stored.at(1).reason, QStringLiteral("no value for nC17"));
        QCOMPARE(stored.at(2).value, 0.75);
    }

    void refusals()
    {
        QTemporaryDir project;
        VNDatabase db(project.path(), QString());
        QTemporaryDir otherFolder;
        VNDatabase other(otherFolder.path(), QString());
        const VNObject2Analysis* foreign = addAnalysis(&other, "Oil 1");
        QVERIFY(foreign);
        TTranslator::install("fr");
        QString error;
        QVERIFY(VNParameterValues::compute(&db, foreign, {}, m_reference.get(), &error).isEmpty());
        QCOMPARE(error, QStringLiteral("L'analyse n'est pas une analyse du projet"));
        QVERIFY(VNParameterValues::stored(&db, foreign).isEmpty());
    }

private:
    std::unique_ptr<TApplicationData> m_data;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<VNDatabaseTovi> m_reference;
};

QTEST_MAIN(TestParameterValuesModule)
#include "tst_vnparametervalues.moc"
