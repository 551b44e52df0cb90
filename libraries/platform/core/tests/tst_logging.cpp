#include <messageloggerinterface.h>
#include <tassert.h>
#include <tprintlogger.h>
#include <trecordinglogger.h>

#include "categorymessages.h"

#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <memory>

class TestLogging : public QObject
{
    Q_OBJECT

private slots:
    void init() { TAssert::clear(); }

    void printLoggerWritesOneLinePerMessage()
    {
        char* buffer = nullptr; // what the logger prints, in memory
        size_t size = 0;
        std::FILE* stream = open_memstream(&buffer, &size);
        QVERIFY(stream);
        TPrintLogger logger(stream);
        MessageLoggerInterface::Debug("hidden by default", &logger);
        MessageLoggerInterface::Information("Loading <b>compounds</b>", &logger);
        MessageLoggerInterface::Warning("Ratio <i>Pr/Ph</i> &amp; CPI &lt;missing&gt;", &logger);
        MessageLoggerInterface::Error("line one<br>line two<br/>three<BR />four", &logger);
        logger.setMinimumLevel(MessageLoggerInterface::LevelDebug);
        MessageLoggerInterface::Debug("now shown", &logger);
        std::fclose(stream);
        const QString printed = QString::fromUtf8(buffer, int(size));
        std::free(buffer);
        QCOMPARE(printed,
                 QStringLiteral("[Information] Loading compounds\n"
                                "[Warning] Ratio Pr/Ph & CPI <missing>\n"
                                "[Error] line one line two three four\n"
                                "[Debug] now shown\n"));

        TPrintLogger silent(nullptr);
        silent.log(MessageLoggerInterface::LevelError, "goes nowhere");
    }

    void plainText()
    {
        QCOMPARE(TPrintLogger::plainText("<b>x</b> &amp; y"), "x & y");
        // An escaped entity stays the text it stands for.
        QCOMPARE(TPrintLogger::plainText("&amp;lt;b&amp;gt;"), "&lt;b&gt;");
        QCOMPARE(TPrintLogger::plainText("say &quot;hi&quot;"), "say \"hi\"");
        QCOMPARE(TPrintLogger::plainText(QString()), QString());
    }

    // The process-wide logger: the printing one unless a recorder is alive.
    void recordingLoggerIsInstalledWhileAlive()
    {
        MessageLoggerInterface* const printing = MessageLoggerInterface::returnMe();
        QVERIFY(printing);
        {
            TRecordingLogger outer;
            QCOMPARE(MessageLoggerInterface::returnMe(), &outer);
            MessageLoggerInterface::Warning("w1");
            {
                TRecordingLogger inner;
                MessageLoggerInterface::Error("e1");
                QCOMPARE(inner.count(), 1);
                QVERIFY(inner.contains(MessageLoggerInterface::LevelError, "e1"));
            }
            QCOMPARE(MessageLoggerInterface::returnMe(), &outer);
            MessageLoggerInterface::Debug("d1");
            MessageLoggerInterface::Warning("w2");
            QCOMPARE(outer.messages(MessageLoggerInterface::LevelWarning), QStringList({"w1", "w2"}));
            QCOMPARE(outer.messages(MessageLoggerInterface::LevelDebug), QStringList{"d1"});
            QVERIFY(!outer.contains(MessageLoggerInterface::LevelError, "w1"));
            QCOMPARE(outer.entries().first(), TRecordingLogger::Entry(MessageLoggerInterface::LevelWarning, "w1"));

            // An explicit logger bypasses the installed one.
            TRecordingLogger aside(false);
            QCOMPARE(MessageLoggerInterface::returnMe(), &outer);
            MessageLoggerInterface::Information("i1", &aside);
            QCOMPARE(aside.count(), 1);
            QCOMPARE(outer.count(), 3);
        }
        QCOMPARE(MessageLoggerInterface::returnMe(), printing);
    }

    // Recorders that end in another order than they began must not leave a
    // dead logger installed.
    void recordersEndingOutOfOrder()
    {
        MessageLoggerInterface* const printing = MessageLoggerInterface::returnMe();
        auto first = std::make_unique<TRecordingLogger>();
        auto second = std::make_unique<TRecordingLogger>();
        first.reset();
        QCOMPARE(MessageLoggerInterface::returnMe(), second.get());
        MessageLoggerInterface::Warning("still recorded");
        QCOMPARE(second->count(), 1);
        second.reset();
        QCOMPARE(MessageLoggerInterface::returnMe(), printing);

        TRecordingLogger custom(false);
        QCOMPARE(MessageLoggerInterface::setDefault(&custom), nullptr);
        QCOMPARE(MessageLoggerInterface::returnMe(), &custom);
        QCOMPARE(MessageLoggerInterface::setDefault(nullptr), &custom);
        QCOMPARE(MessageLoggerInterface::returnMe(), printing);
    }

    void assertionRecordsLogsAndReturns()
    {
        TRecordingLogger logger;
        CategoryMessages diagnostics;
        t_assert("mapper != 0", "vndatabase", 42, true); // returns: never aborts
        QCOMPARE(TAssert::count(), 1);
        const TAssert::Failure failure = TAssert::failures().first();
        QCOMPARE(failure.expression, "mapper != 0");
        QCOMPARE(failure.file, "vndatabase");
        QCOMPARE(failure.line, 42);
        QVERIFY(TAssert::contains("mapper != 0", "vndatabase"));
        QVERIFY(!TAssert::contains("mapper != 0", "vndatabasetovi"));

        // A developer's matter: said in the library's category, not to the user.
        QCOMPARE(diagnostics.texts("vn.core", QtWarningMsg),
                 QStringList{"Assertion failed: mapper != 0 (vndatabase:42)"});
        QCOMPARE(logger.count(), 0);

        // Without logging it is still recorded; null texts are tolerated.
        t_assert("quiet", "file", 1, false);
        t_assert(nullptr, nullptr, -5, true);
        QCOMPARE(TAssert::count(), 3);
        QCOMPARE(diagnostics.texts("vn.core", QtWarningMsg).size(), 2);
        QCOMPARE(logger.count(), 0);
        QCOMPARE(TAssert::failures().last().expression, QString());

        TAssert::clear();
        QCOMPARE(TAssert::count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_logging.moc"
