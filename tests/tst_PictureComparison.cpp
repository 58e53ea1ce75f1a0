#include "PictureComparison.h"
#include "TestCase.h"

#include <QtCore/QTemporaryDir>

namespace {

// Two pixels of it are more than the tolerance, one is not.
constexpr int side = 100;

const QColor ground(100, 150, 200);
const QColor black(0, 0, 0);
const QColor almostGround(100, 150, 200 + channel_tolerance);
const QColor unlikeGround(100, 150, 200 + channel_tolerance + 1);

QImage plain(const QSize& size, const QColor& color = ground)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QImage withDots(const QVector<QPoint>& dots, const QColor& color)
{
    QImage image = plain({side, side});
    for (const QPoint& dot : dots)
        image.setPixelColor(dot, color);
    return image;
}

} // namespace

class TestPictureComparison : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        QVERIFY(plain({side, side}).save(m_stored));
        QFile::remove(m_differences);
    }

    void aPictureWithinTheTolerancePasses_data()
    {
        QTest::addColumn<QImage>("actual");
        QTest::newRow("the same") << plain({side, side});
        QTest::newRow("the same without alpha") << plain({side, side}).convertToFormat(QImage::Format_RGB32);
        QTest::newRow("all pixels differ a little") << plain({side, side}, almostGround);
        QTest::newRow("one pixel differs a lot") << withDots({{7, 9}}, black);
    }

    void aPictureWithinTheTolerancePasses()
    {
        QFETCH(const QImage, actual);
        QCOMPARE(pictureDifference(actual, m_stored, m_differences), QString());
        QVERIFY(!QFile::exists(m_differences));
    }

    void aPictureBeyondTheToleranceFails_data()
    {
        QTest::addColumn<QImage>("actual");
        QTest::addColumn<QString>("difference");
        QTest::newRow("two pixels") << withDots({{9, 7}, {0, 8}}, black)
                                    << QStringLiteral("2 of 10000 pixels differ by more than 8, the first at "
                                                      "(9, 7), by up to 200");
        QTest::newRow("just too much blue")
            << plain({side, side}, unlikeGround)
            << QStringLiteral("10000 of 10000 pixels differ by more than 8, the first at (0, 0), by up to 9");
        QTest::newRow("alpha") << plain({side, side}, QColor(100, 150, 200, 155))
                               << QStringLiteral("10000 of 10000 pixels differ by more than 8, the first at "
                                                 "(0, 0), by up to 100");
        QTest::newRow("another size")
            << plain({side, side + 1})
            << QStringLiteral("the picture is 100 x 101 pixels large, the stored one 100 x 100");
        QTest::newRow("no picture") << QImage()
                                    << QStringLiteral(
                                           "the picture is 0 x 0 pixels large, the stored one 100 x 100");
    }

    void aPictureBeyondTheToleranceFails()
    {
        QFETCH(const QImage, actual);
        QFETCH(const QString, difference);
        const QStringList lines =
            pictureDifference(actual, m_stored, m_differences).split(QStringLiteral("\n   "));
        QCOMPARE(lines,
                 QStringList({difference,
                              QStringLiteral("Stored, actual and where they differ: ") + m_differences,
                              QStringLiteral("To store the actual one: "
                                             "scripts/gallery --screenshots docs/pictures")}));
        QVERIFY(QFile::exists(m_differences));
    }

    void onePixelOfASmallPictureIsTooMuch()
    {
        QVERIFY(plain({3, 3}).save(m_stored));
        QImage actual = plain({3, 3});
        actual.setPixelColor(2, 1, black);
        QVERIFY(pictureDifference(actual, m_stored, m_differences)
                    .startsWith(QStringLiteral("1 of 9 pixels differ by more than 8, the first at (2, 1)")));
    }

    void aLetterOfALargePictureIsTooMuch()
    {
        QImage actual = plain({10 * side, 10 * side});
        QVERIFY(actual.save(m_stored));
        for (int x = 0; x < most_pixels; ++x)
            actual.setPixelColor(x, 4, black);
        QCOMPARE(pictureDifference(actual, m_stored, m_differences), QString());
        actual.setPixelColor(most_pixels, 4, black);
        QVERIFY(pictureDifference(actual, m_stored, m_differences)
                    .startsWith(QStringLiteral("11 of 1000000 pixels differ by more than 8")));
    }

    void aMissingPictureFailsAndTellsWhatWritesIt()
    {
        QVERIFY(QFile::remove(m_stored));
        QCOMPARE(pictureDifference(plain({side, side}), m_stored, m_differences),
                 QStringLiteral("there is no picture %1; \"scripts/gallery --screenshots docs/pictures\" "
                                "writes it")
                     .arg(m_stored));
    }

    void differencesThatCannotBeWrittenAreReportedAllTheSame()
    {
        const QString inAFile = m_stored + QStringLiteral("/differences.png");
        QCOMPARE(pictureDifference(plain({1, 1}), m_stored, inAFile),
                 QStringLiteral("the picture is 1 x 1 pixels large, the stored one 100 x 100; cannot write ")
                     + inAFile);
    }

    void theDifferencesAreShownBesideBothPictures()
    {
        QImage actual = withDots({{9, 7}}, black);
        actual.setPixelColor(5, 5, almostGround);
        actual.setPixelColor(0, 8, Qt::transparent);
        pictureDifference(actual, m_stored, m_differences);

        const QImage differences(m_differences);
        const int gap = 8;
        QCOMPARE(differences.size(), QSize(3 * side + 2 * gap, side));
        const auto part = [&](int number) { return differences.copy(number * (side + gap), 0, side, side); };
        QCOMPARE(part(0), plain({side, side}));
        QCOMPARE(part(1), actual);

        QImage map = plain({side, side}, Qt::white);
        map.setPixelColor(9, 7, Qt::red);
        map.setPixelColor(0, 8, Qt::red);
        map.setPixelColor(5, 5, Qt::gray);
        QCOMPARE(part(2), map);
    }

private:
    QTemporaryDir m_directory;
    QString m_stored = m_directory.filePath(QStringLiteral("stored.png"));
    // In a directory that is not there yet.
    QString m_differences = m_directory.filePath(QStringLiteral("deeper/differences.png"));
};

QUILLET_GUILESS_TEST_MAIN(TestPictureComparison)
#include "tst_PictureComparison.moc"
