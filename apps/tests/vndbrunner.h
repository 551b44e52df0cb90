#pragma once

#include <tacquisitionrun.h>
#include <tsyntheticrun.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QtTest>

/// A refusal: a normal exit with `code` and one line on standard error that holds `text`.
#define VNDB_REFUSED(result, code, text)                                                                               \
    do {                                                                                                               \
        QVERIFY(!(result).crashed);                                                                                    \
        QCOMPARE((result).exitCode, code);                                                                             \
        QCOMPARE((result).errLines().size(), 1);                                                                       \
        QVERIFY2((result).err.contains(text), qPrintable((result).err));                                               \
    } while (false)

/// What one run of vndb gave.
struct VndbResult
{
    int exitCode = -1;
    bool crashed = false;
    QString out;
    QString err;
    /// The non-empty lines of standard error.
    QStringList errLines() const;
};

/// Runs the vndb program of this build and looks at folders before and after.
class VndbRunner
{
public:
    /// Runs `vndb arguments...` in `workingDir` (the current folder when empty).
    static VndbResult run(const QStringList& arguments, const QString& workingDir = QString());

    /// Every file and folder under `dir`, by relative path, with a hash of the
    /// file's content: two equal snapshots mean nothing was touched.
    static QMap<QString, QByteArray> snapshot(const QString& dir);

    /// A small reproducible run (a few hundred scans) for the tests.
    static TAcquisitionRun smallRun(TSyntheticRun::Kind kind, quint32 seed, int scans = 240);

    static bool writeFile(const QString& path, const QByteArray& bytes);
    static QByteArray readFile(const QString& path);
};
