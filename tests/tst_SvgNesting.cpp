#include "Allocations.h"
#include "TestCase.h"

#include <Quillet/SvgNesting.h>

#include <QtXml/QDomDocument>

#include <random>

using Quillet::isNestedDeeperThan;

namespace {

int depthBelow(const QDomNode& node)
{
    int deepest = 0;
    for (QDomElement child = node.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        deepest = qMax(deepest, 1 + depthBelow(child));
    return deepest;
}

QString nested(int depth)
{
    return QStringLiteral("<g>").repeated(depth) + QStringLiteral("</g>").repeated(depth);
}

QString document(const QString& content)
{
    return QStringLiteral("<svg>%1</svg>").arg(content);
}

} // namespace

class TestSvgNesting : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theDepthOfWellFormedDocumentsIsExact_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QString& text) { QTest::newRow(name) << text; };
        const auto doctype = [](const char* subset) {
            return QStringLiteral("<!DOCTYPE svg [%1]>").arg(QString::fromUtf8(subset));
        };

        row("a root alone", QStringLiteral("<svg/>"));
        row("groups", document(nested(5)));
        row("empty elements", document(QStringLiteral("<g/><g /><g\n/><g><path/></g>")));
        row("siblings", document(nested(2).repeated(50)));
        row("attributes with a bracket", document(QStringLiteral("<g a='>' b=\">\"><g c='/>'><g/></g></g>")));
        row("attributes that end in a slash", document(QStringLiteral("<g a='/'><g a=\"/\"/></g>")));
        row("a comment with tags", document(QStringLiteral("<!-- <g><g><g> -->") + nested(2)));
        row("a comment of brackets", QStringLiteral("<!--><g><g>-->") + document(nested(2)));
        row("character data with tags", document(QStringLiteral("<![CDATA[<g><g><g>]]>") + nested(2)));
        row("a processing instruction with tags", document(QStringLiteral("<?x <g><g><g> ?>") + nested(2)));
        row("an XML declaration", QStringLiteral("<?xml version='1.0'?>\n") + document(nested(2)));
        row("a public document type",
            QStringLiteral("<!DOCTYPE svg PUBLIC \"-//<g>\" 'http://<g>'>") + document(nested(2)));
        row("an empty subset", doctype("") + document(nested(2)));
        row("plain entities",
            doctype("<!ENTITY a 'x'><!ENTITY b \"y]>\">") + QStringLiteral("<svg a='&a;'>&a;<g/></svg>"));
        row("an attribute list", doctype("<!ATTLIST g a CDATA ']>'>") + document(nested(2)));
        row("a name with a hyphen in the subset",
            doctype("<!ATTLIST g-h a CDATA 'x'>") + document(nested(2)));
        row("a comment in the subset", doctype("<!-- ]> ' -->") + document(nested(2)));
        row("a processing instruction in the subset", doctype("<?x ]> ' ?>") + document(nested(2)));
        row("an entity with elements",
            doctype("<!ENTITY a '<g><g></g></g>'>") + document(QStringLiteral("<g>&a;</g>")));
        row("an entity that opens",
            doctype("<!ENTITY a '<g><g>'>") + QStringLiteral("<svg>&a;<g/></g></g></svg>"));
        row("an entity of character references",
            doctype("<!ENTITY a '&#60;g>&#x3c;/g>'>") + document(QStringLiteral("&a;")));
        row("an entity of escaped character references",
            doctype("<!ENTITY a '&#38;#60;g>'>") + document(QStringLiteral("&a;<g/>")));
        row("entities in entities",
            doctype("<!ENTITY a '<g>'><!ENTITY b '</g>'><!ENTITY c '&a;&a;&b;&b;'>")
                + document(QStringLiteral("&c;")));
        row("an entity of a parameter entity",
            doctype("<!ENTITY % p \"<!ENTITY a '<g></g>'>\"> %p;") + document(QStringLiteral("&a;")));
        row("an end tag with white space", QStringLiteral("<svg><g></g ></svg\n>"));
        row("elements of other alphabets", document(QStringLiteral("<\u00e9><\u4e2d/></\u00e9>")));
    }

    void theDepthOfWellFormedDocumentsIsExact()
    {
        QFETCH(QString, text);
        QDomDocument document;
        QVERIFY(document.setContent(text));
        const int depth = depthBelow(document);
        QVERIFY(depth > 0);
        QVERIFY(!isNestedDeeperThan(depth, text));
        QVERIFY(isNestedDeeperThan(depth - 1, text));
    }

    void deepDocumentsAreFoundInEveryDisguise_data()
    {
        QTest::addColumn<QString>("text");
        const QString deep = nested(200);
        const QString open = QStringLiteral("<g>").repeated(200);
        const auto doctype = [](const QString& subset) {
            return QStringLiteral("<!DOCTYPE svg [%1]>").arg(subset);
        };

        QTest::newRow("groups") << document(deep);
        QTest::newRow("groups that are never closed") << open;
        QTest::newRow("behind a comment that looks like an end")
            << document(QStringLiteral("<!-- -- > -->") + deep);
        QTest::newRow("behind character data") << document(QStringLiteral("<![CDATA[<!--]]>") + deep);
        QTest::newRow("behind a processing instruction") << document(QStringLiteral("<?x <!-- ?>") + deep);
        QTest::newRow("behind quotes in text") << document(QStringLiteral("' \" ") + deep);
        QTest::newRow("behind attributes with brackets") << document(
            QStringLiteral("<g a=\"<!--\" b='>'/>").replace(QLatin1Char('<'), QStringLiteral("&lt;")) + deep);
        QTest::newRow("tags with attributes") << document(QStringLiteral("<g a='/>' b=\"/\">").repeated(200));
        QTest::newRow("in an entity")
            << doctype(QStringLiteral("<!ENTITY a '%1'>").arg(deep)) + document(QStringLiteral("&a;"));
        QTest::newRow("by an entity that opens one") << doctype(QStringLiteral("<!ENTITY a '<g>'>"))
                                                            + QStringLiteral("<svg>")
                                                            + QStringLiteral("&a;").repeated(200);
        QTest::newRow("by an entity of character references")
            << doctype(QStringLiteral("<!ENTITY a '&#60;g>'>")) + QStringLiteral("<svg>")
                   + QStringLiteral("&a;").repeated(200);
        const QString multiplied =
            doctype(QStringLiteral("<!ENTITY a '<g>'><!ENTITY b '%1'><!ENTITY c '%2'>")
                        .arg(QStringLiteral("&a;").repeated(12), QStringLiteral("&b;").repeated(12)))
            + QStringLiteral("<svg>&c;");
        QTest::newRow("by entities that multiply") << multiplied;
        QTest::newRow("by entities that multiply, behind an XML declaration")
            << QStringLiteral("<?xml version='1.0'?>") + multiplied;
        QTest::newRow("by entities that multiply, behind a comment")
            << QStringLiteral("<!-- x -->\n") + multiplied;
        QTest::newRow("in an entity declared behind a literal that looks like the subset's end")
            << doctype(QStringLiteral("<!ENTITY x ']>'><!ENTITY a '%1'>").arg(deep))
                   + document(QStringLiteral("&a;"));
        QTest::newRow("in an entity declared behind a comment with a quote")
            << doctype(QStringLiteral("<!-- ' --><!ENTITY a '%1'><!-- ' -->").arg(deep))
                   + document(QStringLiteral("&a;"));
        QTest::newRow("by an entity behind an instruction that looks like the subset's end")
            << doctype(QStringLiteral("<?x ]><!-- ?><!ENTITY a '<g>'><!-- -->")) + QStringLiteral("<svg>")
                   + QStringLiteral("&a;").repeated(200);
        QTest::newRow("by an entity behind a comment that looks like the subset's end")
            << doctype(QStringLiteral("<!-- ]><?x --><!ENTITY a '<g>'><?y ?>")) + QStringLiteral("<svg>")
                   + QStringLiteral("&a;").repeated(200);
        QTest::newRow("in a content model")
            << doctype(QStringLiteral("<!ELEMENT g ") + QString(200, QLatin1Char('(')))
                   + QStringLiteral("<svg/>");
        QTest::newRow("in an entity of a parameter entity")
            << doctype(QStringLiteral("<!ENTITY % p \"<!ENTITY a '%1'>\"> %p;").arg(deep))
                   + document(QStringLiteral("&a;"));
    }

    void deepDocumentsAreFoundInEveryDisguise()
    {
        QFETCH(QString, text);
        QVERIFY(isNestedDeeperThan(100, text));
    }

    void ordinaryDocumentsAreJudgedWithoutReadingThem_data()
    {
        QTest::addColumn<QString>("prolog");
        QTest::newRow("none") << QString();
        QTest::newRow("an XML declaration") << QStringLiteral("<?xml version='1.0'?>\n");
        QTest::newRow("a comment") << QStringLiteral("<!-- <g> & -->");
        QTest::newRow("a document type")
            << QStringLiteral("<!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.1//EN' 'svg11.dtd'>");
        QTest::newRow("an XML declaration and a document type")
            << QStringLiteral("<?xml version='1.0'?><!DOCTYPE svg>");
        QTest::newRow("entities for namespaces")
            << QStringLiteral("<!DOCTYPE svg [<!ENTITY a 'urn:a'>\n<!ENTITY b \"-'>]\">]>");
        QTest::newRow("attributes") << QStringLiteral("<!DOCTYPE svg [<!ATTLIST g a-b CDATA 'x-y'>]>");
    }

    /// Qt's reader would say the same, and take several times as long as it takes to look.
    void ordinaryDocumentsAreJudgedWithoutReadingThem()
    {
        QFETCH(QString, prolog);
        const QString text = prolog + document(QStringLiteral("<g a='>' b=\"/>\"/>").repeated(10));
        const std::size_t before = allocations();
        const bool deep = isNestedDeeperThan(2, text);
        QCOMPARE(allocations(), before);
        QVERIFY(!deep);

        const QString unclear =
            QStringLiteral("<!DOCTYPE svg [<!ENTITY a '<g/>'>]>") + text.mid(prolog.size());
        QVERIFY(!isNestedDeeperThan(2, unclear));
        QVERIFY(allocations() > before); // so reading is something that this can see
    }

    void truncatedTextsAreNoHarm_data()
    {
        QTest::addColumn<QString>("text");
        const QString content = QStringLiteral("<svg a='1'><!-- x --><![CDATA[x]]><?x y?><g/></svg>");
        QTest::newRow("plain") << content;
        QTest::newRow("with an entity") << QStringLiteral("<!DOCTYPE svg [<!ENTITY a '<g>'>]>") + content;
        QTest::newRow("with a content model")
            << QStringLiteral("<!DOCTYPE svg [<!ELEMENT g (a|(b))>]>") + content;
        QTest::newRow("with a content model that is not closed")
            << QStringLiteral("<!DOCTYPE svg [<!ELEMENT g ((a|<!ELEMENT h (((b)))>]>") + content;
    }

    void truncatedTextsAreNoHarm()
    {
        QFETCH(QString, text);
        for (int length = 0; length <= text.size(); ++length) {
            QVERIFY(!isNestedDeeperThan(3, text.left(length)));
            QVERIFY(!isNestedDeeperThan(3, text.mid(length)));
        }
    }

    void tagsBehindADeclarationInTheContentAreNotRead()
    {
        const QString text = QStringLiteral("<svg><g/><!x>") + nested(200);
        QVERIFY(isNestedDeeperThan(1, text));
        QVERIFY(!isNestedDeeperThan(2, text));
    }

    void randomMarkupIsNeverJudgedShallowerThanItIs()
    {
        const QVector<QString> pieces = {
            QStringLiteral("<g>"),       QStringLiteral("<g>"),    QStringLiteral("</g>"),
            QStringLiteral("<g/>"),      QStringLiteral("<g a='"), QStringLiteral("<g a=\""),
            QStringLiteral("'"),         QStringLiteral("\""),     QStringLiteral(">"),
            QStringLiteral("/>"),        QStringLiteral("<!--"),   QStringLiteral("-->"),
            QStringLiteral("<![CDATA["), QStringLiteral("]]>"),    QStringLiteral("<?x "),
            QStringLiteral("?>"),        QStringLiteral("&a;"),    QStringLiteral("&b;"),
            QStringLiteral("x"),         QStringLiteral(" "),      QStringLiteral("<"),
            QStringLiteral("&#60;g>"),   QStringLiteral("]"),      QStringLiteral("%"),
        };
        const QVector<QString> prologs = {
            QString(),
            QStringLiteral("<!DOCTYPE g [<!ENTITY a '<g>'><!ENTITY b \"</g>\">]>"),
            QStringLiteral("<!DOCTYPE g [<!ENTITY a 'x'><!ENTITY b \"]>\">]>"),
            QStringLiteral("<!DOCTYPE g [<!ENTITY a '&b;&b;'><!ENTITY b \"<g></g>\">]>"),
        };
        std::mt19937 random(20261121);
        const auto pick = [&random](const QVector<QString>& list) {
            return list[std::uniform_int_distribution<int>(0, list.size() - 1)(random)];
        };
        for (int i = 0; i < 50000; ++i) {
            QString text = pick(prologs) + QStringLiteral("<g>");
            for (int n = std::uniform_int_distribution<int>(0, 12)(random); n > 0; --n)
                text += pick(pieces);
            if (i % 2 == 0)
                text += QStringLiteral("</g>");

            QDomDocument document;
            const bool wellFormed = document.setContent(text);
            const int depth = depthBelow(document); // of a malformed document, what was read of it
            QVERIFY2(depth == 0 || isNestedDeeperThan(depth - 1, text), qPrintable(text));
            QVERIFY2(!wellFormed || !isNestedDeeperThan(depth, text), qPrintable(text));
        }
    }
};

QUILLET_TEST_MAIN(TestSvgNesting)
#include "tst_SvgNesting.moc"
