#include "TestCase.h"

#include <Quillet/MessageDialog.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QResource>
#include <QtGui/QImageReader>
#include <QtXml/QDomDocument>

namespace {

const char* const message_box_sheet = "QMessageBox\n"
                                      "{\n"
                                      "    background-color: #f4f4f4;\n"
                                      "}\n"
                                      "\n"
                                      "QMessageBox QWidget\n"
                                      "{\n"
                                      "    font-family: \"Open Sans\";\n"
                                      "    font-size: 13px;\n"
                                      "    font-weight: normal;\n"
                                      "}\n"
                                      "\n"
                                      "QMessageBox QLabel\n"
                                      "{\n"
                                      "    color: #555555;\n"
                                      "}\n"
                                      "\n"
                                      "QMessageBox QPushButton\n"
                                      "{\n"
                                      "    min-width: 48px;\n"
                                      "    min-height: 32px;\n"
                                      "    margin-top: 16px;\n"
                                      "    padding: 0px 16px;\n"
                                      "    border-radius: 4px;\n"
                                      "    background-color: #cfcfcf;\n"
                                      "    color: #555555;\n"
                                      "}\n"
                                      "\n"
                                      "QMessageBox QPushButton:hover\n"
                                      "{\n"
                                      "    background-color: #a9a9a9;\n"
                                      "}\n"
                                      "\n"
                                      "QMessageBox QPushButton:pressed\n"
                                      "{\n"
                                      "    padding: 2px 13px 1px 15px;\n"
                                      "    background-color: #a9a9a9;\n"
                                      "    border: 2px inset #545454;\n"
                                      "}\n";

const char* const primary_button_sheet = "QPushButton\n"
                                         "{\n"
                                         "    background-color: #233f7a;\n"
                                         "    color: #ffffff;\n"
                                         "}\n"
                                         "\n"
                                         "QPushButton:hover\n"
                                         "{\n"
                                         "    background-color: #4a90e2;\n"
                                         "}\n"
                                         "\n"
                                         "QPushButton:pressed\n"
                                         "{\n"
                                         "    background-color: #4a90e2;\n"
                                         "    border: 2px inset #2a5281;\n"
                                         "}\n";

// Pictures are checked at this many pixels a user unit.
constexpr int scale = 8;

QByteArray content(const QString& resource)
{
    QFile file(resource);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage render(const QString& icon)
{
    QImageReader reader(icon);
    reader.setScaledSize(QSize(64, 64) * scale);
    return reader.read().convertToFormat(QImage::Format_ARGB32);
}

QColor colorAt(const QImage& image, QPointF point)
{
    return image.pixelColor((point * scale).toPoint());
}

// The pixels that are not transparent, in user units.
QRectF paintedArea(const QImage& image)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 127)
                area |= QRect(x, y, 1, 1);
        }
    }
    return {QPointF(area.topLeft()) / scale, QSizeF(area.size()) / scale};
}

} // namespace

