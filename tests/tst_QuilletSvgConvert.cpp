#include "TestCase.h"

#include "Converter.h"
#include "Drawing.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QXmlStreamReader>
#include <QtSvg/QSvgRenderer>

namespace {

constexpr int picture_size = 200;

QString document(const char* inside, const char* rootAttributes = "width='100' height='100'")
{
    return QStringLiteral(
               "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' %1>"
               "%2</svg>")
        .arg(QString::fromUtf8(rootAttributes), QString::fromUtf8(inside));
}

QImage drawnByQt(const QString& text, const Frame& frame)
{
    QXmlStreamReader reader(text);
    QSvgRenderer renderer;
    if (!renderer.load(&reader))
        return {};
    return drawWithQt(renderer, frame, picture_size);
}

QImage drawnByTheLibrary(const Conversion& conversion)
{
    Quillet::PainterPathContainer picture;
    if (!Quillet::parseSvg(conversion.text, picture))
        return {};
    return drawWithLibrary(picture, conversion.frame.size, picture_size);
}

bool isBlank(const QImage& picture)
{
    QImage blank(picture.size(), picture.format());
    blank.fill(Qt::transparent);
    return picture == blank;
}

} // namespace

// What "quillet-svg convert" makes of a document, by the pictures.
class TestQuilletSvgConvert : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void drawsWhatQtDrawsOfTheOriginal_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* inside) {
            QTest::newRow(name) << document(inside);
        };
        row("path", "<path d='M10 10h50v50z'/>");
        row("rect", "<rect x='10' y='20' width='50' height='40'/>");
        row("round rect", "<rect x='10' y='20' width='50' height='40' rx='9' ry='5' stroke='red'/>");
        row("circle", "<circle cx='50' cy='50' r='30'/>");
        row("ellipse", "<ellipse cx='50' cy='50' rx='30' ry='10' transform='rotate(30 50 50)'/>");
        row("line", "<line x1='10' y1='10' x2='90' y2='60' stroke='red' stroke-width='4'/>");
        row("polyline", "<polyline points='10,10 90,20 50,90' fill='none' stroke='red' stroke-width='4'/>");
        row("filled polyline", "<polyline points='10,10 90,20 50,90' fill='blue' stroke='red'/>");
        row("polygon", "<polygon points='10,10 90,20 50,90' stroke='red' stroke-width='4'/>");
        row("all commands",
            "<path d='M10 10L20 5H40V20C50 20 60 40 40 50S20 60 40 70Q60 80 40 90T10 80A20 10 30 0 1 10 "
            "10z'/>");
        row("joined flags", "<path d='M30 50a20 20 0 1140 0 20 20 0 01-40 0'/>");
        row("matrix", "<path transform='matrix(1 .2 .3 1 5 6)' d='M10 10h50v50z'/>");
        row("transforms in each other",
            "<g transform='translate(50 50)'><g transform='rotate(30)'><rect width='30' "
            "height='20'/></g></g>");
        row("scaled stroke", "<g transform='scale(3)'><path d='M5 5h20v20' fill='none' stroke='red'/></g>");
        row("squeezed stroke",
            "<path transform='scale(3 1)' d='M5 5h20v60' fill='none' stroke='red' stroke-width='6'/>");
        row("reused",
            "<defs><g id='a'><rect width='20' height='10'/></g></defs>"
            "<use xlink:href='#a' x='10' y='10'/><use xlink:href='#a' x='50' y='50' fill='red'/>");
        row("inherited style",
            "<g style='fill:red;stroke:blue;stroke-width:5'><circle cx='50' cy='50' r='30'/></g>");
        row("style sheet",
            "<style>.a{fill:red}#b{fill:blue}</style>"
            "<rect class='a' width='40' height='40'/><rect id='b' x='50' width='40' height='40'/>");
        row("current colour", "<g color='red'><rect fill='currentColor' width='40' height='40'/></g>");
        row("odd-even rule of a group",
            "<g fill-rule='evenodd'><path d='M10 10h80v80h-80zM30 30h40v40h-40z'/></g>");
        row("nonzero rule by default", "<path d='M10 10h80v80h-80zM30 30h40v40h-40z'/>");
        row("opacities in each other",
            "<g opacity='.5'><rect width='60' height='60' fill='red' opacity='.5' fill-opacity='.8'/></g>");
        row("opacity of an inherited fill",
            "<g fill='blue' fill-opacity='.5'><rect width='60' height='60' opacity='.5'/></g>");
        row("opacity of fill and stroke",
            "<rect x='20' y='20' width='50' height='50' fill='red' stroke='blue' stroke-width='20' "
            "opacity='.4'/>");
        row("caps", "<path d='M20 20h50M20 50h50' stroke='red' stroke-width='20' stroke-linecap='round'/>");
        row("square caps", "<path d='M20 20h50' stroke='red' stroke-width='20' stroke-linecap='square'/>");
        row("joins",
            "<path d='M20 20h50v50' fill='none' stroke='red' stroke-width='20' stroke-linejoin='round'/>");
        row("bevels",
            "<path d='M20 20h50v50' fill='none' stroke='red' stroke-width='20' stroke-linejoin='bevel'/>");
        row("sharp corner that is cut",
            "<path d='M10 10L90 20 10 30' fill='none' stroke='red' stroke-width='9'/>");
        row("sharp corner that is not",
            "<path d='M10 10L60 20 10 30' fill='none' stroke='red' stroke-width='9' "
            "stroke-miterlimit='20'/>");
        row("low limit",
            "<path d='M20 20L70 45 20 70' fill='none' stroke='red' stroke-width='9' stroke-miterlimit='1'/>");
        row("dashes",
            "<path d='M10 50h80' stroke='red' stroke-width='8' stroke-dasharray='10 5' "
            "stroke-dashoffset='3'/>");
        row("dashes around a corner",
            "<path d='M10 10h70v70' fill='none' stroke='red' stroke-width='4' stroke-dasharray='17 3'/>");
        row("no fill", "<rect x='10' y='10' width='50' height='50' fill='none' stroke='red'/>");
        row("hidden",
            "<rect width='20' height='20'/><rect x='40' width='20' height='20' display='none'/>"
            "<rect x='70' width='20' height='20' visibility='hidden'/>");
        row("link and switch",
            "<a><rect width='20' height='20'/></a><switch><rect x='50' width='20' height='20'/>"
            "<circle r='90'/></switch>");
        row("not closed and closed",
            "<path d='M20 20h40v40h-40v-40M70 20h20v20h-20z' fill='none' stroke='red' stroke-width='9'/>");
        row("small", "<g transform='scale(.001)'><path d='M10000 10000h50000v50000z'/></g>");
    }

    void drawsWhatQtDrawsOfTheOriginal()
    {
        QFETCH(QString, text);
        const Conversion conversion = convertSvg(text);
        QVERIFY2(conversion.error.isEmpty(), qPrintable(conversion.error));
        compareWithQt(conversion, text);
        for (const Finding& each : conversion.losses)
            QVERIFY2(each.weight == Finding::Note, qPrintable(each.message));
    }

    // Qt's renderer takes these otherwise than SVG says. The second document says the same so that it takes
    // it rightly.
    void drawsWhatSvgSays_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("plain");
        const auto row = [](const char* name, const char* inside, const char* plain) {
            QTest::newRow(name) << document(inside) << document(plain);
        };
        const char* const red = "<rect width='50' height='50' fill='red'/>";
        const char* const half = "<rect width='50' height='50' fill='red' fill-opacity='.5'/>";
        row("style before attribute", "<rect style='fill:red' fill='blue' width='50' height='50'/>", red);
        row("style sheet before attribute",
            "<style>rect{fill:red}</style><rect fill='blue' width='50' height='50'/>",
            red);
        row("style sheet behind the element",
            "<rect class='a' width='50' height='50'/><style>.a{fill:red}</style>",
            red);
        row("stronger rule",
            "<style>.a{fill:red}rect{fill:blue}</style><rect class='a' width='50' height='50'/>",
            red);
        row("style sheet for the root", "<style>svg{fill:red}</style><rect width='50' height='50'/>", red);
        row("#rrggbbaa", "<rect fill='#ff000080' width='50' height='50'/>", half);
        row("#rgba",
            "<rect fill='#f008' width='50' height='50'/>",
            "<rect width='50' height='50' fill='red' fill-opacity='.5333'/>");
        row("rgba()", "<rect fill='rgba(255, 0, 0, .5)' width='50' height='50'/>", half);
        row("rgba() and an opacity",
            "<rect fill='rgba(255, 0, 0, .5)' fill-opacity='50%' width='50' height='50'/>",
            "<rect width='50' height='50' fill='red' fill-opacity='.25'/>");
        row("hsl()", "<rect fill='hsl(0, 100%, 50%)' width='50' height='50'/>", red);
        row("blanks around a colour", "<rect fill=' red ' width='50' height='50'/>", red);
        row("colour for a paint that is missing", "<rect fill='url(#no) red' width='50' height='50'/>", red);
        row("opacity in percent", "<rect opacity='50%' fill='red' width='50' height='50'/>", half);
        row("millimetres",
            "<rect width='25.4mm' height='.5in' fill='red'/>",
            "<rect width='96' height='48' fill='red'/>");
        row("percentages",
            "<svg viewBox='0 0 20 10' width='100' height='50'>"
            "<rect x='10%' y='10%' width='50%' height='50%' fill='red'/></svg>",
            "<rect x='10' y='5' width='50' height='25' fill='red'/>");
        row("percentages of the diagonal",
            "<svg viewBox='0 0 70 10' width='70' height='10'>"
            "<circle cx='50%' cy='50%' r='8%' fill='red' stroke-width='2%' stroke='blue'/></svg>",
            "<circle cx='35' cy='5' r='4' fill='red' stroke-width='1' stroke='blue'/>");
        row("important style",
            "<style>.a{fill:red !important}</style><rect class='a' style='fill:blue' width='50' "
            "height='50'/>",
            red);
        row("style of a property without a name",
            "<rect style=' : blue; fill:red' width='50' height='50'/>",
            red);
        row("dashes with units",
            "<path style='stroke-dasharray:20px, .125in' stroke='red' stroke-width='9' d='M0 20h90'/>",
            "<path stroke-dasharray='20 12' stroke='red' stroke-width='9' d='M0 20h90'/>");
        row("symbol",
            "<symbol id='a' viewBox='0 0 10 10'><rect width='5' height='5' fill='red'/></symbol>"
            "<use xlink:href='#a' width='50' height='50' x='10' y='20'/>",
            "<rect x='10' y='20' width='25' height='25' fill='red'/>");
        row("inner document",
            "<svg x='10' y='20' width='50' height='50' viewBox='0 0 10 10'><rect width='5' height='5' "
            "fill='red'/></svg>",
            "<rect x='10' y='20' width='25' height='25' fill='red'/>");
        row("symbol as large as the document",
            "<symbol id='a' viewBox='0 0 10 10'><rect width='5' height='5' fill='red'/></symbol>"
            "<use xlink:href='#a'/>",
            "<rect width='50' height='50' fill='red'/>");
        row("inner document in percent",
            "<svg x='10px' y='10%' width='50%' height='50%' viewBox='0 0 10 10'>"
            "<svg viewBox='0 0 20 20'><rect width='20' height='10' fill='red'/></svg></svg>",
            "<rect x='10' y='10' width='50' height='25' fill='red'/>");
        row("view box far away",
            "<svg width='50' height='50' viewBox='1234567.5 7654321.5 10 10'>"
            "<rect x='1234567.5' y='7654321.5' width='10' height='10' fill='red'/></svg>",
            red);
        row("foreign element",
            "<rect width='50' height='50' fill='red'/><x:rect xmlns:x='urn:x' width='90' height='90'/>",
            red);
        row("flat arc", "<path d='M10 10A0 9 0 0 1 60 10L60 60z'/>", "<path d='M10 10L60 10L60 60z'/>");
        row("path with an error", "<path d='M10 10L60 10L60 60z!'/>", "<path d='M10 10L60 10L60 60z'/>");
        row("closed dot",
            "<path d='M50 50z' stroke='red' stroke-width='40' stroke-linecap='round'/>",
            "<circle cx='50' cy='50' r='20' fill='red'/>");
        row("uses in each other",
            "<g id='a'><rect width='50' height='50' fill='red'/></g><use xlink:href='#b' x='-99'/>"
            "<g id='b'><use xlink:href='#a'/></g>",
            "<rect width='50' height='50' fill='red'/>");
        row("dot",
            "<path d='M50 50h0' stroke='red' stroke-width='40' stroke-linecap='round'/>",
            "<circle cx='50' cy='50' r='20' fill='red'/>");
    }

    void drawsWhatSvgSays()
    {
        QFETCH(QString, text);
        QFETCH(QString, plain);
        compareWithQt(convertSvg(text), plain);
    }

    void bakesTheViewBoxIn_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QRectF>("box"); // of a square that fills the view box, in the drawing
        const auto row = [](const char* attributes, const QRectF& box) {
            QTest::newRow(attributes) << QString::fromLatin1(attributes) << box;
        };
        row("viewBox='0 0 10 10'", QRectF(0, 0, 10, 10));
        row("viewBox='-5 -5 10 10'", QRectF(0, 0, 10, 10));
        row("viewBox='0 0 10 10' width='50' height='50'", QRectF(0, 0, 50, 50));
        row("viewBox='0 0 10 10' width='50'", QRectF(0, 0, 50, 50));
        row("viewBox='0 0 10 10' width='100%' height='100%'", QRectF(0, 0, 10, 10));
        row("viewBox='0 0 10 10' width='1in' height='1in'", QRectF(0, 0, 96, 96));
        row("viewBox='0 0 10 10' width='50' height='100'", QRectF(0, 25, 50, 50));
        row("viewBox='0 0 10 10' width='50' height='100' preserveAspectRatio='xMinYMin'",
            QRectF(0, 0, 50, 50));
        row("viewBox='0 0 10 10' width='50' height='100' preserveAspectRatio='xMaxYMax meet'",
            QRectF(0, 50, 50, 50));
        row("viewBox='0 0 10 10' width='50' height='100' preserveAspectRatio='none'", QRectF(0, 0, 50, 100));
        row("viewBox='0 0 10 10' width='50' height='100' preserveAspectRatio='xMidYMid slice'",
            QRectF(-25, 0, 100, 100));
    }

    void bakesTheViewBoxIn()
    {
        QFETCH(QString, attributes);
        QFETCH(QRectF, box);
        const bool moved = attributes.contains(QLatin1String("-5"));
        const Conversion conversion = convertSvg(document(
            moved ? "<rect x='-5' y='-5' width='10' height='10'/>" : "<rect width='10' height='10'/>",
            attributes.toLatin1().constData()));
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
        QCOMPARE(int(picture.getPaths().size()), 1);
        QCOMPARE(picture.getPaths().front()->getPath().boundingRect(), box);
    }

    void writesWhatOtherReadersDrawAlike()
    {
        const QString text = document("<g transform='rotate(5)'><circle cx='50' cy='50' r='30' stroke='red' "
                                      "stroke-width='5' opacity='.5'/></g>");
        const Conversion conversion = convertSvg(text);
        const QImage again = drawnByQt(conversion.text, conversion.frame);
        QVERIFY(compare(drawnByQt(text, conversion.frame), again).isSmall());
    }

    void aConvertedDocumentConvertsToItself()
    {
        const Conversion once = convertSvg(
            document("<path d='M10 10h50v50z'/><path d='M10 10h50v50' stroke='red' fill-opacity='.5'/>"));
        QCOMPARE(convertSvg(once.text).text, once.text);
    }

    void saysWhatIsLost_data()
    {
        QTest::addColumn<QString>("inside");
        QTest::addColumn<QString>("rule");
        const auto row = [](const char* rule, const char* inside) {
            QTest::newRow(inside) << QString::fromLatin1(inside) << QString::fromLatin1(rule);
        };
        row("text", "<text>t</text>");
        row("image", "<image xlink:href='a.png' width='9' height='9'/>");
        row("image", "<foreignObject/>");
        row("filter", "<rect filter='url(#a)' width='9' height='9'/>");
        row("filter", "<rect style='filter:url(#a)' width='9' height='9'/>");
        row("mask", "<rect mask='url(#a)' width='9' height='9'/>");
        row("clip-path", "<g clip-path='url(#a)'><rect width='9' height='9'/></g>");
        row("marker", "<path marker-end='url(#a)' d='M0 0h9'/>");
        row("gradient",
            "<linearGradient id='a'><stop/></linearGradient><rect fill='url(#a)' width='9' height='9'/>");
        row("pattern", "<pattern id='a'/><rect fill='url(#a)' width='9' height='9'/>");
        row("use", "<use xlink:href='other.svg#a'/>");
        row("style-sheet", "<style>@media print{rect{fill:red}}</style>");
        row("style-transform", "<rect style='transform:scale(2)' width='9' height='9'/>");
        row("unknown-property", "<rect style='mix-blend-mode:multiply' width='9' height='9'/>");
        row("unknown-property", "<rect paint-order='stroke' width='9' height='9'/>");
        row("text", "<defs><text id='a'>t</text></defs><use xlink:href='#a'/>");
        row("text", "<symbol id='a'><g><text>t</text></g></symbol><use xlink:href='#a'/>");
        row("unknown-element", "<flowRoot><flowPara>t</flowPara></flowRoot>");
        row("color", "<rect fill='var(--a, red)' width='9' height='9'/>");
        row("color", "<rect style='stroke:oklch(60% .2 30)' width='9' height='9'/>");
        row("dashes", "<path stroke-dasharray='10% 5' stroke='red' d='M0 0h9'/>");
        row("font-unit", "<rect width='3em' height='9'/>");
    }

    void saysWhatIsLost()
    {
        QFETCH(QString, inside);
        QFETCH(QString, rule);
        const Conversion conversion = convertSvg(document(inside.toUtf8().constData()));
        QVERIFY(conversion.error.isEmpty());
        QStringList lost;
        for (const Finding& each : conversion.losses) {
            if (each.weight == Finding::Lost)
                lost.append(each.rule);
        }
        QCOMPARE(lost, QStringList{rule});
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
    }

    void saysThatAStyleSheetInAnotherFileIsNotRead()
    {
        const Conversion conversion =
            convertSvg(QStringLiteral("<?xml version='1.0'?>\n <?xml-stylesheet href='a.css'?>\n<svg/>"));
        QCOMPARE(conversion.losses.size(), 1);
        QCOMPARE(conversion.losses.first().rule, QStringLiteral("style-sheet"));
        QCOMPARE(conversion.losses.first().position.line, 2);
        QCOMPARE(conversion.losses.first().position.column, 2);
    }

    void namesSelectorsThatQtFollows()
    {
        const Conversion conversion =
            convertSvg(document("<style>g rect{fill:red}</style><g><rect width='9' height='9'/></g>"));
        QCOMPARE(conversion.losses.size(), 1);
        QCOMPARE(conversion.losses.first().weight, Finding::Note);
        QCOMPARE(conversion.losses.first().rule, QStringLiteral("selector"));
    }

    void namesTheOpacityOfWhatAUseRepeats()
    {
        const Conversion conversion = convertSvg(
            document("<g id='a'><rect width='9' height='9'/><rect width='5' height='5'/></g>"
                     "<rect id='b' width='9' height='9'/>"
                     "<use xlink:href='#b' opacity='.5'/><use xlink:href='#a' opacity='.5' x='20'/>"));
        QCOMPARE(conversion.losses.size(), 1);
        QCOMPARE(conversion.losses.first().weight, Finding::Note);
        QCOMPARE(conversion.losses.first().rule, QStringLiteral("group-opacity"));
    }

    void aGradientBecomesItsMeanColour()
    {
        const Conversion conversion =
            convertSvg(document("<linearGradient id='a'><stop offset='0' stop-color='#000000'/>"
                                "<stop offset='1' stop-color='#ffffff'/></linearGradient>"
                                "<rect fill='url(#a)' width='50' height='50'/>"));
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
        QCOMPARE(int(picture.getPaths().size()), 1);
        QCOMPARE(picture.getPaths().front()->getBrush().color().name(), QStringLiteral("#808080"));
    }

    void refusesWhatNoEndIsInSight_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("error");
        QTest::newRow("use of itself") << document("<g id='a'><use xlink:href='#a'/></g>")
                                       << QStringLiteral("<use> refers to what it stands in");
        QTest::newRow("use of each other")
            << document("<g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g>")
            << QStringLiteral("<use> refers to what it stands in");
        QString multiplied = QStringLiteral("<rect id='a0'/>");
        for (int i = 1; i < 30; ++i)
            multiplied +=
                QStringLiteral("<g id='a%1'><use href='#a%2'/><use href='#a%2'/></g>").arg(i).arg(i - 1);
        QTest::newRow("use that multiplies") << document(multiplied.toLatin1().constData())
                                             << QStringLiteral("<use> repeats more than 1,000,000 elements");
        QString chain;
        for (int i = 0; i < 2000; ++i)
            chain += QStringLiteral("<symbol id='s%1'><use href='#s%2'/></symbol>").arg(i).arg(i + 1);
        QTest::newRow("deep by uses")
            << document((chain + QStringLiteral("<use href='#s0'/>")).toLatin1().constData())
            << QStringLiteral("elements are nested more than 2000 deep");
        QTest::newRow("deep") << document(
            (QStringLiteral("<g>").repeated(2000) + QStringLiteral("</g>").repeated(2000))
                .toLatin1()
                .constData()) << QStringLiteral("elements are nested more than 2000 deep");
    }

    void refusesWhatNoEndIsInSight()
    {
        QFETCH(QString, text);
        QFETCH(QString, error);
        const Conversion conversion = convertSvg(text);
        QCOMPARE(conversion.error, error);
        QVERIFY(conversion.text.isEmpty());
    }

private:
    static void compareWithQt(const Conversion& conversion, const QString& original)
    {
        const QImage expected = drawnByQt(original, conversion.frame);
        const QImage actual = drawnByTheLibrary(conversion);
        QVERIFY(!actual.isNull());
        QVERIFY(!isBlank(expected));
        const Difference difference = compare(expected, actual);
        QVERIFY2(difference.isSmall(),
                 qPrintable(QStringLiteral("%1 % of the pixels differ, the worst by %2")
                                .arg(difference.share * 100)
                                .arg(difference.worst)));
    }
};

QUILLET_TEST_MAIN(TestQuilletSvgConvert)
#include "tst_QuilletSvgConvert.moc"
