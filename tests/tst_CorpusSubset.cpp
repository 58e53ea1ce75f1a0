#include "TestCase.h"

#include "corpus/Subset.h"

namespace {

/// Judges a document of these attributes of the root and this content.
Judgement judgementOf(const QString& attributes, const QString& content)
{
    QDomDocument document;
    document.setContent(
        QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" %1>%2</svg>").arg(attributes, content));
    return judge(document);
}

} // namespace

class TestCorpusSubset : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void groupsAndPathsWithAttributesThatAreReadStayWithin_data()
    {
        QTest::addColumn<QString>("content");
        const auto row = [](const char* name, const char* content) {
            QTest::newRow(name) << QString::fromUtf8(content);
        };
        row("nothing", "");
        row("a path", "<path d='M0 0h1'/>");
        row("groups", "<g><g fill='red'><path d='M0 0h1'/></g></g>");
        row("all that is read",
            "<path d='' opacity='.5' fill-opacity='0' fill='#abc' fill-rule='evenodd' stroke-opacity='1' "
            "stroke='none' stroke-width='2px' stroke-linecap='round' stroke-linejoin='bevel' "
            "stroke-miterlimit='1'/>");
        row("what draws nothing",
            "<title>T</title><metadata><x:RDF xmlns:x='x'/></metadata><defs><path d='!' style='x'/></defs>"
            "<path id='a' class='b' clip-rule='evenodd' data-a='' x:fill='red' xmlns:x='x' d='M0 0'/>");
    }

    void groupsAndPathsWithAttributesThatAreReadStayWithin()
    {
        QFETCH(const QString, content);
        QCOMPARE(judgementOf({}, content).outside, QStringList());
    }

    void whatIsNotReadIsNamed_data()
    {
        QTest::addColumn<QString>("content");
        QTest::addColumn<QString>("cause");
        const auto row = [](const char* cause, const char* content) {
            QTest::newRow(content) << QString::fromUtf8(content) << QString::fromUtf8(cause);
        };
        row("element rect", "<g><rect width='1' height='1'/></g>");
        row("element PATH", "<PATH d='M0 0'/>");
        row("element svg:path", "<svg:path d='M0 0'/>");
        row("element style", "<defs><style>path{}</style></defs>");
        row("attribute transform", "<g transform='scale(2)'/>");
        row("attribute style", "<path style='fill:red' d='M0 0'/>");
        row("attribute viewBox", "<g viewBox='0 0 1 1'/>");
        row("value of fill", "<path fill='url(#a)' d='M0 0'/>");
        row("value of fill", "<path fill='Red' d='M0 0'/>");
        row("value of stroke-width", "<path stroke-width='2pt' d='M0 0'/>");
        row("value of opacity", "<path opacity='50%' d='M0 0'/>");
        row("value of opacity", "<path opacity='2' d='M0 0'/>");
        row("value of fill-rule", "<path fill-rule='EvenOdd' d='M0 0'/>");
        row("value of stroke-linecap", "<path stroke-linecap='Butt' d='M0 0'/>");
        row("value of stroke-linejoin", "<path stroke-linejoin='arcs' d='M0 0'/>");
        row("value of stroke-miterlimit", "<path stroke-miterlimit='.5' d='M0 0'/>");
        row("error in path data", "<path d='M0 0 5'/>");
        row("flags of arcs together", "<path d='M0 0a5 5 0 1110 0'/>");
        row("arc with a radius of 0", "<path d='M0 0a0 5 0 1 1 10 0'/>");
    }

    void whatIsNotReadIsNamed()
    {
        QFETCH(const QString, content);
        QFETCH(const QString, cause);
        QCOMPARE(judgementOf({}, content).outside, QStringList(cause));
    }

    void whatStandsAroundTheRootCounts_data()
    {
        QTest::addColumn<QString>("prolog");
        QTest::addColumn<QStringList>("outside");
        const auto row = [](const char* prolog, const QStringList& outside) {
            QTest::newRow(prolog) << QString::fromUtf8(prolog) << outside;
        };
        row("<!DOCTYPE svg>", {});
        row("<!DOCTYPE svg [<!ENTITY a 'x'>]>", {}); // what it stands for is judged
        row("<?xml version='1.0' encoding='utf-8'?>", {});
        row("<?xml version='1.0' encoding='ISO-8859-1'?>", {QStringLiteral("other encoding than UTF-8")});
        row("<?xml-stylesheet href='a.css'?>", {QStringLiteral("processing instruction")});
    }

    void whatStandsAroundTheRootCounts()
    {
        QFETCH(const QString, prolog);
        QFETCH(const QStringList, outside);
        QDomDocument document;
        QVERIFY(document.setContent(prolog + QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\"/>")));
        QCOMPARE(judge(document).outside, outside);
    }

    void whatEntitiesStandForIsJudged()
    {
        QDomDocument document;
        QVERIFY(document.setContent(QStringLiteral(
            "<!DOCTYPE svg [<!ENTITY ns \"http://www.w3.org/2000/svg\"><!ENTITY c \"url(#a)\">]>"
            "<svg xmlns=\"&ns;\" fill=\"&c;\"/>")));
        QCOMPARE(judge(document).outside, QStringList(QStringLiteral("value of fill")));
    }

    void aRootOfNoNameSpaceIsNamed()
    {
        QDomDocument document;
        QVERIFY(document.setContent(QStringLiteral("<svg/>")));
        QCOMPARE(judge(document).outside, QStringList(QStringLiteral("no name space")));
    }

    void whatMayMakeADifferenceIsNoted_data()
    {
        QTest::addColumn<QString>("content");
        QTest::addColumn<unsigned>("rules");
        const auto row = [](const char* content, Rules rules) {
            QTest::newRow(content) << QString::fromUtf8(content) << rules;
        };
        row("<path fill-rule='nonzero' d='M0 0'/>", 0);
        row("<g fill-rule='nonzero'><path d='M0 0'/></g>", FillRuleRule);
        row("<g fill-opacity='1'/>", OpacityRule);
        row("<g fill='currentColor'/>", ColourRule);
        row("<g fill='rgb(1, 2,3)'/>", ColourRule);
        row("<g fill='transparent'/>", ColourRule);
        row("<g fill='inherit'/>", ColourRule);
        row("<g stroke='none'/>", 0);
        row("<g stroke='red'/>", MiterLimitRule);
        row("<g stroke-width='0'/>", HairlineRule);
    }

    void whatMayMakeADifferenceIsNoted()
    {
        QFETCH(const QString, content);
        QFETCH(const unsigned, rules);
        const Judgement judgement = judgementOf({}, content);
        QCOMPARE(judgement.rules, rules);
        QCOMPARE(judgement.outside, QStringList());
    }

    void theAreaIsTheViewBoxOrTheSize_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QRectF>("area");
        QTest::addColumn<bool>("isWithin");
        const auto row = [](const char* attributes, const QRectF& area, bool isWithin) {
            QTest::newRow(attributes) << QString::fromUtf8(attributes) << area << isWithin;
        };
        row("viewBox='-1 2, 3,4.5' width='9' height='9'", QRectF(-1, 2, 3, 4.5), true);
        row("width='16px' height='8'", QRectF(0, 0, 16, 8), true);
        row("width='100%' height='8'", QRectF(), true);
        row("viewBox='0 0 0 8'", QRectF(0, 0, 0, 8), false);
        row("viewBox='0 0 8'", QRectF(), false);
    }

    void theAreaIsTheViewBoxOrTheSize()
    {
        QFETCH(const QString, attributes);
        QFETCH(const QRectF, area);
        QFETCH(const bool, isWithin);
        const Judgement judgement = judgementOf(attributes, {});
        QCOMPARE(judgement.outside.isEmpty(), isWithin);
        if (!area.isEmpty())
            QCOMPARE(judgement.area, area);
        else
            QVERIFY(judgement.area.isEmpty());
    }

    void pathDataIsJudgedByItsGrammar_data()
    {
        QTest::addColumn<QString>("data");
        QTest::addColumn<QStringList>("outside");
        const auto row = [](const char* data, const QStringList& outside) {
            QTest::newRow(data) << QString::fromUtf8(data) << outside;
        };
        const QString error = QStringLiteral("error in path data");
        const QString together = QStringLiteral("flags of arcs together");
        row("", {});
        row(" m1,2-3.5.5e1+6-7 ", {});
        row("M0 0Zm1 1zL2 2H3V4C1 2 3 4 5 6S1 2 3 4Q1 2 3 4T1 2", {});
        row("M0 0z z", {});
        row("M0 0A1 2 3 0,1-4 5 6 7 8 1 0 9 9", {});
        row("M0 0a1 2 3 01-4 5", {together});
        row("M0 0a1 2 3 0 1.5.5", {together});
        row("M0 0a1 2 3 01-4 5X", {error, together});
        row("L0 0", {error});
        row("M0", {error});
        row("M,0 0", {error});
        row("M0,,0", {error});
        row("M0 0,", {error});
        row("M0 0L", {error});
        row("M0 0X", {error});
        row("M0 0z1", {error});
        row("M0 1e", {error});
        row("M0 .", {error});
        row("M0 0a-1 2 3 0 1 4 5", {error});
        row("M0 0a1 +2 3 0 1 4 5", {error});
        row("M0 0a1 2 3 0 2 4 5", {error});
        row("M0 0a1 2 3-0 1 4 5", {error});
    }

    void pathDataIsJudgedByItsGrammar()
    {
        QFETCH(const QString, data);
        QFETCH(const QStringList, outside);
        QCOMPARE(judgementOf({}, QStringLiteral("<path d='%1'/>").arg(data)).outside, outside);
    }
};

QUILLET_GUILESS_TEST_MAIN(TestCorpusSubset)
#include "tst_CorpusSubset.moc"