class TestResources : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The resources come with the library, and the linker drops a library that is not used.
        const Quillet::MessageDialog dialog;
    }

    void resourcesAreStoredUncompressedInTheirExactSize_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("size");
        QTest::newRow("box sheet") << QStringLiteral(":/QSS/MessageBox.qss") << 581;
        QTest::newRow("primary button sheet") << QStringLiteral(":/QSS/PrimaryButton.qss") << 208;
        QTest::newRow("critical icon") << QStringLiteral(":/Icons/Critical.svg") << 2220;
        QTest::newRow("information icon") << QStringLiteral(":/Icons/Information.svg") << 3108;
        QTest::newRow("question icon") << QStringLiteral(":/Icons/Question.svg") << 3072;
        QTest::newRow("warning icon") << QStringLiteral(":/Icons/Warning.svg") << 1925;
    }

    void resourcesAreStoredUncompressedInTheirExactSize()
    {
        QFETCH(QString, path);
        QFETCH(int, size);
        const QResource resource(path);
        QVERIFY(resource.isValid());
        QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
        QCOMPARE(resource.size(), qint64(size));
        QCOMPARE(content(path).size(), size);
    }

    void thereAreNoOtherResources()
    {
        QCOMPARE(QDir(QStringLiteral(":/QSS")).entryList().size(), 2);
        QCOMPARE(QDir(QStringLiteral(":/Icons")).entryList().size(), 4);
    }

    void theStyleSheetsAreExact()
    {
        QCOMPARE(content(QStringLiteral(":/QSS/MessageBox.qss")), QByteArray(message_box_sheet));
        QCOMPARE(content(QStringLiteral(":/QSS/PrimaryButton.qss")), QByteArray(primary_button_sheet));
    }

    void anIconIsOneClosedEvenOddShape_data() { iconRows(); }

    void anIconIsOneClosedEvenOddShape()
    {
        QFETCH(QString, path);
        QFETCH(QString, fill);
        QFETCH(QString, outline);
        QDomDocument document;
        QVERIFY(document.setContent(content(path)));

        const QDomElement root = document.documentElement();
        QCOMPARE(root.tagName(), QStringLiteral("svg"));
        QCOMPARE(root.attribute(QStringLiteral("width")), QStringLiteral("64"));
        QCOMPARE(root.attribute(QStringLiteral("height")), QStringLiteral("64"));
        QCOMPARE(root.attribute(QStringLiteral("viewBox")), QStringLiteral("0 0 64 64"));
        QCOMPARE(root.childNodes().size(), 1);

        const QDomElement shape = root.firstChildElement(QStringLiteral("path"));
        QVERIFY(!shape.isNull());
        QCOMPARE(shape.attribute(QStringLiteral("fill")), fill);
        QCOMPARE(shape.attribute(QStringLiteral("fill-rule")), QStringLiteral("evenodd"));
        QCOMPARE(shape.attribute(QStringLiteral("stroke")), outline);
        QCOMPARE(shape.attribute(QStringLiteral("stroke-width")), QStringLiteral("1.5"));

        const QString data = shape.attribute(QStringLiteral("d"));
        QVERIFY(data.count(QLatin1Char('M')) >= 2);
        QCOMPARE(data.count(QLatin1Char('Z')), data.count(QLatin1Char('M')));
    }

    void anIconFillsItsSizeInTheMiddleOfTheCanvas_data() { iconRows(); }

    void anIconFillsItsSizeInTheMiddleOfTheCanvas()
    {
        QFETCH(QString, path);
        QFETCH(QSizeF, size);
        const QRectF area = paintedArea(render(path));
        const QSizeF expected = size + QSizeF(1.5, 1.5); // the outline, half of it outside
        const double pixel = 1.0 / scale;
        QVERIFY2(qAbs(area.width() - expected.width()) <= 2 * pixel, QByteArray::number(area.width()));
        QVERIFY2(qAbs(area.height() - expected.height()) <= 2 * pixel, QByteArray::number(area.height()));
        QVERIFY(qAbs(area.center().x() - 32) <= pixel);
        QVERIFY(qAbs(area.center().y() - 32) <= pixel);
    }

    void theSignOfAnIconIsCutOut_data() { iconRows(); }

    void theSignOfAnIconIsCutOut()
    {
        QFETCH(QString, path);
        QFETCH(QString, fill);
        QFETCH(QString, outline);
        QFETCH(QVector<QPointF>, onSign);
        QFETCH(QVector<QPointF>, onFill);
        QFETCH(QVector<QPointF>, onOutline);
        const QImage image = render(path);
        for (const QPointF& point : onSign)
            QCOMPARE(colorAt(image, point).alpha(), 0);
        for (const QPointF& point : onFill)
            QCOMPARE(colorAt(image, point).name(QColor::HexArgb), QColor(fill).name(QColor::HexArgb));
        for (const QPointF& point : onOutline)
            QCOMPARE(colorAt(image, point).name(QColor::HexArgb), QColor(outline).name(QColor::HexArgb));
    }

private:
    static void iconRows()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("fill");
        QTest::addColumn<QString>("outline");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QVector<QPointF>>("onSign");
        QTest::addColumn<QVector<QPointF>>("onFill");
        QTest::addColumn<QVector<QPointF>>("onOutline");

        using Points = QVector<QPointF>;
        const Points aroundTheDisc = {{32, 12}, {13, 32}, {51, 32}, {32, 52}};
        const Points rimOfTheDisc = {{32, 10}, {10, 32}, {54, 32}, {32, 54}};
        const QString blue = QStringLiteral("#bed8ee");
        const QString darkBlue = QStringLiteral("#537693");
        QTest::newRow("Critical") << QStringLiteral(":/Icons/Critical.svg") << QStringLiteral("#ff0000")
                                  << QStringLiteral("#800000") << QSizeF(44, 44)
                                  << Points{{32, 32}, {25, 25}, {39, 25}, {25, 39}, {39, 39}} << aroundTheDisc
                                  << rimOfTheDisc;
        QTest::newRow("Information") << QStringLiteral(":/Icons/Information.svg") << blue << darkBlue
                                     << QSizeF(44, 44) << Points{{36, 18}, {31, 36}, {32.5, 30}, {29.5, 43}}
                                     << aroundTheDisc << rimOfTheDisc;
        QTest::newRow("Question") << QStringLiteral(":/Icons/Question.svg") << blue << darkBlue
                                  << QSizeF(44, 44) << Points{{32, 45}, {32, 18}, {38.5, 24}, {32, 36}}
                                  << Points{{13, 32}, {51, 32}, {32, 25}} << rimOfTheDisc;
        QTest::newRow("Warning") << QStringLiteral(":/Icons/Warning.svg") << QStringLiteral("#f9bd2d")
                                 << QStringLiteral("#ecaa07") << QSizeF(41, 44)
                                 << Points{{32, 46}, {32, 24}, {32, 36}}
                                 << Points{{32, 14}, {18, 50}, {46, 50}} << Points{{32, 10}, {32, 54}};
    }
};

QUILLET_TEST_MAIN(TestResources)
#include "tst_Resources.moc"
