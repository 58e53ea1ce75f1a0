#include "TestCase.h"

#include "Checker.h"
#include "PathGrammar.h"

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
        row("element that draws nothing", "<linearGradient/><view/>", "");
        row("style sheet in another file", "<?xml-stylesheet href='a.css'?>", "lost 2:1 style-sheet");
        row("foreign element", "<x:rect width='9'/>", "");
        row("animation", "<path d='M0 0h9'><animate/></path>", "");

        row("transform", "<path transform='scale(2)' d='M0 0h9'/>", "lost 2:7 transform");
        row("transform of a group", "<g transform='scale(2)'/>", "lost 2:4 transform");
        row("style", "<path style='fill:red' d='M0 0h9'/>", "lost 2:7 style");
        row("style that says nothing", "<path style='-x-y:z' d='M0 0h9'/>", "");
        row("clip", "<path clip-path='url(#a)' d='M0 0h9'/>", "lost 2:7 clip-path");
        row("no clip", "<path clip-path='none' d='M0 0h9'/>", "");
        row("mask", "<path mask='url(#a)' d='M0 0h9'/>", "lost 2:7 mask");
        row("filter", "<path filter='url(#a)' d='M0 0h9'/>", "lost 2:7 filter");
        row("marker", "<path marker-end='url(#a)' d='M0 0h9'/>", "lost 2:7 marker");
        row("display", "<path display='none' d='M0 0h9'/>", "lost 2:7 hidden");
        row("displayed", "<path display='inline' d='M0 0h9'/>", "");
        row("visibility", "<path visibility='hidden' d='M0 0h9'/>", "lost 2:7 hidden");
        row("condition that is not met", "<path requiredExtensions='a' d='M0 0h9'/>", "lost 2:7 condition");
        row("condition that is met", "<path systemLanguage='en' d='M0 0h9'/>", "");
        row("blending", "<path mix-blend-mode='screen' d='M0 0h9'/>", "lost 2:7 unknown-property");
        row("usual order of painting", "<path paint-order='fill' d='M0 0h9'/>", "");
        row("dashes", "<path stroke-dasharray='2' d='M0 0h9'/>", "lost 2:7 dashes");

        row("current colour", "<path fill='currentColor' d='M0 0h9'/>", "lost 2:13 color");
        row("colour as a function", "<path fill='rgb(1,2,3)' d='M0 0h9'/>", "lost 2:13 color");
        row("paint server", "<path stroke='url(#a)' d='M0 0h9'/>", "lost 2:15 color");
        row("alpha at the end", "<path fill='#ff000080' d='M0 0h9'/>", "lost 2:13 color");
        row("transparent", "<path fill='transparent' d='M0 0h9'/>", "lost 2:13 color");
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

        row("percentage on a group", "<g opacity='50%' fill='red'/>", "lost 2:13 group-value");
        row("percentage on a path", "<path opacity='50%' d='M0 0h9'/>", "refused 2:16 value");
        row("unit", "<path stroke-width='2pt' d='M0 0h9'/>", "refused 2:21 value");
        row("inherited keyword", "<path stroke-linecap='inherit' d='M0 0h9'/>", "refused 2:23 value");
        row("join of SVG 2", "<path stroke-linejoin='arcs' d='M0 0h9'/>", "refused 2:24 value");
        row("rule that is none", "<path fill-rule='odd' d='M0 0h9'/>", "refused 2:18 value");
        row("nothing behind what is refused",
            "<path opacity='50%' d='M0 0h9'/><rect/>",
            "refused 2:16 value");

        row("flags together", "<path d='M0 5a5 5 0 1110 0'/>", "lost 2:14 arc-flags");
        row("flags together, first in the path",
            "<path d='M8 1a7 7 0 100 14zM4 5h1'/>",
            "lost 2:14 arc-flags");
        row("flags together, refused", "<path d='M0 5a5 5 0 01.5.5X1'/>", "refused 2:27 path-error");
        row("second arc", "<path d='M0 5a5 5 0 1 1 10 0 5 5 0 11-10 0'/>", "lost 2:30 arc-flags");
        row("flags apart", "<path d='M0 5a5 5 0 1 1 10 0'/>", "");
        row("flat arc", "<path d='M0 5A0 5 0 1 1 10 0'/>", "lost 2:14 arc-radius");
        row("comma behind a letter", "<path d='M0 0L,1 2'/>", "refused 2:15 path-error");
        row("letter that is none", "<path d='M0 0h5x5'/>", "refused 2:16 path-error");
        row("second line", "<path d='M0 0\n h5 x5'/>", "refused 3:5 path-error");
        row("numbers without space", "<path d='M.5.5-1-1l1e1-1E-1'/>", "");
    }

    void findsWhatIsLost()
    {
        QFETCH(QString, text);
        QFETCH(QString, findings);
        QCOMPARE(graveFindings(checkSvg(text)), findings);
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
};

QUILLET_TEST_MAIN(TestQuilletSvgCheck)
#include "tst_QuilletSvgCheck.moc"
