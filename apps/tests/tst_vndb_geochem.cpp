// vndb peaks and vndb identify on a run whose compounds are known: the peaks
// and measures printed are those the generator placed, and every bad request
// is a one-line refusal that leaves the project as it was.
#include "vndbrunner.h"

#include <tcmfile.h>
#include <tsyntheticrun.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

class TestVndbGeochem : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;
    QString m_project;
    QString m_reference;
    TSyntheticRun::Options m_options;

    QJsonArray json(const QStringList& arguments)
    {
        const VndbResult result = VndbRunner::run(arguments + QStringList{"--json"});
        if (result.exitCode != 0)
            qWarning("vndb failed: %s", qPrintable(result.err));
        return QJsonDocument::fromJson(result.out.toUtf8()).array();
    }

    TSyntheticRun::PlacedPeak placed(const QString& name) const
    {
        for (const auto& p : TSyntheticRun::placedPeaks(m_options)) {
            if (p.name == name)
                return p;
        }
        return TSyntheticRun::PlacedPeak();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        m_project = m_tmp.filePath("project");
        m_reference = m_tmp.filePath("reference");
        QVERIFY(QDir().mkpath(m_project + "/Analyses"));
        m_options.name = QStringLiteral("oil");
        QVERIFY(TCMFile::save(m_tmp.filePath("oil.tcm"), TSyntheticRun::generate(m_options)));
        QCOMPARE(VndbRunner::run({"import", m_project, m_tmp.filePath("oil.tcm")}).exitCode, 0);
        const VndbResult init = VndbRunner::run({"ref", "init", "--dir", m_reference});
        QVERIFY2(init.exitCode == 0, qPrintable(init.err));
    }

    // The JSON list of peaks, the placed Ts among them; the same peaks again
    // on a second detection.
    void peaksOfAnIon()
    {
        const QJsonArray peaks = json({"peaks", m_project, "oil", "--eic", "191"});
        QVERIFY(peaks.size() >= 4);
        const TSyntheticRun::PlacedPeak ts = placed("Ts");
        bool found = false;
        for (const QJsonValue& value : peaks) {
            const QJsonObject peak = value.toObject();
            QCOMPARE(peak.keys(), (QStringList{"apex", "area", "end", "height", "sn", "start", "width"}));
            QVERIFY(peak.value("start").toDouble() < peak.value("apex").toDouble());
            QVERIFY(peak.value("apex").toDouble() < peak.value("end").toDouble());
            if (std::fabs(peak.value("apex").toDouble() - ts.time) > 0.02)
                continue;
            found = true;
            const double expected = ts.ionArea(191.0);
            QVERIFY2(std::fabs(peak.value("area").toDouble() - expected) < 0.05 * expected,
                     qPrintable(QString("%1 against %2").arg(peak.value("area").toDouble()).arg(expected)));
            QVERIFY(peak.value("sn").toDouble() > 10.0);
        }
        QVERIFY(found);
        QCOMPARE(json({"peaks", m_project, "oil", "--eic", "191"}), peaks);

        const VndbResult text = VndbRunner::run({"peaks", m_project, "oil", "--tic"});
        QCOMPARE(text.exitCode, 0);
        QVERIFY(text.out.startsWith("# oil: TIC,"));
        QVERIFY(text.out.contains("apex_min\tstart_min\tend_min\tarea\theight\twidth_min\tsn"));
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("no chromatogram") << QStringList{"peaks", "P", "oil"} << 2 << "give one of --tic";
        QTest::newRow("two chromatograms")
            << QStringList{"peaks", "P", "oil", "--tic", "--eic", "57"} << 2 << "give one of --tic";
        QTest::newRow("two chromatograms, fr")
            << QStringList{"peaks", "P", "oil", "--tic", "--channel", "FID", "--lang", "fr"} << 2
            << "donnez une option parmi --tic";
        QTest::newRow("bad mass") << QStringList{"peaks", "P", "oil", "--eic", "x"} << 2
                                  << "'x' is not a positive mass";
        QTest::newRow("no such analysis")
            << QStringList{"peaks", "P", "gas", "--tic"} << 1 << "analysis 'gas' does not exist";
        QTest::newRow("no channel") << QStringList{"peaks", "P", "oil", "--channel", "FID"} << 1
                                    << "analysis 'oil' has no detector channel";
        QTest::newRow("no channel, fr") << QStringList{"peaks", "P", "oil", "--channel", "FID", "--lang", "fr"} << 1
                                        << "l'analyse 'oil' n'a aucune voie de détecteur";
        QTest::newRow("mass outside") << QStringList{"peaks", "P", "oil", "--eic", "900"} << 1
                                      << "m/z 900 is outside the masses";
        QTest::newRow("identify, bad window")
            << QStringList{"identify", "P", "oil", "--window", "-3"} << 2 << "'-3' is not an index window";
        QTest::newRow("identify, no reference")
            << QStringList{"identify", "P", "oil", "--dir", "NOREF"} << 1 << "reference folder";
        QTest::newRow("identify, no analysis")
            << QStringList{"identify", "P", "gas", "--dir", "REF"} << 1 << "analysis 'gas' does not exist";
    }

    void refusals()
    {
        QFETCH(QStringList, words);
        QFETCH(int, code);
        QFETCH(QString, message);
        words.replaceInStrings(QRegularExpression("^P$"), m_project);
        words.replaceInStrings(QRegularExpression("^REF$"), m_reference);
        words.replaceInStrings(QRegularExpression("^NOREF$"), m_tmp.filePath("noref"));
        const auto before = VndbRunner::snapshot(m_tmp.path());
        const VndbResult result = VndbRunner::run(words);
        VNDB_REFUSED(result, code, message);
        QCOMPARE(VndbRunner::snapshot(m_tmp.path()), before);
    }

    // The compounds of the sample parameters, found where they were placed,
    // with their areas; a compound without index says why, in both languages.
    void identifyTheSampleCompounds()
    {
        const QJsonArray measures = json({"identify", m_project, "oil", "--dir", m_reference});
        QVERIFY(measures.size() > 40);
        QHash<QString, QJsonObject> byName;
        for (const QJsonValue& value : measures)
            byName.insert(value.toObject().value("compound").toString(), value.toObject());
        for (const char* name : {"Pr", "Ph", "nC17", "nC18", "nC25", "nC31", "Ts", "Tm"}) {
            const QJsonObject m = byName.value(QLatin1String(name));
            QVERIFY2(m.value("found").toBool(), qPrintable(QString("%1: %2").arg(name, m.value("reason").toString())));
            const TSyntheticRun::PlacedPeak truth = placed(QLatin1String(name));
            const double expected = truth.ionArea(m.value("ion").toDouble());
            QVERIFY2(std::fabs(m.value("area").toDouble() - expected) < 0.05 * expected,
                     qPrintable(QString("%1: %2 against %3").arg(name).arg(m.value("area").toDouble()).arg(expected)));
            QVERIFY(std::fabs(m.value("index").toDouble() - truth.retentionIndex) < 2.0);
            QVERIFY(m.value("reason").toString().isEmpty());
        }
        const QJsonObject squalane = byName.value("Sq");
        QVERIFY(!squalane.value("found").toBool());
        QVERIFY(squalane.value("area").isNull());
        QVERIFY(squalane.value("reason").toString().contains("no retention index"));

        const VndbResult fr = VndbRunner::run({"identify", m_project, "oil", "--dir", m_reference, "--lang", "fr"});
        QCOMPARE(fr.exitCode, 0);
        QVERIFY(fr.out.contains("la référence ne donne pas d'indice de rétention"));
        QVERIFY(fr.err.contains("composés sur"));
    }
};

QTEST_GUILESS_MAIN(TestVndbGeochem)
#include "tst_vndb_geochem.moc"
