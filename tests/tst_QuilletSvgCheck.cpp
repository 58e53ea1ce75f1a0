#include "TestCase.h"

#include "Checker.h"
#include "Converter.h"
#include "PathComparison.h"
#include "PathDataCheck.h"
#include "PathGrammar.h"
#include "RandomPathData.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <optional>

namespace {

QString document(const char* inside)
{
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\">\n%1</svg>")
        .arg(QString::fromUtf8(inside));
}

/// The findings that are more than notes: "lost 2:7 transform", with commas between.
QString graveFindings(const Check& check)
{
    QStringList result;
    for (const Finding& each : check.findings) {
        if (each.weight == Finding::Note)
            continue;
        result.append(
            QStringLiteral("%1 %2:%3 %4")
                .arg(each.weight == Finding::Refused ? QStringLiteral("refused") : QStringLiteral("lost"))
                .arg(each.position.line)
                .arg(each.position.column)
                .arg(each.rule));
    }
    return result.join(QStringLiteral(", "));
}

std::optional<QPainterPath> readByTheLibrary(const QString& data)
{
    Quillet::PainterPathContainer picture;
    if (!Quillet::parseSvg(QStringLiteral("<svg><path d=\"%1\"/></svg>").arg(data.toHtmlEscaped()), picture))
        return std::nullopt;
    return picture.getPaths().front()->getPath();
}

} // namespace

