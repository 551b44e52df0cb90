#include <tprogressbarmgr.h>

#include <QtTest>

#include <climits>
#include <tuple>

namespace {

using Report = std::tuple<int, int, QString>;

// Records what a listener would show, and removes itself at the end.
class Recorder
{
public:
    Recorder()
    {
        TProgressBarMgr::setListener(
            [this](int step, int steps, const QString& text) { reports.append(Report(step, steps, text)); });
    }
    ~Recorder() { TProgressBarMgr::setListener(TProgressBarMgr::Listener()); }
    QList<Report> reports;
};

} // namespace

class TestProgressBarMgr : public QObject
{
    Q_OBJECT

private slots:
    void listenerSeesEveryStep()
    {
        QVERIFY(!TProgressBarMgr::terminalOutput()); // silent in tests
        Recorder recorder;
        {
            TProgressBarMgr bar(4, "Compounds");
            bar.setProgress(1);
            bar.setProgress(2, "Ratios");
            bar.setProgress(4, QString());
        }
        QCOMPARE(recorder.reports,
                 QList<Report>({Report(0, 4, "Compounds"), Report(1, 4, "Compounds"), Report(2, 4, "Ratios"),
                                Report(4, 4, "Ratios")}));
    }

    // Steps outside 0..steps are clamped; no steps at all is a valid bar.
    void outOfRangeSteps()
    {
        Recorder recorder;
        TProgressBarMgr bar(5, "x");
        bar.setProgress(9);
        QCOMPARE(bar.progress(), 5);
        bar.setProgress(-3);
        QCOMPARE(bar.progress(), 0);
        bar.setProgress(INT_MAX);
        QCOMPARE(bar.progress(), 5);

        TProgressBarMgr none(0, "empty");
        none.setProgress(1);
        QCOMPARE(none.progress(), 0);
        TProgressBarMgr negative(-4, "negative");
        QCOMPARE(negative.steps(), 0);
        negative.setProgress(2);
        QCOMPARE(negative.progress(), 0);
        QCOMPARE(recorder.reports.last(), Report(0, 0, "negative"));
    }

    void rendering()
    {
        QCOMPARE(TProgressBarMgr::render(3, 5, "Loading", 10), "Loading [######....] 3/5");
        QCOMPARE(TProgressBarMgr::render(0, 12, "t", 4), "t [....]  0/12");
        // Nothing to do is shown as done.
        QCOMPARE(TProgressBarMgr::render(0, 0, "t", 4), "t [####] 0/0");
        // Out-of-range values keep the bar its width.
        QCOMPARE(TProgressBarMgr::render(9, 5, "t", 4), "t [####] 5/5");
        QCOMPARE(TProgressBarMgr::render(-2, 5, "t", 4), "t [....] 0/5");
        QCOMPARE(TProgressBarMgr::render(1, 2, "t", -3), "t [] 1/2");
        // Large counts do not overflow the fill computation.
        QCOMPARE(TProgressBarMgr::render(INT_MAX / 2, INT_MAX, "t", 30).count(QLatin1Char('#')), 14);
    }
};

QTEST_GUILESS_MAIN(TestProgressBarMgr)
#include "tst_tprogressbarmgr.moc"
