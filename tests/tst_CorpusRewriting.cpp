#include "TestCase.h"

#include "corpus/Pictures.h"
#include "corpus/Rewriting.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

namespace {

const QRectF area(0, 0, 100, 100);

QDomDocument documentOf(const QString& content)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\">%1</svg>").arg(content));
    return document;
}

/// The greatest difference between what Quillet draws of one document and Qt's SVG renderer of another, with
/// what \a rules make of it taken away.
int differenceUnder(Rules rules, const QDomDocument& forQuillet, const QDomDocument& forQt)
{
    Quillet::PainterPathContainer shapes;
    if (!Quillet::parseSvg(rewrittenForQuillet(forQuillet, rules).toString(-1), shapes))
        return -1;
    adjustPens(shapes, rules);
    QStringList messages;
    const QImage theirs = pictureByQt(rewrittenForSvg(forQt, rules).toString(-1), area, messages);
    return messages.isEmpty() ? differenceOf(pictureByQuillet(shapes, area), theirs).worst : -1;
}

// Differences, of 255.
constexpr int rounding = 1;
constexpr int clearly = 30;

} // namespace

class TestCorpusRewriting : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRuleExplainsTheDifferenceThatItMakesAndNoOtherRuleDoes_data()
    {
        QTest::addColumn<unsigned>("rule");
        QTest::addColumn<QString>("content");
        const auto row = [](const char* name, Rule rule, const char* content) {
            QTest::newRow(name) << unsigned(rule) << QString::fromUtf8(content);
        };
        row("no fill rule", FillRuleRule, "<path d='M10 10H90V90H10z M30 30H70V70H30z'/>");
        row("inherited fill rule",
            FillRuleRule,
            "<g fill-rule='nonzero'><path d='M10 10H90V90H10z M30 30H70V70H30z'/></g>");
        row("opacities of groups",
            OpacityRule,
            "<g opacity='0.5'><path opacity='0.5' fill='#ff0000' d='M10 10H90V90H10z'/></g>");
        row("inherited opacity of the fill",
            OpacityRule,
            "<g fill-opacity='0.5'><path fill='#ff0000' d='M10 10H90V90H10z'/></g>");
        row("colour of the surroundings", ColourRule, "<path fill='currentColor' d='M10 10H90V90H10z'/>");
        row("colour as a function", ColourRule, "<path fill='rgb(255, 0, 0)' d='M10 10H90V90H10z'/>");
        row("inherited colour",
            ColourRule,
            "<g fill='#ff0000'><path fill='inherit' d='M10 10H90V90H10z'/></g>");
        row("limit of miters",
            MiterLimitRule,
            "<path fill='none' stroke='#000000' stroke-width='10' stroke-miterlimit='3'"
            " d='M10 30L80 50L10 70'/>");
        row("no width", HairlineRule, "<path fill='none' stroke='#000000' stroke-width='0' d='M10 50H90'/>");
    }

    void aRuleExplainsTheDifferenceThatItMakesAndNoOtherRuleDoes()
    {
        QFETCH(const unsigned, rule);
        QFETCH(const QString, content);
        const QDomDocument document = documentOf(content);
        const auto difference = [&](Rules rules) { return differenceUnder(rules, document, document); };
        Rules others = 0;
        for (const Rule each : all_rules)
            others |= each == rule ? 0U : unsigned(each);

        QVERIFY(difference(0) > clearly);
        QVERIFY(difference(others) > clearly);
        QVERIFY(difference(rule) <= rounding);
    }

    void noRuleExplainsAnotherShape()
    {
        const QDomDocument drawn =
            documentOf(QStringLiteral("<path fill-rule='evenodd' fill='#ff0000' d='M10 10H90V90H10z'/>"));
        const QDomDocument moved =
            documentOf(QStringLiteral("<path fill-rule='evenodd' fill='#ff0000' d='M11 10H91V90H11z'/>"));
        Rules all = 0;
        for (const Rule each : all_rules)
            all |= each;

        QCOMPARE(differenceUnder(all, drawn, drawn), 0);
        QVERIFY(differenceUnder(all, drawn, moved) > clearly);
    }

    void theDocumentItselfStaysAsItIs()
    {
        const QDomDocument document =
            documentOf(QStringLiteral("<g opacity='0.5'><path fill='currentColor' d='M0 0h1v1z'/></g>"));
        const QString before = document.toString(-1);

        rewrittenForQuillet(document, FillRuleRule | ColourRule);
        rewrittenForSvg(document, OpacityRule);

        QCOMPARE(document.toString(-1), before);
    }

    void theDifferenceOfPicturesIsTheGreatestOfAnyChannel()
    {
        QImage one(3, 2, QImage::Format_ARGB32_Premultiplied);
        one.fill(Qt::black);
        QImage other = one;
        QCOMPARE(differenceOf(one, other).worst, 0);
        QCOMPARE(differenceOf(one, other).pixels, 0);

        other.setPixel(0, 0, qRgba(0, 3, 0, 255));
        other.setPixel(2, 1, qRgba(1, 0, 7, 250));
        QCOMPARE(differenceOf(one, other).worst, 7);
        QCOMPARE(differenceOf(one, other).pixels, 2);
    }
};

QUILLET_TEST_MAIN(TestCorpusRewriting)
#include "tst_CorpusRewriting.moc"