// What "quillet-svg check" finds, and where. Documents begin with a line for the root; what a row gives
// stands in the second line.
class TestQuilletSvgCheck : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatIsLost_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("findings");
        const auto row = [](const char* name, const char* inside, const char* findings) {
            QTest::newRow(name) << document(inside) << QString::fromLatin1(findings);
        };
        row("nothing", "<path d='M0 0h9v9z' fill='red'/>", "");
        row("groups", "<g fill='red'><g><path d='M0 0h9v9z' stroke='#abc' stroke-width='2px'/></g></g>", "");
        row("names of no account", "<g id='a' class='b'><title>t</title><path id='c' d='M0 0h9'/></g>", "");
        row("shape", " <rect width='9' height='9'/>", "lost 2:2 shape");
        row("use", "<defs><path id='a' d='M0 0h9'/></defs><use href='#a'/>", "lost 2:39 use");
        row("path in a link", "<a><path d='M0 0h9'/></a>", "lost 2:1 container");
        row("text", "<text>t</text>", "lost 2:1 text");
        row("text without a letter", "<text/><text> <tspan>\n</tspan></text>", "");
        row("text in a part of it", "<text><tspan>t</tspan></text>", "lost 2:1 text");
        row("text from elsewhere", "<text><tref href='#a'/></text>", "lost 2:1 text");
        row("image", "<image href='a.png'/>", "lost 2:1 image");
        row("style sheet in defs", "<defs><style>path{fill:red}</style></defs>", "lost 2:7 style-sheet");
        row("prefixed name", "<svg:path d='M0 0h9'/>", "lost 2:1 prefix");
        row("shape with a prefix",
            "<s:rect xmlns:s='http://www.w3.org/2000/svg' width='9' height='9'/>",
            "lost 2:1 shape");
        row("path with a prefix of its own",
            "<s:path xmlns:s='http://www.w3.org/2000/svg' d='M0 0h9'/>",
            "lost 2:1 prefix");
        row("unknown element", "<flowRoot/>", "lost 2:1 unknown-element");
        row("elements in capitals",
            "<G><PATH d='M0 0h9'/></G>",
            "lost 2:1 unknown-element, lost 2:4 unknown-element");
        row("element that draws nothing", "<linearGradient/><view/>", "");
        row("style sheet in another file", "<?xml-stylesheet href='a.css'?>", "lost 2:1 style-sheet");
        row("foreign element", "<x:rect width='9'/>", "");
        row("group of another namespace",
            "<g xmlns='urn:other'><g><path d='M0 0h9'/></g></g>",
            "lost 2:1 foreign");
        row("path of another namespace", "<path xmlns='urn:other' d='M0 0h9'/>", "lost 2:1 foreign");
        row("group of another namespace that draws nothing", "<g xmlns='urn:other'><b/></g>", "");
        row("what other programs show",
            "<video/><iframe/><audio/><canvas/>",
            "lost 2:1 image, lost 2:9 image, lost 2:18 image, lost 2:26 image");
        row("animation", "<path d='M0 0h9'><animate/></path>", "");

        row("transform", "<path transform='scale(2)' d='M0 0h9'/>", "lost 2:7 transform");
        row("transforms that move nothing",
            "<g transform='translate(0)'/><g transform=' matrix(1,0 0 1.0,0,0), rotate(0 5 5) scale(1 1)'/>"
            "<g transform='skewX(0)'/><g transform=''/><g style='transform:none'/>",
            "");
        row("transforms of which one moves something",
            "<g transform='translate(0) scale(1 2)'/><g transform='rotate(0) x'/><g transform='matrix(1)'/>"
            "<g transform='translate(1px)'/>",
            "lost 2:4 transform, lost 2:44 transform, lost 2:72 transform, lost 2:98 transform");
        row("transform of a group", "<g transform='scale(2)'/>", "lost 2:4 transform");
        row("style", "<path style='fill:red' d='M0 0h9'/>", "lost 2:7 style");
        row("style that says nothing", "<path style='-x-y:z' d='M0 0h9'/>", "");
        row("properties that are lost in a style, each by its rule",
            "<g style='fill:red; filter:url(#f);\n mask : url(#m);mix-blend-mode:screen;clip-path:none'/>",
            "lost 2:4 style, lost 2:21 filter, lost 3:2 mask, lost 3:17 unknown-property");
        row("property that is lost in a style with a comment",
            "<g style='/*;*/filter:url(#f)'/>",
            "lost 2:4 filter");
        row("property that is lost behind a reference",
            "<g style='&#x20;-x-y:z;display:none'><path d='M0 0h9'/></g>",
            "lost 2:24 hidden");
        row("clip", "<path clip-path='url(#a)' d='M0 0h9'/>", "lost 2:7 clip-path");
        row("no clip", "<path clip-path='none' d='M0 0h9'/>", "");
        row("mask", "<path mask='url(#a)' d='M0 0h9'/>", "lost 2:7 mask");
        row("filter", "<path filter='url(#a)' d='M0 0h9'/>", "lost 2:7 filter");
        row("marker", "<path marker-end='url(#a)' d='M0 0h9'/>", "lost 2:7 marker");
        row("display", "<path display='none' d='M0 0h9'/>", "lost 2:7 hidden");
        row("display of a group", "<g display='none'><path d='M0 0h9'/></g>", "lost 2:4 hidden");
        row("display of a group in a style",
            "<g style='display:none'><path d='M0 0h9'/></g>",
            "lost 2:11 hidden");
        row("hidden elements that are not read either",
            "<rect display='none'/><text style='display:none'>t</text><g display='none'><rect/><g "
            "display='inline'><text>t</text><image/></g></g>",
            "");
        row("style sheet in a hidden group",
            "<g display='none'><style>path{fill:red}</style></g>",
            "lost 2:19 style-sheet");
        row("elements behind hidden ones", "<g display='none'/><rect/>", "lost 2:20 shape");
        row("displayed", "<path display='inline' d='M0 0h9'/>", "");
        row("visibility", "<path visibility='hidden' d='M0 0h9'/>", "lost 2:7 hidden");
        row("condition that is not met", "<path requiredExtensions='a' d='M0 0h9'/>", "lost 2:7 condition");
        row("condition that nothing can meet",
            "<g requiredExtensions=''/><g requiredFeatures=' '/><g systemLanguage=''/>",
            "lost 2:4 condition, lost 2:30 condition, lost 2:55 condition");
        row("condition that is met", "<path systemLanguage='en' d='M0 0h9'/>", "");
        row("blending", "<path mix-blend-mode='screen' d='M0 0h9'/>", "lost 2:7 unknown-property");
        row("usual order of painting", "<path paint-order='fill' d='M0 0h9'/>", "");
        row("dashes", "<path stroke-dasharray='2' stroke='red' d='M0 0h9'/>", "lost 2:7 dashes");

        row("dashes without a length",
            "<path stroke='red' stroke-dasharray='0' d='M0 0h9'/><path stroke='red' stroke-dasharray='0px, "
            "0' "
            "d='M0 0h9'/><path style='stroke-dasharray:none' d='M0 0h9'/>",
            "");
        row("dashes without a stroke",
            "<path stroke-dasharray='2' d='M0 0h9'/><path stroke='none' stroke-dasharray='2' d='M0 0h9'/>",
            "");
        row("dashes without a stroke in a style", "<path style='stroke-dasharray:2' d='M0 0h9'/>", "");
        row("dashes of a group",
            "<g stroke-dasharray='2'><g><path stroke='red' d='M0 0h9'/></g></g>",
            "lost 2:4 dashes");
        row("dashes of a group that strokes nothing",
            "<g stroke-dasharray='2'><path stroke='none' d='M0 0h9'/></g><path stroke='red' d='M0 0h9'/>",
            "");
        row("dashes below a stroke",
            "<g stroke='red'><path stroke-dasharray='2' d='M0 0h9'/></g>",
            "lost 2:23 dashes");
        row("dashes below a stroke in a style",
            "<g style='stroke:red'><path stroke-dasharray='2' d='M0 0h9'/></g>",
            "lost 2:4 style, lost 2:29 dashes");

        row("current colour", "<path fill='currentColor' d='M0 0h9'/>", "lost 2:13 color");
        row("colour as a function", "<path fill='rgb(1,2,3)' d='M0 0h9'/>", "lost 2:13 color");
        row("paint server", "<path stroke='url(#a)' d='M0 0h9'/>", "lost 2:15 color");
        row("alpha at the end", "<path fill='#ff000080' d='M0 0h9'/>", "lost 2:13 color");
        row("transparent", "<path fill='transparent' d='M0 0h9'/>", "lost 2:13 color");
        row("no stroke to inherit", "<path stroke='inherit' d='M0 0h9'/>", "");
        row("no fill to inherit", "<g fill='none'><path fill='inherit' d='M0 0h9'/></g>", "");
        row("stroke to inherit",
            "<g stroke='red'><g stroke='inherit'/><path stroke='inherit' d='M0 0h9'/></g>",
            "lost 2:28 color, lost 2:52 color");
        row("colour of a group", "<g fill='inherit'/>", "lost 2:10 color");

        row("opacity without a colour", "<path opacity='.5' d='M0 0h9'/>", "lost 2:1 opacity");
        row("opacity beside the colour", "<path opacity='.5' fill='red' d='M0 0h9'/>", "");
        row("opacity in opacity",
            "<g opacity='.5'><path opacity='.5' fill='red' d='M0 0h9'/></g>",
            "lost 2:17 opacity");
        row("opacity of all fills",
            "<g fill-opacity='.5'><path fill='red' d='M0 0h9'/></g>",
            "lost 2:22 opacity");
        row("opacity of no fill", "<path opacity='.5' fill='none' d='M0 0h9'/>", "");
        row("opacity of fill and stroke together",
            "<path opacity='.5' fill='red' stroke='blue' stroke-width='3' d='M0 0h9v9z'/>",
            "lost 2:1 opacity");
        row("opacities of fill and stroke, each its own",
            "<path fill-opacity='.5' fill='red' stroke-opacity='.5' stroke='blue' stroke-width='3' d='M0 "
            "0h9v9z'/>",
            "");
        row("opacity of shapes that overlap",
            "<g opacity='.5'><path fill='red' d='M0 0h9v9z'/><path fill='blue' d='M4 0h9v9z'/></g>",
            "lost 2:1 opacity");
        row("opacity of shapes side by side",
            "<g opacity='.5'><path fill='red' d='M0 0h9v9h-9z'/><path fill='blue' d='M9 0h9v9h-9z'/></g>",
            "");
        row("opacity of groups in each other",
            "<g opacity='.5'><g><path fill='red' d='M0 0h9v9z'/></g><path fill='blue' d='M4 0h9v9z'/></g>",
            "lost 2:1 opacity");
        row("colour with a line break", "<path fill='red\n' d='M0 0h9v9z'/>", "lost 2:1 color");
        row("rule that matters", "<path d='M0 0h9v9h-9zM3 3h3v3h-3z'/>", "lost 2:1 fill-rule");
        row("rule that does not matter", "<path d='M0 0h9v9h-9zM3 3v3h3v-3z'/>", "");
        row("rule of the group",
            "<g fill-rule='nonzero'><path d='M0 0h9v9h-9zM3 3h3v3h-3z'/></g>",
            "lost 2:24 fill-rule");
        row("rule of the path", "<path fill-rule='nonzero' d='M0 0h9v9h-9zM3 3h3v3h-3z'/>", "");
        row("stroke without width",
            "<path stroke='red' stroke-width='0' d='M0 0h9'/>",
            "lost 2:1 stroke-width");
        row("sharp corner", "<path stroke='red' d='M0 0L9 1 0 2'/>", "lost 2:1 miter");
        row("blunt corner", "<path stroke='red' d='M0 0L9 9 0 18'/>", "");

        row("unit in the middle", "<path stroke-width='1px5' d='M0 0h9'/>", "lost 2:21 number");
        row("opacity that is no number", "<g opacity='nan'/>", "lost 2:13 number");
        row("limit below 1", "<path stroke='red' stroke-miterlimit='.5' d='M0 0h9'/>", "lost 2:1 miter");
        row("limit below 1 of a group",
            "<g stroke-miterlimit='.5'><path stroke='red' d='M0 0h9'/></g>",
            "lost 2:27 miter");
        row("limit below 1 without corners",
            "<path stroke='red' stroke-linejoin='round' stroke-miterlimit='.5' d='M0 0h9'/>",
            "");
        row("limit below 1 without a stroke", "<path stroke-miterlimit='.5' d='M0 0h9'/>", "");
        row("limit that is too large", "<path stroke-miterlimit='1e39' d='M0 0h9'/>", "lost 2:26 number");
        row("numbers between spaces",
            "<path opacity=' 1 ' stroke-width=' +.5e1px ' stroke-miterlimit='4.' d='M0 0h9'/>",
            "");
        row("values behind one that a group does not take",
            "<g fill-opacity='1%' fill='currentColor' stroke-width='1px5' opacity='nan'/>",
            "lost 2:18 group-value, lost 2:71 number");
        row("percentage on a group", "<g opacity='50%' fill='red'/>", "lost 2:13 group-value");
        row("percentage on a path", "<path opacity='50%' d='M0 0h9'/>", "refused 2:16 value");
        row("unit", "<path stroke-width='2pt' d='M0 0h9'/>", "refused 2:21 value");
        row("inherited keyword", "<path stroke-linecap='inherit' d='M0 0h9'/>", "refused 2:23 value");
        row("join of SVG 2", "<path stroke-linejoin='arcs' d='M0 0h9'/>", "refused 2:24 value");
        row("rule that is none", "<path fill-rule='odd' d='M0 0h9'/>", "refused 2:18 value");
        row("nothing behind what is refused",
            "<path opacity='50%' d='M0 0h9'/><rect/>",
            "refused 2:16 value");

        row("flags together", "<path d='M0 5a5 5 0 1110 0'/>", "lost 2:21 arc-flags");
        row("flags together, first in the path",
            "<path d='M8 1a7 7 0 100 14zM4 5h1'/>",
            "lost 2:21 arc-flags");
        row("flags together, refused behind them",
            "<path d='M0 5a5 5 0 01.5.5X1a5 5 0 11 1 1'/>",
            "lost 2:21 arc-flags, refused 2:27 path-error");
        row("second arc", "<path d='M0 5a5 5 0 1 1 10 0 5 5 0 11-10 0'/>", "lost 2:36 arc-flags");
        row("three arcs",
            "<path d='M0 5a5 5 0 1110 0 5 5 0 1 1 2 2 5 5 0 11-10 0A5 5 0 0012 5'/>",
            "lost 2:21 arc-flags, lost 2:48 arc-flags, lost 2:62 arc-flags");
        row("flags together in two paths",
            "<path d='M0 5a5 5 0 1110 0'/>\n<path d='M0 5a5 5 0 1110 0'/>",
            "lost 2:21 arc-flags, lost 3:21 arc-flags");
        row("flags apart", "<path d='M0 5a5 5 0 1 1 10 0'/>", "");
        row("flat arc", "<path d='M0 5A0 5 0 1 1 10 0'/>", "lost 2:14 arc-radius");
        row("flat arc that leads nowhere", "<path d='M0 5A0 5 0 1 1 0 5a0 5 0 1 1 0 0L9 9'/>", "");
        row("flat arcs and flags together",
            "<path d='M0 5a0 5 0 1 1 9 0a5 5 0 1110 0zh9A5 0 0 1 0 0 5A5 0 0 1 1 0 6'/>",
            "lost 2:14 arc-radius, lost 2:35 arc-flags, lost 2:44 arc-radius, lost 2:58 arc-radius");
        row("flat arcs that lead nowhere, behind each command that moves",
            "<path d='M1 2H5V6A0 1 0 0 1 5 6M7 8h1zA0 1 0 0 1 7 8C1 1 2 2 3 4A0 1 0 0 1 3 4m1 1v1h1a0 1 0 0 "
            "1 0 "
            "0a5 5 0 1110 0'/>",
            "lost 2:108 arc-flags");
        row("comma behind a letter", "<path d='M0 0L,1 2'/>", "refused 2:15 path-error");
        row("more behind what is refused", "<path d='M0 0L,1 2a5 5 0 1110 0'/>", "refused 2:15 path-error");
        row("error that the reader passes over", "<path d='M0 0L5 5,L6 6'/>", "lost 2:19 path-error");
        row("error at the end", "<path d='M0 0L5 5 6'/>", "");
        row("error behind flags together", "<path d='M0 0a5 5 0 1110 0L5'/>", "lost 2:21 arc-flags");
        row("flag that is none", "<path d='M0 0a5 5 0 1 2 6 6'/>", "lost 2:23 path-error");
        row("number that is too large", "<path d='M0 0L5 1e999'/>", "lost 2:17 number");
        row("number that is too large, refused behind it",
            "<path d='M0 0L1e999 55a5 5 0 1110 0'/>",
            "refused 2:15 number");
        row("number that is too large, refused in the next pair",
            "<path d='M0 0L1e999 5 6 7'/>",
            "refused 2:15 number");
        row("number that misleads, and one that does not",
            "<path d='M0 0h1e999 5 6 1e200'/>",
            "refused 2:15 number");
        row("number that misleads behind one that does not",
            "<path d='M0 0h1e200 1e999 5 6'/>",
            "lost 2:15 number, refused 2:21 number");
        row("number that is too large for a picture", "<path d='M0 0H-3.5e38V9'/>", "lost 2:15 number");
        row("number that is too small", "<path d='M0 0L5 1e-999'/>", "lost 2:17 number");
        row("several such numbers",
            "<path d='M0 0h1e-999v1e-999a5 5 0 111e-999 1'/>",
            "lost 2:15 number, lost 2:22 number, lost 2:35 arc-flags, lost 2:37 number");
        row("largest and smallest numbers", "<path d='M0 0L3.4e38 1e-300'/>", "");
        row("letter that is none", "<path d='M0 0h5x5'/>", "refused 2:16 path-error");
        row("second line", "<path d='M0 0\n h5 x5'/>", "refused 3:5 path-error");
        row("place behind a reference", "<path d='M0 0&#32;L5 x5'/>", "refused 2:22 path-error");
        row("numbers without space", "<path d='M.5.5-1-1l1e1-1E-1'/>", "");
        row("round caps of a line without length",
            "<path stroke='red' stroke-linecap='round' d='M1 1h9M5 5h0'/>",
            "lost 2:52 caps");
        row("square caps of two",
            "<path stroke='red' stroke-linecap='square' d='M1 1z m4 4 l0 0'/>",
            "lost 2:47 caps, lost 2:53 caps");
        row("flat caps of a line without length", "<path stroke='red' d='M5 5h0'/>", "");
        row("caps that nothing strokes", "<path stroke-linecap='round' d='M5 5h0'/>", "");
        row("caps of what is hidden",
            "<path display='none' stroke='red' stroke-linecap='round' d='M5 5h0'/>",
            "lost 2:7 hidden");
        row("caps that are not seen",
            "<path stroke='red' stroke-opacity='0' stroke-linecap='round' d='M5 5h0'/>",
            "");
    }

    void findsWhatIsLost()
    {
        QFETCH(QString, text);
        QFETCH(QString, findings);
        QCOMPARE(graveFindings(checkSvg(text)), findings);
    }

    void namesWidthsThatTheReaderIgnores()
    {
        const auto check = [](const char* width) {
            const QString path =
                QStringLiteral("<path stroke-width='%1' d='M0 0h9'/>").arg(QLatin1String(width));
            return checkSvg(document(qPrintable(path)));
        };
        const QString said = QStringLiteral("QPen::setWidthF: Setting a pen width that is out of range");
        expectMessage(said);
        QCOMPARE(graveFindings(check("32768")), QStringLiteral("lost 2:21 number"));
        QCOMPARE(graveFindings(check("32767.5")), QString());
        // SVG ignores it, too.
        expectMessage(said);
        const Check negative = check("-1");
        QCOMPARE(negative.verdict(), Finding::Note);
        QCOMPARE(negative.findings.size(), 1);
        QCOMPARE(negative.findings.first().rule, QStringLiteral("number"));
    }

    void findsWhatIsWrongWithTheWhole_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("findings");
        const auto row = [](const char* name, const QString& text, const char* findings) {
            QTest::newRow(name) << text << QString::fromLatin1(findings);
        };
        row("empty", QString(), "refused 1:1 xml");
        row("broken", QStringLiteral("<svg>\n<path</svg>"), "refused 2:6 xml");
        row("other root", QStringLiteral("<html/>"), "refused 1:1 root");
        row("root with a prefix", QStringLiteral("<s:svg xmlns:s='x'/>"), "refused 1:1 root");
        row("view box that moves", QStringLiteral("<svg viewBox='1 0 9 9'/>"), "lost 1:6 view-box");
        row("view box that scales",
            QStringLiteral("<svg width='9' height='9' viewBox='0 0 3 3'/>"),
            "lost 1:27 view-box");
        row("view box of the same size", QStringLiteral("<svg width='9' height='9' viewBox='0 0 9 9'/>"), "");
        row("other namespace",
            QStringLiteral("<svg xmlns='urn:other'><path d='M0 0h9'/></svg>"),
            "lost 1:1 foreign");
        row("no width", QStringLiteral("<svg width='0'><path d='M0 0h9'/></svg>"), "lost 1:6 hidden");
        row("no height", QStringLiteral("<svg height='0%'><path d='M0 0h9'/></svg>"), "lost 1:6 hidden");
        row("view box without a height",
            QStringLiteral("<svg viewBox='0,0 9 0'><path d='M0 0h9'/></svg>"),
            "lost 1:6 hidden");
        row("no width and nothing to draw", QStringLiteral("<svg width='0'/>"), "");
        row("entity in another file",
            QStringLiteral("<!DOCTYPE svg [<!ENTITY a SYSTEM 'a.xml'>]>\n<svg><g>&a;</g></svg>"),
            "lost 2:9 entity");
        row("entities in other files beside text, comments and elements",
            QStringLiteral("<!DOCTYPE svg [<!ENTITY a SYSTEM 'a.xml'><!ENTITY b 'b'>]>\n"
                           "<svg>&b; &a; <!--&a;--><![CDATA[&a;]]><g/>&a;<rect/></svg>"),
            "lost 2:10 entity, lost 2:43 entity, lost 2:46 shape");
        row("entity of a document type in another file",
            QStringLiteral("<!DOCTYPE svg SYSTEM 'a.dtd'>\n<svg>&a;</svg>"),
            "lost 2:6 entity");
        row("text in another file",
            QStringLiteral("<!DOCTYPE svg [<!ENTITY a SYSTEM 'a.xml'>]>\n<svg><text>&a;</text></svg>"),
            "lost 2:6 text");
        row("entity in another file in what is ignored",
            QStringLiteral("<!DOCTYPE svg [<!ENTITY a SYSTEM 'a.xml'>]>\n<svg><desc>&a;</desc></svg>"),
            "");
        row("view box alone", QStringLiteral("<svg viewBox='0 0 9 9'/>"), "");
        row("deep",
            QStringLiteral("<svg>") + QStringLiteral("<g>").repeated(2000)
                + QStringLiteral("</g>").repeated(2000) + QStringLiteral("</svg>"),
            "refused 1:6003 depth");
    }

    void findsWhatIsWrongWithTheWhole()
    {
        QFETCH(QString, text);
        QFETCH(QString, findings);
        QCOMPARE(graveFindings(checkSvg(text)), findings);
    }

    void whatStandsInAStyleHasItsOwnAdvice()
    {
        const auto advice = [](const char* style) {
            const Check check = checkSvg(document(
                qPrintable(QStringLiteral("<path style='%1' d='M0 0h9'/>").arg(QLatin1String(style)))));
            return check.findings.size() == 1 ? check.findings.first().advice : QString();
        };
        QCOMPARE(advice("opacity:.5;fill:red"),
                 QStringLiteral("write the properties as attributes, or run “quillet-svg convert”"));
        QCOMPARE(advice("filter:url(#f)"), QStringLiteral("draw what it does with paths"));
        QCOMPARE(advice("display:none"),
                 QStringLiteral("take out what is hidden, or run “quillet-svg convert”"));
        QCOMPARE(advice("transform:scale(2)"), QStringLiteral("write it as an attribute “transform”"));
        QCOMPARE(advice("-x-y:z"), checkSvg(document("<g style=''/>")).findings.first().advice);
    }

    void saysWhatAConversionRefuses()
    {
        const auto say = [](const char* inside) {
            QStringList result;
            const Check check = checkSvg(document(inside));
            for (const Finding& each : check.findings) {
                if (each.weight != Finding::Note)
                    result.append(QStringLiteral("%1 %2; %3")
                                      .arg(QString::number(each.position.column), each.message, each.advice));
            }
            return result;
        };
        const char* const circle = "<g id='a'><use href='#a'/></g>";
        QCOMPARE(say(circle),
                 (QStringList{QStringLiteral("11 <use> refers to what it stands in; “quillet-svg convert” "
                                             "refuses the file for it; break the circle"),
                              QStringLiteral("11 <use> is ignored; break the circle, then run “quillet-svg "
                                             "convert”")}));
        QVERIFY(convertSvg(document(circle))
                    .error.startsWith(QStringLiteral("<use> refers to what it stands in")));
        QCOMPARE(say("<g id='a'/><use href='#a'/>"),
                 QStringList(QStringLiteral("12 <use> is ignored; run “quillet-svg convert”")));
    }

    void tellsWhatTheReaderAnswers()
    {
        const Check good = checkSvg(document("<path d='M0 0h9'/><path d='M0 0h9'/>"));
        QVERIFY(good.accepted);
        QCOMPARE(good.shapes, 2);
        const Check bad = checkSvg(document("<path d='M0 0h9'/><path d='x1'/>"));
        QVERIFY(!bad.accepted);
        QCOMPARE(bad.shapes, 1);
    }

    void placesStandBehindReferencesAndInEntities()
    {
        // The length of a reference is not that of what it stands for.
        QCOMPARE(graveFindings(checkSvg(document("<g id='&amp;&#x41;' transform='scale(2)'/>"))),
                 QStringLiteral("lost 2:21 transform"));
        const Check check = checkSvg(QStringLiteral(
            "<!DOCTYPE svg [<!ENTITY a \"<rect/>\">]>\n<svg>&a;<g transform='scale(2)'/></svg>"));
        QVERIFY(graveFindings(check).endsWith(QStringLiteral("lost 2:12 transform")));
    }

    void whateverIsReadOtherwiseIsNamed_data()
    {
        QTest::addColumn<int>("style");
        for (int i = 0; i < pathDataStyles().size(); ++i)
            QTest::newRow(pathDataStyles()[i].name) << i;
    }

    void whateverIsReadOtherwiseIsNamed()
    {
        QFETCH(int, style);
        std::mt19937 random(20261121u + uint(style));
        for (int i = 0; i < rounds(400); ++i) {
            XmlAttribute attribute;
            attribute.value = randomPathData(pathDataStyles()[style], random);
            const PathReading reading = readPathData(attribute.value);
            const auto meant = readByTheLibrary(spelledOut(reading, reading.segments.size()));
            const auto drawn = readByTheLibrary(attribute.value);
            const QVector<Finding> findings = checkPathData(attribute);
            const auto count = [&](auto condition) {
                return std::count_if(findings.begin(), findings.end(), condition);
            };
            const auto has = [&](const char* rule) {
                return count([&](const Finding& each) { return each.rule == QLatin1String(rule); }) > 0;
            };
            const auto refused = count([](const Finding& each) { return each.weight == Finding::Refused; });
            const auto lost = count([](const Finding& each) { return each.weight == Finding::Lost; });
            QVERIFY2(refused == (drawn ? 0 : 1), qPrintable(attribute.value));
            QVERIFY2(!has("path-data"), qPrintable(attribute.value)); // for what nobody has thought of
            if (drawn && !has("number")) {
                const bool isSame = meant && firstDifference(*drawn, *meant).isEmpty();
                QVERIFY2(isSame == (lost == 0), qPrintable(attribute.value));
            }
        }
    }

    void columnsCountCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("findings");
        const auto row = [](const char* name, const char* text, const char* findings) {
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromLatin1(findings);
        };
        row("two units for a character", "<svg>\n<g id='\xf0\x9f\x98\x80'/><rect/></svg>", "lost 2:12 shape");
        row("two units behind an error", "<svg>\n<g id='\xf0\x9f\x98\x80'/><</svg>", "refused 2:13 xml");
        row("lines of two characters",
            "<svg>\r\n<path d='M0 0\r\n h5\r\n x5'/></svg>",
            "refused 4:2 path-error");
        row("lines of old", "<svg>\r<path d='M0 0\r h5 x5'/></svg>", "refused 3:5 path-error");
        row("references in the value",
            "<svg><path d='M0 0&#32;&#x20;L5 x5'/></svg>",
            "refused 1:33 path-error");
        row("entity in the value",
            "<!DOCTYPE svg [<!ENTITY a \"L5 5 \">]>\n<svg><path d='M0 0&a;h5 x5'/></svg>",
            "refused 2:19 path-error");
    }

    void columnsCountCharacters()
    {
        QFETCH(QString, text);
        QFETCH(QString, findings);
        QCOMPARE(graveFindings(checkSvg(text)), findings);
    }

    void whatMakesNoDifferenceIsANote()
    {
        // The arc ends where it begins, however its flags are read.
        const Check check = checkSvg(document("<path d='M0 0L5 5a5 5 0 110 0'/>"));
        QCOMPARE(check.verdict(), Finding::Note);
        QCOMPARE(check.findings.size(), 1);
        QCOMPARE(check.findings.first().rule, QStringLiteral("arc-flags"));
        QVERIFY(check.findings.first().message.endsWith(QStringLiteral("; here that makes no difference")));
    }

    void manyFaultsOfAPathTakeTheTimeOfOnePass()
    {
        // Places looked for from the beginning each time would take minutes.
        const QString arcs = QStringLiteral("a1 1 0 111 1").repeated(50000);
        const Check check = checkSvg(QStringLiteral("<svg><path d='M0 0%1'/></svg>").arg(arcs));
        QCOMPARE(check.findings.size(), 50000);
    }

    void bytesThatAreNotReadAreNamed_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("findings");
        const auto row = [](const char* name, const QByteArray& bytes, const char* findings) {
            QTest::newRow(name) << bytes << QString::fromLatin1(findings);
        };
        row("none", "<svg/>\n", "");
        row("null byte at the end", QByteArray("<svg/>\n\0", 8), "");
        row("behind a null byte", QByteArray("<svg/>\n\0<g/>", 12), "lost 2:1 null-byte");
        row("null byte within", QByteArray("<svg>\n\0</svg>", 13), "refused 1:6 xml, lost 2:1 null-byte");
    }

    void bytesThatAreNotReadAreNamed()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, findings);
        QCOMPARE(graveFindings(checkDocument(read(bytes))), findings);
    }

    void theNumberOfBytesBehindANullIsSaid()
    {
        const auto message = [this](const QByteArray& bytes) {
            return checkDocument(read(bytes)).findings.last().message;
        };
        QCOMPARE(message(QByteArray("<svg/>\0x", 8)),
                 QStringLiteral("the reader stops at a null byte; the byte behind it is not read"));
        QCOMPARE(message(QByteArray("<svg/>\0xy", 9)),
                 QStringLiteral("the reader stops at a null byte; the 2 bytes behind it are not read"));
    }

    void bytesThatAreNoUtf8AreNoted()
    {
        const Check check = checkDocument(read("\xef\xbb\xbf<svg>\n <!-- \xe4 --></svg>"));
        QCOMPARE(check.verdict(), Finding::Note);
        QCOMPARE(check.findings.size(), 1);
        QCOMPARE(check.findings.first().rule, QStringLiteral("encoding"));
        QCOMPARE(check.findings.first().position.line, 2);
        QCOMPARE(check.findings.first().position.column, 7);
        QVERIFY(checkDocument(read("<svg><!-- \xc3\xa4 --></svg>")).findings.isEmpty());
    }

    void namesWhatIsIgnoredWithoutLoss()
    {
        const Check check = checkSvg(document("<g id='a'><desc/></g>"));
        QCOMPARE(check.verdict(), Finding::Note);
        QStringList messages;
        for (const Finding& each : check.findings)
            messages.append(each.message);
        QCOMPARE(messages,
                 (QStringList{QStringLiteral("the attribute “id” is ignored"),
                              QStringLiteral("<desc> is ignored")}));
    }

    void readsPathDataByTheGrammar_data()
    {
        QTest::addColumn<QString>("data");
        QTest::addColumn<QString>("spelled");
        QTest::addColumn<int>("error");
        const auto row = [](const char* data, const char* spelled, int error) {
            QTest::newRow(data) << QString::fromLatin1(data) << QString::fromLatin1(spelled) << error;
        };
        row("", "", -1);
        row(" M1,2", "M1 2 ", -1);
        row("m1-2.5.5-3 4", "m1 -2.5 l.5 -3 ", 12);
        row("M1 2 3 4z", "M1 2 L3 4 z ", -1);
        row("M1 2z m1 1", "M1 2 z m1 1 ", -1);
        row("M0 0a1 1 0 0110 5", "M0 0 a1 1 0 0 1 10 5 ", -1);
        row("M0 0a1 1 0 01.5.5 1 1 0 00-1-1", "M0 0 a1 1 0 0 1 .5 .5 a1 1 0 0 0 -1 -1 ", -1);
        row("M0 0A0 1 0 0 1 5 5", "M0 0 L5 5 ", -1);
        row("M0 0a1 1 0 2 1 5 5", "M0 0 ", 11);
        row("L0 0", "", 0);
        row("M0 0,", "M0 0 ", 5);
        row("M1e2 1.e-1", "M1e2 1.e-1 ", -1);
        row("M1e 2", "", 2);
        row("M0 0a-1 +2 0 0 1 5 5", "M0 0 a-1 +2 0 0 1 5 5 ", -1);
        row("M0 0z1", "M0 0 z ", 5);
        row("M0 .", "", 3);
        row("M1 2H3 4V5", "M1 2 H3 H4 V5 ", -1);
    }

    void readsPathDataByTheGrammar()
    {
        QFETCH(QString, data);
        QFETCH(QString, spelled);
        QFETCH(int, error);
        const PathReading reading = readPathData(data);
        QCOMPARE(spelledOut(reading, reading.segments.size()), spelled);
        QCOMPARE(reading.errorOffset, error);
    }

    void findsDots_data()
    {
        QTest::addColumn<QString>("data");
        QTest::addColumn<QVector<int>>("places");
        const auto row = [](const char* data, const QVector<int>& places) {
            QTest::newRow(data) << QString::fromLatin1(data) << places;
        };
        row("", {});
        row("M1 2", {});
        row("M1 2M3 4", {});
        row("M1 2z", {0});
        row("M1 2 1 2", {0});
        row("M1 2h0", {0});
        row("M1 2H1", {0});
        row("M1 2H2", {});
        row("M1 2V2", {0});
        row("M1 2V1", {});
        row("M1 2l0 0v0l0 0", {0});
        row("M1 2l0 0v1", {});
        row("M1 2l5 5-5-5", {});
        row("M1 2c0 0 0 0 0 0", {0});
        row("M1 2c0 0 3 0 0 0", {});
        row("M1 2C1 2 1 2 1 2", {0});
        row("M1 2C1 2 1 3 1 2", {});
        row("M1 2q0 0 0 0t0 0", {0});
        row("M1 2a5 5 0 0 1 0 0", {});
        row("M1 2a0 5 0 0 1 3 3", {});
        row("M1 2h5M3 4z", {6});
        row("M1 2h5zz", {});
        row("M1 2h5zh0", {7});
        row("M1 2zl5 5", {0});
        row("M1 2h0m3 4h0m5 6h1", {0, 6});
    }

    void findsDots()
    {
        QFETCH(QString, data);
        QFETCH(QVector<int>, places);
        const PathReading reading = readPathData(data);
        QVector<int> found;
        const QVector<Subpath> subpaths = subpathsOf(reading);
        for (const Subpath& each : subpaths) {
            if (each.isDot)
                found.append(reading.segments[each.begin].offset);
        }
        QCOMPARE(found, places);
    }

    void anErrorSaysWhatStandsWhere_data()
    {
        QTest::addColumn<QString>("data");
        QTest::addColumn<QString>("error");
        const auto row = [](const char* data, const char* error) {
            QTest::newRow(data) << QString::fromUtf8(data) << QString::fromUtf8(error);
        };
        row("L0 0", "it does not begin with a move, M or m");
        row("M0 0x5", "“x” stands where a command must");
        row("M0 0\xf0\x9f\x98\x80", "“\xf0\x9f\x98\x80” stands where a command must");
        row("M0 0L5", "it ends where the command L needs another number");
        row("M0 0L5z", "“z” stands where the command L needs a number");
        row("M0 0a5 5 0 2 1 5 5", "“2” stands where a flag of an arc must, 0 or 1");
    }

    void anErrorSaysWhatStandsWhere()
    {
        QFETCH(QString, data);
        QFETCH(QString, error);
        QCOMPARE(readPathData(data).error, error);
    }

private:
    /// As it is read from a file.
    Document read(const QByteArray& bytes) const
    {
        QFile file(m_directory.filePath(QStringLiteral("a.svg")));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            return {};
        file.close();
        return readDocument(file.fileName());
    }

    QTemporaryDir m_directory;
};

QUILLET_TEST_MAIN(TestQuilletSvgCheck)
#include "tst_QuilletSvgCheck.moc"
