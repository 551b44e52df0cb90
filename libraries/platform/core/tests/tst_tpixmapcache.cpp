#include <tpixmapcache.h>

#include <QGuiApplication>
#include <QtTest>

namespace {

// True when at least a quarter of the pixels carry ink: an icon, not a blank.
bool isDrawn(const QImage& image)
{
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                ++inked;
        }
    }
    return inked * 4 >= image.width() * image.height() / 4;
}

} // namespace

class TestPixmapCache : public QObject
{
    Q_OBJECT

private slots:
    void namedIcons_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"graphIcon", "ratioIcon", "compound", "analysis", "grapheditor_overlay"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void namedIcons()
    {
        QFETCH(QString, name);
        const QPixmap pixmap = TPixmapCache::find(name);
        QVERIFY(!pixmap.isNull());
        QCOMPARE(pixmap.size(), QSize(TPixmapCache::size(), TPixmapCache::size()));
        QVERIFY(isDrawn(pixmap.toImage()));
        // Cached: the same pixmap every time.
        QCOMPARE(TPixmapCache::find(name).cacheKey(), pixmap.cacheKey());
        QCOMPARE(TPixmapCache::image(name), pixmap.toImage().convertToFormat(TPixmapCache::image(name).format()));
        QVERIFY(TPixmapCache::names().contains(name));
    }

    void iconsDiffer()
    {
        const QStringList names = TPixmapCache::names();
        QCOMPARE(names.size(), 5);
        for (int i = 0; i < names.size(); ++i) {
            for (int j = i + 1; j < names.size(); ++j)
                QVERIFY(TPixmapCache::image(names.at(i)) != TPixmapCache::image(names.at(j)));
        }
        QStringList sorted = names;
        sorted.sort();
        QCOMPARE(names, sorted);
    }

    void unknownNamesAreNull()
    {
        QVERIFY(TPixmapCache::find("noSuchIcon").isNull());
        QVERIFY(TPixmapCache::find(QString()).isNull());
        QVERIFY(TPixmapCache::find("GRAPHICON").isNull());
        QVERIFY(TPixmapCache::image("noSuchIcon").isNull());
        // An unknown name is not remembered as a known one.
        QVERIFY(TPixmapCache::find("noSuchIcon").isNull());
    }
};

QTEST_MAIN(TestPixmapCache)
#include "tst_tpixmapcache.moc"
