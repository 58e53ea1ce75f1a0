#include "TestCase.h"

#include "Checker.h"
#include "Converter.h"
#include "Drawing.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QXmlStreamReader>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <cmath>

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

QStringList lostRules(const Conversion& conversion)
{
    QStringList rules;
    for (const Finding& each : conversion.losses) {
        if (each.weight == Finding::Lost)
            rules.append(each.rule);
    }
    return rules;
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
        row("keywords of styles in capitals",
            "<style>.a{Display:NONE}</style><rect class='a' width='90' height='90'/>"
            "<rect style='visibility:Hidden' width='90' height='90'/>"
            "<rect style='stroke:None;fill:Red' stroke='blue' width='50' height='50'/>"
            "<path style='fill:NONE;stroke:NONE' d='M0 0h90v90z'/>"
            "<path style='fill:url(#x) NONE' d='M0 0h90v90z'/>",
            red);
        row("keywords of strokes in capitals",
            "<path style='stroke-linecap:ROUND;stroke-linejoin:Bevel;fill:none;stroke:currentcolor;"
            "stroke-dasharray:NONE;color:RED' stroke-width='20' d='M20 20h50v50'/>",
            "<path stroke-linecap='round' stroke-linejoin='bevel' fill='none' stroke='red' "
            "stroke-width='20' d='M20 20h50v50'/>");
        row("fill rule in capitals",
            "<path style='fill-rule:EVENODD' d='M10 10h80v80h-80zM30 30h40v40h-40z'/>",
            "<path fill-rule='evenodd' d='M10 10h80v80h-80zM30 30h40v40h-40z'/>");
        row("circles of uses that are not drawn",
            "<defs><g id='a'><use href='#a'/></g></defs><symbol id='b'><use href='#b'/></symbol>"
            "<clipPath id='c'><use href='#c'/></clipPath><title><use href='#a'/></title>"
            "<rect width='50' height='50' fill='red'/>",
            red);
        row("rules for all, elements, classes and identifiers, in any order",
            "<style>#i{fill:red}.a.b{stroke:none}.a{fill:blue}rect{fill:lime}*{fill:blue;stroke:lime}"
            "[width].b{opacity:1}</style><rect id='i' class=' a\tb a ' opacity='.5' width='50' height='50'/>",
            red);
        row("one of the words of an attribute",
            "<style>[x~=b]{fill:red}[x~=c],[x~=d],[x~=a-b]{fill:blue}</style>"
            "<rect x='0'/><g x='a-b-c ab ba b\tcd'><rect width='50' height='50'/></g>",
            red);
        row("later rules of the same strength",
            "<style>.b{fill:blue}.a{fill:lime}.b{fill:red}</style><style>rect{fill:blue}</style>"
            "<rect class='a b' width='50' height='50'/>",
            red);
        row("class around a class",
            "<style>.a .b{fill:red}.c .b{fill:blue}</style><g class='x a'><rect class='b' width='50' "
            "height='50'/></g>",
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
        const char* const dot = "<circle cx='20' cy='50' r='15' fill='red'/>";
        for (const char* const point : {"<line x1='20' y1='50' x2='20' y2='50'/>",
                                        "<polyline points='20 50 20 50'/>",
                                        "<polygon points='20 50 20 50 20 50'/>",
                                        "<path d='m20 50L20 50'/>",
                                        "<path d='M20 50h0v0'/>",
                                        "<path d='M20 50H20V50'/>",
                                        "<path d='M20 50c0 0 0 0 0 0'/>",
                                        "<path d='M20 50Q20 50 20 50T20 50'/>",
                                        "<path d='M20 50S20 50 20 50'/>",
                                        "<path d='M20 50A0 0 0 0 1 20 50z'/>",
                                        "<path d='M20 50zM90 90'/>",
                                        "<path d='M20 50l0 0m9 9'/>"}) {
            row(point,
                (QByteArray("<g stroke='red' stroke-width='30' stroke-linecap='round'>") + point + "</g>")
                    .constData(),
                dot);
        }
        row("arc back to where it begins",
            "<path d='M20 50a9 9 0 0 1 0 0M80 50h0' stroke='red' stroke-width='30' stroke-linecap='round'/>",
            "<circle cx='80' cy='50' r='15' fill='red'/>");
        row("dot and what goes on from it",
            "<path d='M20 50zL80 50L80 80zl0 0' fill='none' stroke='red' stroke-width='6' "
            "stroke-linecap='square'/>",
            "<path d='M20 50L80 50L80 80z' fill='none' stroke='red' stroke-width='6'/>"
            "<rect x='17' y='47' width='6' height='6' fill='red'/>");
        row("moves without lines",
            "<path d='M90 90M20 50M30 30L80 30zM50 70' stroke='red' stroke-width='6' "
            "stroke-linecap='round'/><polyline points='70 70' stroke='red' stroke-width='30'/>",
            "<path d='M30 30L80 30z' stroke='red' stroke-width='6' stroke-linecap='round'/>");
        row("dot in a small view box",
            "<svg width='100' height='100' viewBox='0 0 .05 .05'><path d='M.01 .025h0m.03 0h0' "
            "stroke='red' stroke-width='.015' stroke-linecap='round'/></svg>",
            "<circle cx='20' cy='50' r='15' fill='red'/><circle cx='80' cy='50' r='15' fill='red'/>");
        row("dot in a large view box",
            "<svg width='100' height='100' viewBox='0 0 1e5 1e5'><path d='M2e4 5e4h0' "
            "stroke='red' stroke-width='3e4' stroke-linecap='round'/></svg>",
            dot);
        row("dot and relative lines behind it",
            "<path d='M20 50h0m0 0l30 0l0 30z' fill='red'/>",
            "<path d='M20 50h30v30z' fill='red'/>");
        row("dashes without length in a small view box",
            "<svg width='100' height='100' viewBox='0 0 .05 .05'>"
            "<path stroke-dasharray='0 .015' stroke='red' stroke-width='.01' stroke-linecap='round' "
            "d='M.01 .01h.02'/></svg>",
            "<circle cx='20' cy='20' r='10' fill='red'/><circle cx='50' cy='20' r='10' fill='red'/>");
        row("negative width",
            "<g stroke='red' stroke-width='9'><path stroke-width='-3' d='M0 20h90'/></g>",
            "<path stroke='red' stroke-width='9' d='M0 20h90'/>");
        row("width of hardly anything",
            "<rect width='50' height='50' fill='red' stroke='blue' stroke-width='.000001'/>"
            "<path d='M0 70h90' stroke='blue' stroke-width='.000001'/>",
            red);
        row("points up to an error",
            "<polygon points='2 2 20 2 20 20 . 5 40' fill='red'/>"
            "<polyline points='42 2 60 2 60 20 42' fill='red'/>",
            "<polygon points='2 2 20 2 20 20' fill='red'/><polygon points='42 2 60 2 60 20' fill='red'/>");
        for (const char* const offset : {"1e10", "-1e10", "1000000000000", "-30000000007"}) {
            const double rest = std::fmod(QByteArray(offset).toDouble(), 30);
            row(offset,
                (QByteArray("<path stroke-dasharray='20 10' stroke-width='9' stroke='red' d='M0 20h90' "
                            "stroke-dashoffset='")
                 + offset + "'/>")
                    .constData(),
                (QByteArray("<path stroke-dasharray='20 10' stroke-width='9' stroke='red' d='M0 20h90' "
                            "stroke-dashoffset='")
                 + QByteArray::number(rest) + "'/>")
                    .constData());
        }
        row("current colour in small letters",
            "<g color='red'><rect fill='currentcolor' width='50' height='50'/></g>",
            red);
        row("current colour of a use",
            "<defs><rect id='a' fill='currentColor' width='50' height='50'/></defs>"
            "<use xlink:href='#a' color='red'/>",
            red);
        row("current colour with an opacity",
            "<g color='rgba(255, 0, 0, .5)'><rect fill='currentColor' width='50' height='50'/></g>",
            half);
        row("colour with an opacity around a colour without",
            "<g fill='rgba(0, 0, 255, .3)'><rect fill='red' width='50' height='50'/></g>",
            red);
        row("colour with an opacity around an opacity",
            "<g fill='rgba(255, 0, 0, .5)'><rect fill-opacity='.5' width='50' height='50'/></g>",
            "<rect width='50' height='50' fill='red' fill-opacity='.25'/>");
        row("units in capitals", "<rect width='50PX' height='50Px' fill='red'/>", red);
        row("corners of the same radius",
            "<rect width='50' height='50' rx='auto' ry='20' fill='red'/>",
            "<rect width='50' height='50' rx='20' ry='20' fill='red'/>");
        row("shapes without size",
            "<rect width='50' height='50' fill='red'/><g stroke='blue' stroke-width='9'>"
            "<ellipse cx='50' cy='50' rx='0' ry='20'/><circle cx='50' cy='50' r='-20'/>"
            "<rect width='0' height='90'/><rect height='90'/></g>",
            red);
        row("identifier that stands twice",
            "<defs><rect id='a' width='50' height='50' fill='red'/>"
            "<rect id='a' width='50' height='50' fill='blue'/></defs><use xlink:href='#a'/>",
            red);
        row("use of what is hidden",
            "<rect width='50' height='50' fill='red'/>"
            "<defs><rect id='a' display='none' width='90' height='90'/></defs><use xlink:href='#a'/>",
            red);
        row("hidden behind a sibling that is visible",
            "<g visibility='hidden'><rect visibility='visible' width='50' height='50' fill='red'/>"
            "<rect width='90' height='90'/></g>",
            red);
        row("hidden by a class, and shown in it",
            "<style>.h{visibility:hidden}.v{visibility:visible}</style><g class='h'>"
            "<g class='v'><rect width='50' height='50' fill='red'/></g><g><rect width='90' "
            "height='90'/></g></g>",
            red);
        row("hidden where it is used",
            "<defs><rect id='a' width='90' height='90'/></defs><use visibility='hidden' xlink:href='#a'/>"
            "<rect width='50' height='50' fill='red'/>",
            red);
        row("use from within what is hidden",
            "<g display='none'><rect id='a' width='50' height='50' fill='red'/></g><use xlink:href='#a'/>",
            red);
        row("limit that is too low",
            "<path d='M10 50h50v40' fill='none' stroke='red' stroke-width='9' stroke-miterlimit='.5'/>",
            "<path d='M10 50h50v40' fill='none' stroke='red' stroke-width='9'/>");

        row("selector of a child",
            "<style>g > .a{fill:red}</style><g><rect class='a' fill='blue' width='50' height='50'/></g>",
            red);
        row("selector of a descendant",
            "<style>#b rect{fill:red} #b > rect{fill:blue}</style>"
            "<g id='b'><g><rect width='50' height='50'/></g></g>",
            red);
        row("selector of an attribute",
            "<style>rect[width='50'][height]{fill:red}</style><rect width='50' height='50'/>",
            red);
        row("selector of the first child",
            "<style>g :first-child{fill:red}</style><g><rect width='50' height='50'/></g>",
            red);
        row("style sheet without end", "<style>rect{fill:red</style><rect width='50' height='50'/>", red);
        row("path length of a group",
            "<g pathLength='9'><path stroke-dasharray='20' stroke='red' stroke-width='9' d='M0 20h90'/></g>",
            "<path stroke-dasharray='20' stroke='red' stroke-width='9' d='M0 20h90'/>");
        row("selector of what follows",
            "<style>g + rect{fill:red}</style><g/><rect width='50' height='50'/>",
            red);
        row("selector that waits",
            "<style>rect{fill:red}rect:hover{fill:blue}</style><rect width='50' height='50'/>",
            red);
        row("style sheet for screens",
            "<style>@charset 'utf-8';@media screen{rect{fill:red}}</style><rect width='50' height='50'/>",
            red);

        row("inherited opacity",
            "<g opacity='.5'><rect opacity='inherit' width='50' height='50'/></g>",
            "<rect opacity='.25' width='50' height='50'/>");
        row("initial values",
            "<g fill='blue' stroke='blue' stroke-width='9'>"
            "<rect style='fill:initial;stroke:initial' width='50' height='50'/></g>",
            "<rect width='50' height='50'/>");
        row("unset value",
            "<g fill='red'><rect style='fill:unset;opacity:unset' opacity='.5' width='50' height='50'/></g>",
            red);

        row("opacity of fill and stroke",
            "<rect x='20' y='20' width='50' height='50' fill='red' stroke='blue' stroke-width='20' "
            "opacity='.4'/>",
            "<rect x='30' y='30' width='30' height='30' fill='red' fill-opacity='.4'/><path fill='blue' "
            "fill-opacity='.4' fill-rule='evenodd' d='M10 10h70v70h-70zM30 30h30v30h-30z'/>");
        row("opacity of what overlaps",
            "<g opacity='.5'><rect width='50' height='50' fill='red'/>"
            "<rect x='25' width='50' height='50' fill='blue'/></g>",
            "<rect width='25' height='50' fill='red' opacity='.5'/>"
            "<rect x='25' width='50' height='50' fill='blue' opacity='.5'/>");
        row("opacity of what overlaps in one colour",
            "<g opacity='.5'><rect width='50' height='20'/><rect width='20' height='50'/></g>",
            "<path d='M0 0h50v20h-30v30h-20z' opacity='.5'/>");
        row("opacity of what one sees through",
            "<g opacity='.5'><rect width='50' height='50' fill='red'/>"
            "<rect x='25' width='50' height='50' fill='blue' fill-opacity='.5'/></g>",
            "<rect width='25' height='50' fill='red' opacity='.5'/>"
            "<rect x='25' width='25' height='50' fill='#800080' opacity='.5'/>"
            "<rect x='50' width='25' height='50' fill='blue' opacity='.25'/>");
        row("opacity in an opacity",
            "<g opacity='.5'><g opacity='.5'><rect width='50' height='50' fill='red'/>"
            "<rect x='25' width='50' height='50' fill='blue'/></g></g>",
            "<rect width='25' height='50' fill='red' opacity='.25'/>"
            "<rect x='25' width='50' height='50' fill='blue' opacity='.25'/>");
        row("opacity of the document",
            "<svg opacity='.5'><rect width='50' height='50' fill='red'/>"
            "<rect x='25' width='50' height='50' fill='blue'/></svg>",
            "<rect width='25' height='50' fill='red' opacity='.5'/>"
            "<rect x='25' width='50' height='50' fill='blue' opacity='.5'/>");
        row("opacity of a use",
            "<defs><g id='a'><rect width='50' height='50' fill='red'/>"
            "<rect x='25' width='50' height='50' fill='blue'/></g></defs><use xlink:href='#a' opacity='.5'/>",
            "<rect width='25' height='50' fill='red' opacity='.5'/>"
            "<rect x='25' width='50' height='50' fill='blue' opacity='.5'/>");

        const char* const clipped = "<rect x='10' y='10' width='50' height='40' fill='red'/>";
        row("clip of an inner document",
            "<svg x='10' y='10' width='50' height='40'><circle r='90' fill='red'/></svg>",
            clipped);
        row("clip of a symbol",
            "<symbol id='a'><circle r='90' fill='red'/></symbol>"
            "<use xlink:href='#a' x='10' y='10' width='50' height='40'/>",
            clipped);
        row("clip of an inner document that a use makes larger",
            "<defs><svg id='a' width='5' height='5'><circle r='90' fill='red'/></svg></defs>"
            "<use xlink:href='#a' x='10' y='10' width='50' height='40'/>",
            clipped);
        row("clip of an inner document that is far larger than the drawing",
            "<svg x='10' y='10' width='1e5' height='1e5'>"
            "<rect x='-9' y='-9' width='59' height='49' fill='red'/></svg>",
            clipped);
        row("clip of a stroke",
            "<svg x='10' y='10' width='50' height='40'>"
            "<path d='M0 20h90' stroke='red' stroke-width='99'/></svg>",
            clipped);
        row("clip of a view box that is sliced",
            "<svg x='10' y='10' width='50' height='40' viewBox='0 0 1 1' preserveAspectRatio='xMidYMid "
            "slice'>"
            "<rect width='1' height='1' fill='red'/></svg>",
            clipped);
        row("clips in each other",
            "<svg width='60' height='90'><svg x='10' y='10' width='90' height='40'>"
            "<circle r='99' fill='red'/></svg></svg>",
            clipped);
        row("clip that is turned",
            "<g transform='rotate(30 50 50)'><svg x='30' y='40' width='40' height='20'>"
            "<circle r='90' fill='red'/></svg></g>",
            "<rect transform='rotate(30 50 50)' x='30' y='40' width='40' height='20' fill='red'/>");
        row("clip of an area with a hole",
            "<svg width='50' height='50'><path d='M-9 10h99v30h-99zM20 20v10h10v-10z' fill='red'/></svg>",
            "<path d='M0 10h50v30h-50zM20 20v10h10v-10z' fill='red'/>");
        row("clip that is switched off",
            "<svg width='5' height='5' style='overflow:visible'><rect width='50' height='50' "
            "fill='red'/></svg>",
            red);
        row("inner document without size",
            "<rect width='50' height='50' fill='red'/><svg width='0'><circle r='9'/></svg>",
            red);
        row("inner document with a view box without size",
            "<rect width='50' height='50' fill='red'/>"
            "<svg viewBox='0 0 0 9'><circle r='9'/></svg><svg height='0%'><circle r='9'/></svg>",
            red);

        row("extension that nobody has",
            "<rect width='50' height='50' fill='red'/><rect requiredExtensions='urn:x' width='90' "
            "height='9'/>",
            red);
        row("feature that there is",
            "<rect requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape' width='50' height='50' "
            "fill='red'/>",
            red);
        row("features of which one is missing",
            "<rect width='50' height='50' fill='red'/>"
            "<g requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape urn:x'><circle r='90'/></g>",
            red);
        row("switch",
            "<switch><foreignObject requiredExtensions='urn:x'/><rect width='50' height='50' fill='red'/>"
            "<circle r='90'/></switch>",
            red);
        row("switch in front of text",
            "<switch><g requiredFeatures='http://www.w3.org/TR/SVG11/feature#Text'><text>t</text></g>"
            "<rect width='50' height='50' fill='red'/></switch>",
            red);

        row("dashes of a path that says how long it is",
            "<path pathLength='9' stroke-dasharray='2 1' stroke-dashoffset='.5' stroke='red' "
            "stroke-width='9' "
            "d='M0 20h90'/>",
            "<path stroke-dasharray='20 10' stroke-dashoffset='5' stroke='red' stroke-width='9' d='M0 "
            "20h90'/>");
        row("dashes in percent",
            "<path stroke-dasharray='20%, 5' stroke-dashoffset='10%' stroke-width='9%' stroke='red' "
            "d='M0 20h90'/>",
            "<path stroke-dasharray='20 5' stroke-dashoffset='10' stroke-width='9' stroke='red' "
            "d='M0 20h90'/>");
        row("dashes of a group in percent",
            "<g stroke-dasharray='20%' stroke-width='9%'><path stroke='red' d='M0 20h90'/></g>",
            "<path stroke-dasharray='20' stroke-width='9' stroke='red' d='M0 20h90'/>");
        row("dashes without length",
            "<path stroke-dasharray='0 30' stroke='red' stroke-width='20' stroke-linecap='round' "
            "d='M20 20h40'/>",
            "<circle cx='20' cy='20' r='10' fill='red'/><circle cx='50' cy='20' r='10' fill='red'/>");
        const char* const twoDots =
            "<circle cx='30' cy='20' r='9' fill='red'/><circle cx='60' cy='20' r='9' fill='red'/>";
        row("dashes of a round rect",
            "<rect x='10' y='20' width='70' height='50' rx='20' ry='10' fill='none' stroke='red' "
            "stroke-width='18' stroke-linecap='round' stroke-dasharray='0 30 0 999'/>",
            twoDots);
        row("dashes of a round rect in a group",
            "<g stroke-dasharray='0 30 0 999' stroke='red' stroke-width='18' fill='none'>"
            "<rect x='10' y='20' width='70' height='50' rx='20' ry='10' stroke-linecap='round'/></g>",
            twoDots);
        row("corners larger than the rect",
            "<rect x='10' y='20' width='70' height='50' rx='99' fill='red'/>",
            "<ellipse cx='45' cy='45' rx='35' ry='25' fill='red'/>");
        row("corners of which one radius is nothing",
            "<rect width='50' height='50' rx='0' ry='20' fill='red'/>",
            red);
        row("corners of a negative radius",
            "<rect width='50' height='50' rx='-9' ry='20' fill='red'/>",
            "<rect width='50' height='50' rx='20' ry='20' fill='red'/>");
        row("dashes of a rect",
            "<rect x='10' y='20' width='70' height='50' fill='none' stroke='red' stroke-width='8' "
            "stroke-dasharray='20 10 5 3'/>",
            "<path d='M10 20h70v50h-70z' fill='none' stroke='red' stroke-width='8' "
            "stroke-dasharray='20 10 5 3'/>");
        row("dashes of a circle",
            "<circle cx='50' cy='50' r='40' fill='none' stroke='red' stroke-width='18' "
            "stroke-linecap='round' stroke-dasharray='0 62.83 0 999'/>",
            "<circle cx='90' cy='50' r='9' fill='red'/><circle cx='50' cy='90' r='9' fill='red'/>");
        row("dashes of an ellipse",
            "<ellipse cx='50' cy='50' rx='40' ry='20' fill='none' stroke='red' stroke-width='18' "
            "stroke-linecap='round' stroke-dasharray='0 48.44 0 999'/>",
            "<circle cx='90' cy='50' r='9' fill='red'/><circle cx='50' cy='70' r='9' fill='red'/>");
        row("dashes and gaps without length",
            "<path stroke-dasharray='0 0' stroke='red' stroke-width='9' d='M0 20h90'/>",
            "<path stroke='red' stroke-width='9' d='M0 20h90'/>");
    }

    void drawsWhatSvgSays()
    {
        QFETCH(QString, text);
        QFETCH(QString, plain);
        const Conversion conversion = convertSvg(text);
        compareWithQt(conversion, plain);
        QCOMPARE(lostRules(conversion), QStringList());
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
            QRectF(0, 0, 50, 100));
        row("viewBox='0 0 10 10' width='50' height='100' overflow='visible' "
            "preserveAspectRatio='xMidYMid slice'",
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
                                      "stroke-width='5' fill-opacity='.5'/></g>");
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

    void checkCallsConvertedFramesOfAnySizeClean_data()
    {
        QTest::addColumn<QString>("attributes");
        for (const char* const attributes : {"width='10cm' height='5cm' preserveAspectRatio='none'",
                                             "width='7mm' height='3pt' preserveAspectRatio='none'",
                                             "width='1in' height='33.3333'",
                                             "width='123.456' height='654.321'"})
            QTest::newRow(attributes) << QString::fromLatin1(attributes);
    }

    void checkCallsConvertedFramesOfAnySizeClean()
    {
        QFETCH(QString, attributes);
        const Conversion conversion = convertSvg(
            document("<circle cx='20' cy='20' r='10'/>",
                     (attributes + QStringLiteral(" viewBox='0 0 40 40'")).toLatin1().constData()));
        QCOMPARE(checkSvg(conversion.text).verdict(), Finding::Note);
    }

    void aGradientInQuotesBecomesItsMeanColour_data()
    {
        QTest::addColumn<QString>("paint");
        for (const char* const paint : {"url(#a)", "url(\"#a\")", "url( &apos;#a&apos; )", "url( #a ) blue"})
            QTest::newRow(paint) << QString::fromLatin1(paint);
    }

    void aGradientInQuotesBecomesItsMeanColour()
    {
        QFETCH(QString, paint);
        const QString inside =
            QStringLiteral("<linearGradient id='a'><stop stop-color='red'/></linearGradient>"
                           "<rect width='50' height='50' fill='%1'/>")
                .arg(paint);
        const Conversion conversion = convertSvg(document(inside.toLatin1().constData()));
        compareWithQt(conversion, document("<rect width='50' height='50' fill='red'/>"));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("gradient")});
    }

    void namesWhereDrawingEndsBecauseDataIsWrong_data()
    {
        QTest::addColumn<QString>("inside");
        QTest::addColumn<int>("column"); // 0: nothing to be named
        const auto row = [](const char* inside, int column) {
            QTest::newRow(inside) << QString::fromLatin1(inside) << column;
        };
        row("<path d='M5 5h9v9z'/>", 0);
        row("<path d='M5 5h9v9z X 9 9'/>", 20);
        row("<path d='L5 5h9'/>", 10);
        row("<path d='M5 5h9v9z 9'/>", 20);
        row("<polygon points='1 1 20-1.5.5 2e1'/>", 0);
        row("<polygon points=' 1,1 20 1 20 20 '/>", 0);
        row("<polygon points=''/>", 0);
        row("<polygon points='1 1 20 1 20 20 x 5 30'/>", 33);
        row("<polyline points='1 1 20 1 20'/>", 28);
    }

    void namesWhereDrawingEndsBecauseDataIsWrong()
    {
        QFETCH(QString, inside);
        QFETCH(int, column);
        const Conversion conversion = convertSvg(QStringLiteral("<svg>\n%1</svg>").arg(inside));
        QCOMPARE(conversion.losses.size(), column > 0 ? 1 : 0);
        if (column > 0) {
            const Finding& found = conversion.losses.first();
            QCOMPARE(found.rule, QStringLiteral("path-error"));
            QCOMPARE(int(found.weight), int(Finding::Note));
            QCOMPARE(found.position.line, 2);
            QCOMPARE(found.position.column, column);
        }
    }

    void whatIsLostIsNamed_data()
    {
        QTest::addColumn<QString>("inside");
        QTest::addColumn<QString>("rule");
        const auto row = [](const char* rule, const char* inside) {
            QTest::newRow(inside) << QString::fromLatin1(inside) << QString::fromLatin1(rule);
        };
        const auto property = [](const char* rule, const char* name, const char* value) {
            const QString attribute = QString::fromLatin1("<rect %1='%2' width='9' height='9'/>");
            const QString style = QString::fromLatin1("<rect style='%1:%2' width='9' height='9'/>");
            for (const QString& form : {attribute, style}) {
                const QString inside = form.arg(QLatin1String(name), QLatin1String(value));
                QTest::newRow(inside.toLatin1().constData()) << inside << QString::fromLatin1(rule);
            }
        };
        row("text", "<text>t</text>");
        row("text", "<text><tspan>t</tspan><tref xlink:href='#a'/></text>");
        row("text", "<defs><text id='a'>t</text></defs><use xlink:href='#a'/>");
        row("text", "<symbol id='a'><g><text>t</text></g></symbol><use xlink:href='#a'/>");
        row("text", "<switch><text>t</text><rect/></switch>");
        row("image", "<image xlink:href='a.png' width='9' height='9'/>");
        row("image", "<foreignObject/>");
        row("unknown-element", "<flowRoot><flowPara>t</flowPara></flowRoot>");
        row("use", "<use xlink:href='other.svg#a'/>");
        row("use", "<use/>");
        row("use", "<g xml:base='other.svg'/>");

        property("filter", "filter", "url(#a)");
        property("mask", "mask", "url(#a)");
        property("clip-path", "clip-path", "url(#a)");
        property("marker", "marker-start", "url(#a)");
        property("marker", "marker-mid", "url(#a)");
        property("marker", "marker-end", "url(#a)");
        property("unknown-property", "mix-blend-mode", "multiply");
        property("unknown-property", "paint-order", "stroke");
        property("unknown-property", "paint-order", "fill markers");
        property("unknown-property", "color-interpolation", "linearRGB");
        property("unknown-property", "vector-effect", "non-scaling-size");
        property("value", "stroke-linejoin", "arcs");
        property("value", "stroke-linejoin", "miter-clip");
        property("value", "stroke-width", "var(--a)");
        property("value", "opacity", "calc(1 / 2)");
        property("value", "fill-opacity", "var(--a)");
        property("font-unit", "stroke-width", "2em");
        property("font-unit", "stroke-dashoffset", "2ex");
        property("dashes", "stroke-dasharray", "1rem 2");
        property("color", "fill", "var(--a, red)");
        property("color", "stroke", "oklch(60% .2 30)");
        property("color", "fill", "context-fill");
        property("color", "color", "var(--a)");
        row("clip-path", "<g clip-path='url(#a)'><rect width='9' height='9'/></g>");
        row("clip-path", "<svg clip='rect(1 2 3 4)'><rect width='9' height='9'/></svg>");
        row("marker", "<path style='marker:url(#a)' d='M0 0h9'/>");
        row("gradient",
            "<linearGradient id='a'><stop/></linearGradient><rect fill='url(#a)' width='9' height='9'/>");
        row("gradient",
            "<linearGradient id='a'><stop/></linearGradient><rect stroke='url(#a)' width='9' height='9'/>");
        row("pattern", "<pattern id='a'/><rect fill='url(#a)' width='9' height='9'/>");

        row("transform", "<rect style='transform:scale(2)' width='9' height='9'/>");
        row("transform", "<rect style='rotate:9deg' width='9' height='9'/>");
        row("transform", "<rect transform='rotate(9deg)' width='9' height='9'/>");
        row("transform", "<rect transform='scale(2)' transform-origin='5 5' width='9' height='9'/>");
        row("stroke-width", "<rect width='9' height='9' stroke='red' stroke-width='32768'/>");
        row("stroke-width", "<g style='stroke-width:1e3cm'><rect width='9' height='9' stroke='red'/></g>");
        row("dashes", "<path stroke-dasharray='1e-6' stroke='red' d='M0 0h9'/>");
        row("dashes", "<path pathLength='1e9' stroke-dasharray='1' stroke='red' d='M0 0h9'/>");
        row("unknown-property", "<rect style='width:5px' width='9' height='9'/>");
        row("unknown-property", "<style>.a{r:5px}</style><circle class='a'/>");
        row("value", "<rect width='calc(1px + 2px)' height='9'/>");
        row("value", "<rect width='9vw' height='9'/>");
        row("font-unit", "<rect width='3em' height='9'/>");
        row("font-unit", "<line x1='3ex' y1='0' x2='9' y2='9'/>");
        row("condition", "<rect systemLanguage='en' width='9' height='9'/>");
        row("condition", "<rect systemLanguage='fr,de' width='9' height='9'/>");
        row("condition", "<switch><g systemLanguage='fr'/><g/></switch>");

        row("style-sheet", "<style>@media print{rect{fill:red}}</style>");
        row("style-sheet", "<style>@media (min-width:9px){rect{fill:red}}</style>");
        row("style-sheet", "<style>@import 'a.css'; rect{fill:red}</style>");
        row("style-sheet", "<style>@supports (fill:red){rect{fill:red}}</style>");
        row("style-sheet", "<style media='print'>rect{fill:red}</style>");
        row("style-sheet", "<style type='text/less'>rect{fill:red}</style>");
        row("style-sheet", "<link xmlns='http://www.w3.org/1999/xhtml' rel='stylesheet' href='a.css'/>");
        row("selector", "<style>rect:nth-child(2){fill:red}</style>");
        row("selector", "<style>g ~ rect{fill:red}</style>");
        row("selector", "<style>.a:not(:hover){fill:red}</style>");
        row("selector", "<style>.a:not(:is(.b):hover){fill:red}</style>");
        row("mask", "<style>g rect{mask:url(#a)}</style><g><rect width='9' height='9'/></g>");
    }

    void whatIsLostIsNamed()
    {
        QFETCH(QString, inside);
        QFETCH(QString, rule);
        const Conversion conversion = convertSvg(document(inside.toUtf8().constData()));
        QVERIFY(conversion.error.isEmpty());
        QCOMPARE(lostRules(conversion), QStringList{rule});
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
    }

    void whatIsNotLostIsNotNamed_data()
    {
        QTest::addColumn<QString>("inside");
        for (const char* const inside :
             {"<defs><text>t</text></defs>",
              "<text/><text> <tspan>\n</tspan></text>",
              "<symbol><text>t</text></symbol>",
              "<g display='none'><text>t</text><image/></g>",
              "<text style='display:none'>t</text>",
              "<g visibility='hidden'><text>t</text><image/></g>",
              "<clipPath><rect filter='url(#a)'/></clipPath>",
              "<switch><g/><text>t</text></switch>",
              "<foreignObject requiredExtensions='urn:x'/>",
              "<g requiredExtensions='urn:x' filter='url(#a)'><text>t</text></g>",
              "<g display='none' filter='url(#a)' stroke-width='1em'/>",
              "<rect transform-origin='5 5' width='9' height='9'/>",
              "<rect paint-order='fill stroke' mix-blend-mode='normal' clip-path='none' width='9'/>",
              "<rect marker-end='none' mask='none' filter='none' vector-effect='none' width='9'/>",
              "<rect clip='auto' overflow='visible' color-interpolation='sRGB' width='9'/>",
              "<rect transform=' translate(1,2) , scale( 2e0-1 )' width='9' height='9'/>",
              "<rect shape-rendering='crispEdges' pointer-events='none' cursor='help' width='9'/>",
              "<rect color='#nothing' width='9'/>",
              "<rect style='width:9' width='9' height='9'/>",
              "<g style='width:9px'/>",
              "<g x='3em' font-size='2em' letter-spacing='calc(1em)'/>",
              "<style>@font-face{font-family:a}@charset 'a';</style>",
              "<style>.a:hover:not(.b){fill:red}.a:not(.b):hover{fill:red}</style>",
              "<rect style='color-interpolation:SRGB;paint-order:NORMAL;clip-path:NONE' width='9'/>",
              "<title/><desc/><metadata/><view/><cursor/>",
              "<x:g xmlns:x='urn:x' filter='url(#a)'/>"})
            QTest::newRow(inside) << QString::fromLatin1(inside);
    }

    void whatIsNotLostIsNotNamed()
    {
        QFETCH(QString, inside);
        QCOMPARE(lostRules(convertSvg(document(inside.toLatin1().constData()))), QStringList());
    }

    void animationsAreNotedAndScriptsAreNot()
    {
        const Conversion conversion =
            convertSvg(document("<script>draw()</script><rect width='9' height='9'><set/></rect><animate/>"));
        QCOMPARE(conversion.losses.size(), 1);
        QCOMPARE(conversion.losses.first().weight, Finding::Note);
        QCOMPARE(conversion.losses.first().rule, QStringLiteral("animation"));
    }

    void negativeDashesAreNoValue()
    {
        const Conversion conversion =
            convertSvg(document("<path stroke-dasharray='3 -1' stroke='red' d='M10 10h50'/>"));
        compareWithQt(conversion, document("<path stroke='red' d='M10 10h50'/>"));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("dashes")});
        QVERIFY(conversion.losses.first().message.startsWith(QStringLiteral("“-1” is no value")));
    }

    void whatStandsInOtherFilesIsNamed()
    {
        const QString type = QStringLiteral("<!DOCTYPE svg [<!ENTITY a SYSTEM 'a.xml'>]>\n");
        const auto convert = [&](const char* inside) {
            return lostRules(convertSvg(type + document(inside)));
        };
        const QStringList named{QStringLiteral("entity")};
        QCOMPARE(convert("<g>&a;</g>"), named);
        QCOMPARE(convert("<defs>&a;</defs>"), named);
        QCOMPARE(convert("<style>&a;</style>"), named);
        QCOMPARE(convert("<desc>&a;</desc>"), QStringList());
        QCOMPARE(convert("<x:g xmlns:x='urn:x'>&a;</x:g>"), QStringList());
        QCOMPARE(convert("<text>&a;</text>"), QStringList{QStringLiteral("text")});
    }

    void whatIsTooSmallToBeWrittenDoesNotCount()
    {
        const Conversion conversion = convertSvg(
            document("<rect width='9' height='9'/><path stroke='red' fill='none' stroke-width='1e-9' "
                     "d='M10 10h9'/>"));
        QCOMPARE(conversion.shapes, 1);
        QCOMPARE(conversion.text.count(QLatin1String("<path")), 1);
    }

    void placesInStyleSheetsAreSaid_data()
    {
        QTest::addColumn<QString>("inside");
        QTest::addColumn<QString>("places");
        const auto row = [](const char* name, const char* inside, const char* places) {
            QTest::newRow(name) << QString::fromLatin1(inside) << QString::fromLatin1(places);
        };
        row("selector", "<style>a:b{}</style>", "2:8");
        row("selectors of one rule", "<style>rect, a:b,\n a:c{}</style>", "2:14 3:2");
        row("rules", "<style>rect{fill:red}\n@import 'a';\n @media print{rect{fill:red}}</style>", "3:1 4:2");
        row("in a rule", "<style>@media screen{\n  a:b{}}</style>", "3:3");
        row("behind comments", "<style>/* a */rect{}/*\n\n*/ a:b{}/**/a:/**/c{}</style>", "4:4 4:13");
        row("in a section of characters", "<style>\n<![CDATA[\na:b{} ]]>\n</style>", "4:1");
        row("behind an instruction", "<style><?a?>a:b{}</style>", "2:13");
        row("behind a comment", "<style><!-- a -->a:b{}</style>", "2:18");
        row("in a section behind a comment", "<style><!-- a --><![CDATA[a:b{}]]></style>", "2:27");
        row("behind line ends", "<style>\r\nrect{}\r\na:b{}</style>", "4:1");
        row("behind a reference", "<style>g&gt;a{} a:b{}</style>", "2:17");
        row("behind what would be a reference outside of the section",
            "<style><![CDATA[/* a & b; */ a:b{}]]></style>",
            "2:30");
        row("in pieces", " <style>a:b{}<![CDATA[a:c{}]]></style>", "2:2 2:2");
    }

    void placesInStyleSheetsAreSaid()
    {
        QFETCH(QString, inside);
        QFETCH(QString, places);
        QStringList said;
        const Conversion conversion = convertSvg(document(qPrintable(QLatin1Char('\n') + inside)));
        for (const Finding& each : conversion.losses)
            said.append(QStringLiteral("%1:%2").arg(each.position.line).arg(each.position.column));
        QCOMPARE(said.join(QLatin1Char(' ')), places);
    }

    void identifiersInStylesKeepTheirCase()
    {
        const Conversion conversion =
            convertSvg(document("<linearGradient id='A'><stop stop-color='#ff0000'/></linearGradient>"
                                "<linearGradient id='a'><stop stop-color='#0000ff'/></linearGradient>"
                                "<rect style='fill:URL(#A) NONE' width='50' height='50'/>"));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("gradient")});
        QVERIFY(conversion.text.contains(QLatin1String("#ff0000")));
    }

    void whatIsNoNumberIsAsIfItWereNotThere()
    {
        const Conversion conversion = convertSvg(
            document("<g stroke='red' stroke-width='9'><path opacity='calc(.5)' stroke-width='var(--a)' "
                     "stroke-opacity='a' d='M10 10h50v50'/></g>"));
        compareWithQt(conversion, document("<path stroke='red' stroke-width='9' d='M10 10h50v50'/>"));
        QCOMPARE(lostRules(conversion),
                 (QStringList{QStringLiteral("value"), QStringLiteral("value"), QStringLiteral("value")}));
    }

    void nothingIsDrawnWhereTheRootHasNoSize_data()
    {
        QTest::addColumn<QString>("attributes");
        for (const char* const attributes : {"width='0' height='10'",
                                             "width='10' height='0.0px'",
                                             "width='0%'",
                                             "width='0' viewBox='0 0 10 10'",
                                             "width='10' height='10' viewBox='0 0 0 10'",
                                             "viewBox='0 0 10 0'"})
            QTest::newRow(attributes) << QString::fromLatin1(attributes);
    }

    void nothingIsDrawnWhereTheRootHasNoSize()
    {
        QFETCH(QString, attributes);
        const Conversion conversion =
            convertSvg(document("<rect width='9' height='9'/>", attributes.toLatin1().constData()));
        QCOMPARE(conversion.error, QString());
        QCOMPARE(conversion.shapes, 0);
        QCOMPARE(conversion.losses.size(), 1);
        QCOMPARE(conversion.losses.first().rule, QStringLiteral("view-box"));
        QCOMPARE(conversion.losses.first().weight, Finding::Note);
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
    }

    void saysThatAViewBoxIsNone_data()
    {
        QTest::addColumn<QString>("viewBox");
        for (const char* const viewBox :
             {"0 0 24", "0 0 24 24 24", "0 0 24px 24px", "0 0 -24 24", "none", ""})
            QTest::newRow(viewBox) << QString::fromLatin1(viewBox);
    }

    void saysThatAViewBoxIsNone()
    {
        QFETCH(QString, viewBox);
        const QString attributes = QStringLiteral("width='90' height='90' viewBox='%1'").arg(viewBox);
        const Conversion conversion =
            convertSvg(document("<rect width='9' height='9'/>", attributes.toLatin1().constData()));
        QCOMPARE(conversion.shapes, 1);
        QCOMPARE(conversion.losses.size(), 1);
        QCOMPARE(conversion.losses.first().rule, QStringLiteral("view-box"));
        QCOMPARE(conversion.losses.first().weight, Finding::Note);
    }

    void listsOfTransformsMayBeLong()
    {
        const QString list = QStringLiteral("translate(1,0) translate(-1 0),").repeated(50'000);
        const Conversion conversion = convertSvg(document(
            QStringLiteral("<rect transform='%1' width='9' height='9'/>").arg(list).toLatin1().constData()));
        QCOMPARE(lostRules(conversion), QStringList());
        QCOMPARE(lostRules(convertSvg(document("<rect transform='translate(1) scale(2) x' width='9'/>"))),
                 QStringList{QStringLiteral("transform")});
    }

    void drawingsMayBeOfAnySize()
    {
        const Conversion conversion = convertSvg(
            document("<rect width='1' height='1'/>", "width='1e308' height='1e308' viewBox='0 0 1 1'"));
        QCOMPARE(conversion.error, QString());
        QCOMPARE(conversion.frame.size, QSizeF(1e308, 1e308));
    }

    void aStrokeWiderThanThePenOfTheReaderIsFilled()
    {
        const Conversion conversion =
            convertSvg(document("<path d='M50 0v100' stroke='red' stroke-width='20'/>",
                                "width='1000000' height='1000000' viewBox='0 0 100 100'"));
        QCOMPARE(lostRules(conversion), QStringList());
        QVERIFY(!conversion.text.contains(QLatin1String("stroke-width")));
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
        QCOMPARE(picture.getPaths().front()->getPath().boundingRect(),
                 QRectF(400'000, 0, 200'000, 1'000'000));
    }

    void namesWhatTheRootLoses()
    {
        QCOMPARE(lostRules(convertSvg(document("<rect/>", "transform='scale(2)'"))),
                 QStringList{QStringLiteral("transform")});
        QCOMPARE(lostRules(convertSvg(document("<rect width='50%' height='9'/>", ""))),
                 QStringList{QStringLiteral("value")});
    }

    void aStrokeInsideOfItsFrameStaysAStroke()
    {
        const Conversion conversion = convertSvg(
            document("<svg x='10' y='10' width='50' height='50'><rect x='5' y='5' width='40' height='40' "
                     "fill='none' stroke='red' stroke-width='10'/></svg>"));
        QCOMPARE(conversion.shapes, 1);
        QVERIFY(conversion.text.contains(QLatin1String("stroke-width=\"10\"")));
    }

    void whatLiesOutsideOfTheFrameIsNotWritten()
    {
        const char* const inside =
            "<rect x='-20' y='40' width='50' height='20'/><rect x='200' width='9' height='9'/>"
            "<rect x='100' width='.05' height='9'/>";
        const Conversion cut = convertSvg(document(inside));
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(cut.text, picture));
        QCOMPARE(int(picture.getPaths().size()), 1);
        QCOMPARE(picture.getPaths().front()->getPath().boundingRect(), QRectF(0, 40, 30, 20));
        QCOMPARE(cut.losses.size(), 0);
        QCOMPARE(convertSvg(document(inside, "width='100' height='100' overflow='visible'")).shapes, 3);
        // Without a size, a document has no frame.
        QCOMPARE(convertSvg(document(inside, "")).shapes, 3);
    }

    void whatSticksOutByAHairKeepsItsCurves()
    {
        const auto hasCurves = [](const char* inside) {
            return convertSvg(document(inside)).text.contains(QLatin1Char('C'));
        };
        QVERIFY(hasCurves("<circle cx='50' cy='50' r='50.09'/>"));
        QVERIFY(!hasCurves("<circle cx='50' cy='50' r='50.11'/>"));
    }

    void saysWhereShapesShowThroughEachOther()
    {
        // Each of the waves crosses each of the others often.
        QString waves;
        for (int i = 0; i < 50; ++i) {
            waves += QStringLiteral("<path d='M0 %1").arg(i % 7);
            for (int step = 0; step < 40; ++step)
                waves += QStringLiteral("q1 %1 2 0").arg((step + i) % 2 == 0 ? 60 : -60);
            waves += QStringLiteral("z' fill='#%1'/>").arg(i + 256, 3, 16, QLatin1Char('0'));
        }
        const QString text = QStringLiteral("<g opacity='.5'>%1</g>").arg(waves);
        const Conversion conversion = convertSvg(document(text.toLatin1().constData()), 100'000'000);
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("opacity")});
        QCOMPARE(conversion.losses.first().position.column,
                 document("").indexOf(QLatin1String("</svg>")) + 1);
        QCOMPARE(conversion.shapes, 50);
    }

    // Lines that cross each other in ten million places.
    static QString tangle(int from, int to)
    {
        QString points;
        for (int i = 0; i < 10'000; ++i)
            points += QStringLiteral(" %1 %2")
                          .arg(from + i * 7919.3 - std::floor(i * 7919.3 / (to - from)) * (to - from))
                          .arg(from + i * 104729.7 - std::floor(i * 104729.7 / (to - from)) * (to - from));
        return QStringLiteral("<path d='M%1'/>").arg(points);
    }

    void saysWhatTakesTooLongToBeCut()
    {
        const Conversion conversion = convertSvg(document(qPrintable(tangle(-20, 120))));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("overflow")});
        QCOMPARE(conversion.shapes, 1);
    }

    void saysWhatTakesTooLongToBeParted()
    {
        const QString inside =
            QStringLiteral("<g opacity='.5'><circle cx='50' cy='50' r='40' fill='red'/>%1</g>");
        const Conversion conversion = convertSvg(document(qPrintable(inside.arg(tangle(0, 100)))));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("opacity")});
        QCOMPARE(conversion.shapes, 2);
    }

    void measuresHugeLines()
    {
        const char* const circle = "<circle r='1e30' stroke='red' stroke-dasharray='5'/>";
        QVERIFY(lostRules(convertSvg(document(circle))).contains(QStringLiteral("dashes")));
    }

    void saysWhereTooManyLevelEdgesLieOnEachOther()
    {
        QString data = QStringLiteral("M-5 5");
        for (int i = 0; i < 2000; ++i)
            data += QStringLiteral("H%1V%2").arg(i * i * 31 % 9973 / 100.0).arg(i % 2 ? 10 : 5);
        const Conversion conversion =
            convertSvg(document(qPrintable(QStringLiteral("<path d='%1'/>").arg(data))));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("overflow")});
        QCOMPARE(conversion.shapes, 1);
    }

    void saysWhereTooMuchIsToBeCut()
    {
        QString text = QStringLiteral("<defs><g id='a0'><svg width='9' height='.1'><rect x='-1' width='9' "
                                      "height='9'/></svg></g>");
        for (int i = 1; i <= 9; ++i) // each holds twice what the one before it holds
            text += QStringLiteral("<g id='a%1'><use xlink:href='#a%2'/><use xlink:href='#a%2'/></g>")
                        .arg(i)
                        .arg(i - 1);
        text += QStringLiteral("</defs><use xlink:href='#a9'/>");
        const QString all = document(qPrintable(text));
        QCOMPARE(lostRules(convertSvg(all)), QStringList());
        QCOMPARE(lostRules(convertSvg(all, 100'000'000)), QStringList{QStringLiteral("overflow")});
    }

    void saysWhereTooMuchIsToBeParted()
    {
        QString text = QStringLiteral("<g opacity='.5'><path fill='red' d='M");
        for (int i = 0; i < 2000; ++i)
            text += QStringLiteral(" %1 %2")
                        .arg(50 + 45 * std::cos(i * 0.00314))
                        .arg(50 + 45 * std::sin(i * 0.00314));
        text += QStringLiteral("'/>");
        for (int i = 0; i < 80; ++i)
            text += QStringLiteral("<rect x='%1' y='%2' width='.5' height='.5'/>")
                        .arg(30 + i % 40)
                        .arg(40 + i / 40);
        text += QStringLiteral("</g>");
        const QString all = document(qPrintable(text));
        QCOMPARE(lostRules(convertSvg(all)), QStringList());
        QCOMPARE(lostRules(convertSvg(all, 50'000'000)), QStringList{QStringLiteral("opacity")});
    }

    // The second document says what is seen without an opacity that several shapes have in common.
    void partsWhatOverlaps_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("opaque");
        const auto row = [](const char* name, const char* transform, const char* inside) {
            const QString group = QStringLiteral("<g opacity='%1' transform='%2'>%3</g>");
            const auto withOpacity = [&](const char* opacity) {
                const QString whole =
                    group.arg(QLatin1String(opacity), QLatin1String(transform), QLatin1String(inside));
                return document(whole.toLatin1().constData(), "width='100' height='100' viewBox='0 0 40 40'");
            };
            QTest::newRow(name) << withOpacity(".5") << withOpacity("1");
        };
        row("square with a round stroke, and a circle",
            "",
            "<rect x='8' y='8' width='20' height='20' fill='red' stroke='blue' stroke-width='2' "
            "stroke-linejoin='round'/><circle cx='18' cy='7' r='5' fill='#fa0' fill-opacity='.5'/>");
        row("squares that share edges",
            "rotate(45 20 20)",
            "<rect x='20' y='20' width='10' height='10' fill='#fa0'/>"
            "<rect x='12' y='20' width='10' height='10' fill='#fa0'/>"
            "<rect x='6' y='20' width='8' height='8' fill='red'/><path d='M6 20h8v4l-4 4z' fill='#fa0'/>");
        row("circles with strokes",
            "rotate(10 20 20)",
            "<circle cx='18' cy='18' r='10' fill='red' stroke='blue' stroke-width='4'/>"
            "<circle cx='23' cy='18' r='10' fill='lime' fill-opacity='.5' stroke='blue' stroke-width='4'/>"
            "<circle cx='18' cy='23' r='10' fill='#fa0' stroke='blue' stroke-width='4'/>"
            "<circle cx='23' cy='23' r='10' fill='red' stroke='blue' stroke-width='4'/>");
        row("the same shape twice",
            "rotate(30 20 20)",
            "<path d='M8 8h20v10l-10 10z' fill='red'/><path d='M8 8h20v10l-10 10z' fill='blue' "
            "fill-opacity='.5'/>");
        row("shapes that cross themselves",
            "",
            "<path d='M5 5L35 35V5L5 35z' fill='red' fill-rule='evenodd'/>"
            "<path d='M20 2L31 36L2 15H38L9 36z' fill='blue'/>");
        row("a small shape far from a large one",
            "",
            "<rect x='-100000' y='-100000' width='200000' height='100015' fill='red'/>"
            "<circle cx='20' cy='15' r='8' fill='blue'/>");
    }

    void partsWhatOverlaps()
    {
        QFETCH(QString, text);
        QFETCH(QString, opaque);
        const Conversion conversion = convertSvg(text);
        QCOMPARE(lostRules(conversion), QStringList());
        const QImage actual = drawnByTheLibrary(conversion);
        const QImage whole = drawnByQt(opaque, conversion.frame);
        QImage expected(whole.size(), QImage::Format_ARGB32_Premultiplied);
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        painter.setOpacity(0.5);
        painter.drawImage(0, 0, whole);
        painter.end();
        QVERIFY(!isBlank(expected));
        const Difference difference = compare(expected, actual);
        QVERIFY2(difference.share < 0.02, // the lines along which areas meet
                 qPrintable(QStringLiteral("%1 % of the pixels differ").arg(difference.share * 100)));
    }

    void whatIsPartedStaysShort()
    {
        const Conversion conversion =
            convertSvg(document("<circle cx='20' cy='20' r='10' opacity='.5' stroke='red'/>"));
        QVERIFY2(conversion.text.size() < 6000, qPrintable(QString::number(conversion.text.size())));
    }

    void whatDoesNotOverlapStaysAsItIs()
    {
        const Conversion conversion = convertSvg(
            document("<g opacity='.5'><circle cx='20' cy='20' r='10' fill='red'/>"
                     "<circle cx='60' cy='20' r='10' fill='none' stroke='red' stroke-width='2'/></g>"));
        QCOMPARE(conversion.shapes, 2);
        QCOMPARE(conversion.text.count(QLatin1Char('C')), 8);
        QVERIFY(conversion.text.contains(QLatin1String("stroke-width=\"2\"")));
    }

    void aClipIsAsExactAsTheDrawingIsLarge()
    {
        const Conversion conversion = convertSvg(
            document("<svg width='90' height='90'><circle cx='60' cy='45' r='40' fill='red'/></svg>"));
        Quillet::PainterPathContainer picture;
        QVERIFY(Quillet::parseSvg(conversion.text, picture));
        const QPainterPath& path = picture.getPaths().front()->getPath();
        for (int i = 0; i < path.elementCount(); ++i) {
            const QPointF point = path.elementAt(i);
            const double distance = std::hypot(point.x() - 60, point.y() - 45);
            QVERIFY(distance < 40.05 && (distance > 39.95 || point.x() > 89.99));
        }
    }

    void dashesAreLimitedInAll()
    {
        QString lines;
        for (int i = 0; i < 60; ++i)
            lines += QStringLiteral("<path stroke-dasharray='.001' stroke='red' d='M9 %1h9'/>").arg(i + 9);
        const Conversion conversion = convertSvg(document(lines.toLatin1().constData()));
        QCOMPARE(lostRules(conversion), QStringList{QStringLiteral("dashes")});
        QCOMPARE(conversion.losses.first().message,
                 QStringLiteral("behind the first 500,000 dashes, lines are drawn without gaps"));
        // The dashes of 55 lines, and 5 lines.
        QCOMPARE(conversion.text.count(QLatin1String("stroke-width")), 5);
    }

    void whatIsAsDeepAsMayBeIsDrawn()
    {
        const QString text = document((QStringLiteral("<svg>").repeated(1998)
                                       + QStringLiteral("<rect x='10' y='10' width='50' height='50'/>")
                                       + QStringLiteral("</svg>").repeated(1998))
                                          .toLatin1()
                                          .constData());
        const Conversion conversion = convertSvg(text);
        QCOMPARE(conversion.error, QString());
        QCOMPARE(conversion.shapes, 1);
    }

    void checkAndConvertNameTheSamePlaceForWhatIsTooDeep()
    {
        const QString text =
            document((QStringLiteral("<g><path d='M0 0h9'/></g>\n") + QStringLiteral("<g>\n").repeated(2100)
                      + QStringLiteral("</g>").repeated(2100))
                         .toLatin1()
                         .constData());
        const Check check = checkSvg(text);
        const Conversion conversion = convertSvg(text);
        QCOMPARE(check.verdict(), Finding::Refused);
        const Position& place = check.findings.last().position;
        QCOMPARE(check.findings.last().rule, QStringLiteral("depth"));
        QCOMPARE(place.line, 2001);
        QCOMPARE(conversion.errorPosition.line, place.line);
        QCOMPARE(conversion.errorPosition.column, place.column);
    }

    void followsBlocksOfStyleSheetsToALimit()
    {
        const auto nested = [](int depth) {
            return document((QStringLiteral("<style>") + QStringLiteral("@media{").repeated(depth)
                             + QStringLiteral("rect{fill:red}") + QStringLiteral("}").repeated(depth)
                             + QStringLiteral("</style><rect width='50' height='50'/>"))
                                .toLatin1()
                                .constData());
        };
        const Conversion followed = convertSvg(nested(20));
        QCOMPARE(lostRules(followed), QStringList());
        QVERIFY(followed.text.contains(QLatin1String("#ff0000")));
        for (const int depth : {21, 100000}) {
            const Conversion cut = convertSvg(nested(depth));
            QCOMPARE(lostRules(cut), QStringList{QStringLiteral("style-sheet")});
            QVERIFY(!cut.text.contains(QLatin1String("#ff0000")));
        }
    }

    void followsSelectorsToALimit()
    {
        const auto selecting = [](const QString& selector) {
            return document(QStringLiteral("<style>%1{fill:red}</style><g><rect width='50' height='50'/></g>")
                                .arg(selector)
                                .toLatin1()
                                .constData());
        };
        const Conversion followed =
            convertSvg(selecting(QStringLiteral("rect") + QStringLiteral("[width]").repeated(70)));
        QCOMPARE(lostRules(followed), QStringList());
        QVERIFY(followed.text.contains(QLatin1String("#ff0000")));
        for (const int parts : {100, 20000}) {
            for (const char* const combinator : {">", "+", " "}) {
                const QString selector =
                    (QStringLiteral("rect") + QLatin1String(combinator)).repeated(parts) + QLatin1String("g");
                const Conversion cut = convertSvg(selecting(selector));
                QCOMPARE(lostRules(cut), QStringList{QStringLiteral("selector")});
                QVERIFY(cut.losses.first().message.size() < 100);
            }
        }
    }

    // Comparing each rule with each class of each element would take minutes.
    void manyRulesForManyClassesComeToAnEnd()
    {
        QString rules;
        QString classes;
        for (int i = 0; i < 10000; ++i)
            rules += QStringLiteral(".a%1{fill:red}").arg(i);
        for (int i = 0; i < 100000; ++i)
            classes += QStringLiteral("a%1 ").arg(99999 - i);
        const QString text = QStringLiteral("<style>%1</style><g class='%2'><rect class='%2' width='9' "
                                            "height='9'/></g>")
                                 .arg(rules, classes);
        const Conversion conversion = convertSvg(document(text.toLatin1().constData()));
        QCOMPARE(lostRules(conversion), QStringList());
        QVERIFY(conversion.text.contains(QLatin1String("#ff0000")));
    }

    void comparesRulesWithElementsToALimit()
    {
        const auto converted = [](int rules) {
            const QString text = QStringLiteral("<style>%1</style>%2")
                                     .arg(QStringLiteral("*{fill:red}").repeated(rules),
                                          QStringLiteral("<rect width='9' height='9'/>").repeated(1000));
            return convertSvg(document(text.toLatin1().constData()));
        };
        const Conversion followed = converted(100);
        QCOMPARE(lostRules(followed), QStringList());
        QVERIFY(followed.text.contains(QLatin1String("#ff0000")));
        const Conversion cut = converted(10000);
        QCOMPARE(lostRules(cut), QStringList{QStringLiteral("style-sheet")});
        QVERIFY(!cut.text.contains(QLatin1String("#ff0000")));
    }

    void readsPropertiesToALimit()
    {
        const auto converted = [](const QString& form, const QString& property, int count) {
            QString properties;
            for (int i = 0; i < count; ++i)
                properties += property.arg(i);
            return convertSvg(document(form.arg(properties).toLatin1().constData()));
        };
        const QString attributes = QStringLiteral("<rect fill='red' width='50' height='50' %1/>");
        const QString style = QStringLiteral("<rect width='50' height='50' style='fill:red;%1'/>");
        const QString sheet = QStringLiteral("<style>*{fill:red}*{%1}</style><rect width='50' height='50'/>");
        const QString declaration = QStringLiteral("a%1:inherit;");
        QCOMPARE(lostRules(converted(style, declaration, 900)), QStringList());
        for (const Conversion& cut : {converted(attributes, QStringLiteral("a%1='1' "), 2000),
                                      converted(style, declaration, 50000),
                                      converted(sheet, declaration, 50000)}) {
            QVERIFY(lostRules(cut).contains(QStringLiteral("unknown-property")));
            QVERIFY(cut.text.contains(QLatin1String("#ff0000")));
        }
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
        QTest::newRow("use of a definition that uses itself")
            << document("<defs><g id='a'><use href='#a'/></g></defs><a><use href='#a'/></a>")
            << QStringLiteral("<use> refers to what it stands in");
        QTest::newRow("use of a symbol that uses itself")
            << document("<symbol id='a'><switch><use href='#a'/></switch></symbol><use href='#a'/>")
            << QStringLiteral("<use> refers to what it stands in");
        QString multiplied = QStringLiteral("<rect id='a0'/>");
        for (int i = 1; i < 30; ++i)
            multiplied +=
                QStringLiteral("<g id='a%1'><use href='#a%2'/><use href='#a%2'/></g>").arg(i).arg(i - 1);
        QTest::newRow("use that multiplies") << document(multiplied.toLatin1().constData())
                                             << QStringLiteral("<use> repeats more than 1,000,000 elements");
        QTest::newRow("use that multiplies what is not drawn")
            << document((QStringLiteral("<g id='a'>") + QStringLiteral("<text/><symbol/>").repeated(500)
                         + QStringLiteral("</g>") + QStringLiteral("<use href='#a'/>").repeated(1000))
                            .toLatin1()
                            .constData())
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
