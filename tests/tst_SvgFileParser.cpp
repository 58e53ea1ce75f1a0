#include "TestCase.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

#include <functional>

using Quillet::PainterPath;
using Quillet::PainterPathContainer;

namespace {

const QString line_data = QStringLiteral("M0 0L1 1");

QString document(const QString& content)
{
    return QStringLiteral("<svg>%1</svg>").arg(content);
}

// A path with the given attributes.
QString path(const QString& attributes = QString())
{
    return QStringLiteral("<path d='%1' %2/>").arg(line_data, attributes);
}

QString group(const QString& attributes, const QString& content)
{
    return QStringLiteral("<g %1>%2</g>").arg(attributes, content);
}

QString nestedGroups(int depth, const QString& content)
{
    return QStringLiteral("<g>").repeated(depth) + content + QStringLiteral("</g>").repeated(depth);
}

// The result of reading a text, and the shapes.
struct Reading
{
    explicit Reading(const QString& text) : accepted(Quillet::parseSvg(text, shapes)) {}

    PainterPathContainer shapes;
    bool accepted;

    int count() const { return int(shapes.getPaths().size()); }
    const PainterPath& shape(int index = 0) const { return *shapes.getPaths().at(std::size_t(index)); }
};

QString colorName(const QColor& color)
{
    return color.isValid() ? color.name(QColor::HexArgb) : QStringLiteral("none");
}

bool runsInASmallStack(const std::function<void()>& function)
{
    QScopedPointer<QThread> thread(QThread::create(function));
    thread->setStackSize(1024 * 1024);
    thread->start();
    return thread->wait();
}

} // namespace

class TestSvgFileParser : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Documents

    void documentsAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("shapes");

        QTest::newRow("a root without children") << QStringLiteral("<svg/>") << true << 0;
        QTest::newRow("one path") << document(path()) << true << 1;
        QTest::newRow("paths in nested groups")
            << document(path() + nestedGroups(3, path()) + path()) << true << 3;
        QTest::newRow("upper-case groups and paths")
            << document(QStringLiteral("<G><PATH d='M0 0L1 1'/></G>")) << true << 1;
        QTest::newRow("an upper-case root") << QStringLiteral("<SVG><path/></SVG>") << false << 0;
        QTest::newRow("a root with a prefix")
            << QStringLiteral("<s:svg xmlns:s='x'><path/></s:svg>") << false << 0;
        QTest::newRow("a path with a prefix")
            << document(QStringLiteral("<s:path d='M0 0L1 1'/>")) << true << 0;
        QTest::newRow("another root") << QStringLiteral("<html/>") << false << 0;
        QTest::newRow("an svg inside another root")
            << QStringLiteral("<html><svg><path/></svg></html>") << false << 0;
        QTest::newRow("a path in an element that is no group") << document(
            QStringLiteral("<defs><path d='M0 0L1 1'/></defs><switch>%1</switch><a>%1</a><svg>%1</svg>")
                .arg(path())) << true << 0;
        QTest::newRow("a path in a path")
            << document(QStringLiteral("<path d='M0 0L1 1'><path d='M0 0L1 1'/></path>")) << true << 1;
        QTest::newRow("a path without data") << document(QStringLiteral("<path/>")) << true << 1;
        QTest::newRow("text, comments and instructions between elements") << document(
            QStringLiteral("text<!-- c -->") + path() + QStringLiteral("<?x y?><![CDATA[<path/>]]>") + path())
                                                                          << true << 2;
        QTest::newRow("bad data in the third path")
            << document(path() + group(QString(), path()) + QStringLiteral("<path d='X1'/>") + path())
            << false << 2;
        QTest::newRow("bad data inside a group ends everything")
            << document(group(QString(), path() + QStringLiteral("<path d='X1'/>")) + path()) << false << 1;
        QTest::newRow("a bad attribute in the second path")
            << document(path() + path(QStringLiteral("fill-rule='inherit'")) + path()) << false << 1;
        QTest::newRow("an element that is never closed") << QStringLiteral("<svg><path/>") << false << 0;
        QTest::newRow("the empty text") << QString() << false << 0;
        QTest::newRow("no XML") << QStringLiteral("M0 0L1 1") << false << 0;
        QTest::newRow("a document type and a declaration")
            << QStringLiteral("<?xml version='1.0' encoding='latin1'?><!DOCTYPE svg PUBLIC '-//W3C//DTD SVG "
                              "1.1//EN' 'svg11.dtd'>")
                   + document(path())
            << true << 1;
        QTest::newRow("a content model in the document type")
            << QStringLiteral("<!DOCTYPE svg [<!ELEMENT svg ((g|path)*)><!ATTLIST g a (b|c) 'b'>]>")
                   + document(path())
            << true << 1;
        QTest::newRow("elements from an entity")
            << QStringLiteral("<!DOCTYPE svg [<!ENTITY p \"%1\">]>").arg(path())
                   + document(QStringLiteral("&p;&p;"))
            << true << 2;
    }

    void documentsAreRead()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        QFETCH(int, shapes);
        const Reading reading(text);
        QCOMPARE(reading.accepted, accepted);
        QCOMPARE(reading.count(), shapes);
    }

    void shapesAreAppendedToWhatTheContainerHolds()
    {
        PainterPathContainer container;
        QVERIFY(Quillet::parseSvg(document(path(QStringLiteral("fill='red'"))), container));
        QVERIFY(Quillet::parseSvg(document(path(QStringLiteral("fill='blue'"))), container));
        QCOMPARE(container.getPaths().size(), std::size_t(2));
        QCOMPARE(container.getPaths()[1]->getBrush().color(), QColor(Qt::blue));
        QVERIFY(!Quillet::parseSvg(QStringLiteral("<svg>"), container));
        QCOMPARE(container.getPaths().size(), std::size_t(2));
    }

    void aShapeHasThePathsGeometryAndTheIdentity()
    {
        const Reading reading(document(QStringLiteral("<path d='M1 2L3 4'/>")));
        QPainterPath expected(QPointF(1, 2));
        expected.lineTo(3, 4);
        QCOMPARE(reading.shape().getPath(), expected);
        QVERIFY(reading.shape().getTransform().matrix() == lumo::AffineTransform<double>::mg_identity);
        QVERIFY(reading.shape().getTransform().inverse().has_value());
    }

    void aDocumentThatSaysNothingIsFilledBlackWithoutStroke()
    {
        const Reading reading(document(path()));
        const PainterPath& shape = reading.shape();
        QCOMPARE(shape.getBrush(), QBrush(Qt::black, Qt::SolidPattern));
        QVERIFY(!shape.getPen().color().isValid());
        QCOMPARE(shape.getPen().style(), Qt::SolidLine);
        QCOMPARE(shape.getPen().widthF(), 1.0);
        QCOMPARE(shape.getPen().capStyle(), Qt::FlatCap);
        QCOMPARE(shape.getPen().joinStyle(), Qt::MiterJoin);
        QCOMPARE(shape.getPen().miterLimit(), 4.0);
        QCOMPARE(shape.getPath().fillRule(), Qt::OddEvenFill);
    }

    void dataAndPicturesOutsideTheSubsetAreLeftOut()
    {
        const Reading reading(
            QStringLiteral("<svg viewBox='0 0 9 9'><g transform='scale(9)' style='fill:red'>%1</g>"
                           "<style>path{fill:red}</style><rect width='9' height='9'/></svg>")
                .arg(path(QStringLiteral("transform='scale(9)' style='fill:red' class='a'"))));
        QVERIFY(reading.accepted);
        QCOMPARE(reading.count(), 1);
        QCOMPARE(reading.shape().getBrush().color(), QColor(Qt::black));
        QCOMPARE(reading.shape().getPath().boundingRect(), QRectF(0, 0, 1, 1));
    }

    void theLibrarysOwnIconsAreRead()
    {
        for (const char* icon : {"Critical", "Information", "Question", "Warning"}) {
            PainterPathContainer container;
            QVERIFY(
                Quillet::parseSvgFile(QStringLiteral(":/Icons/%1.svg").arg(QLatin1String(icon)), container));
            QCOMPARE(container.getPaths().size(), std::size_t(1));
            const PainterPath& shape = *container.getPaths().front();
            QVERIFY(shape.getBrush().color().isValid());
            QCOMPARE(shape.getPen().widthF(), 1.5);
            QVERIFY(qAbs(shape.getPath().boundingRect().height() - 44) < 0.01);
        }
    }

    // Inheritance

    void valuesOfGroupsHoldForWhatIsInThem()
    {
        const Reading reading(QStringLiteral("<svg fill='blue'>")
                              + group(QStringLiteral("fill='red'"), path() + group(QString(), path()))
                              + group(QString(), path()) + path() + QStringLiteral("</svg>"));
        QCOMPARE(reading.count(), 4);
        QCOMPARE(reading.shape(0).getBrush().color(), QColor(Qt::red));
        QCOMPARE(reading.shape(1).getBrush().color(), QColor(Qt::red));
        QCOMPARE(reading.shape(2).getBrush().color(), QColor(Qt::blue));
        QCOMPARE(reading.shape(3).getBrush().color(), QColor(Qt::blue));
    }

    void valuesOfAPathDoNotReachItsSiblings()
    {
        const Reading reading(
            document(path(QStringLiteral("fill='red' stroke='blue' stroke-width='3'")) + path()));
        QCOMPARE(reading.shape(1).getBrush().color(), QColor(Qt::black));
        QVERIFY(!reading.shape(1).getPen().color().isValid());
        QCOMPARE(reading.shape(1).getPen().widthF(), 1.0);
    }

    void theFillRuleOfAGroupHasNoEffect()
    {
        const Reading reading(document(group(QStringLiteral("fill-rule='nonzero'"),
                                             path() + path(QStringLiteral("fill-rule='nonzero'")))));
        QCOMPARE(reading.shape(0).getPath().fillRule(), Qt::OddEvenFill);
        QCOMPARE(reading.shape(1).getPath().fillRule(), Qt::WindingFill);
    }

    void aGroupWithARejectedOpacityIsWalkedAsTransparent()
    {
        const Reading reading(document(group(QStringLiteral("opacity='x' fill='red' stroke-width='5'"),
                                             path() + path(QStringLiteral("fill='blue'"))
                                                 + path(QStringLiteral("fill='blue' opacity='1'")))));
        QVERIFY(reading.accepted);
        QCOMPARE(colorName(reading.shape(0).getBrush().color()), QStringLiteral("#ff000000"));
        QCOMPARE(reading.shape(0).getPen().widthF(), 1.0);
        QCOMPARE(colorName(reading.shape(1).getBrush().color()), QStringLiteral("#000000ff"));
        QCOMPARE(colorName(reading.shape(2).getBrush().color()), QStringLiteral("#ff0000ff"));
    }

    void aRejectedValueOfAGroupOrTheRootKeepsWhatCameBeforeIt()
    {
        const Reading reading(
            QStringLiteral("<svg fill='red' fill-rule='x' stroke='blue'>")
            + group(QStringLiteral("stroke='green' stroke-linecap='x' stroke-linejoin='round'"), path())
            + QStringLiteral("</svg>"));
        QVERIFY(reading.accepted);
        QCOMPARE(reading.shape().getBrush().color(), QColor(Qt::red));
        QCOMPARE(colorName(reading.shape().getPen().color()), QStringLiteral("#ff008000"));
        QCOMPARE(reading.shape().getPen().joinStyle(), Qt::MiterJoin);
    }

    // Attributes of a path

    void colorsAreRead_data()
    {
        QTest::addColumn<QString>("outer");
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QString>("fill");
        QTest::addColumn<QString>("stroke");

        const auto row = [](const char* name,
                            const char* outer,
                            const char* attributes,
                            const char* fill,
                            const char* stroke) {
            QTest::newRow(name) << QString::fromLatin1(outer) << QString::fromLatin1(attributes)
                                << QString::fromLatin1(fill) << QString::fromLatin1(stroke);
        };
        row("nothing", "", "", "#ff000000", "none");
        row("empty values count as none",
            "",
            "opacity='' fill='' fill-opacity='' stroke='' stroke-opacity=''",
            "#ff000000",
            "none");
        row("a name and a number", "", "fill='red' stroke='#0000ff'", "#ffff0000", "#ff0000ff");
        row("opacities of their own",
            "",
            "fill='red' fill-opacity='0.5' stroke='blue' stroke-opacity='.25'",
            "#80ff0000",
            "#400000ff");
        row("fill-opacity under a group's opacity",
            "opacity='0.5'",
            "fill='red' fill-opacity='0.5'",
            "#40ff0000",
            "none");
        row("stroke-opacity under a group's opacity",
            "opacity='0.5'",
            "stroke='red' stroke-opacity='0.5'",
            "#ff000000",
            "#40ff0000");
        row("an opacity replaces that of the group",
            "opacity='0.5'",
            "opacity='1' fill='red'",
            "#ffff0000",
            "none");
        row("opacities of groups are not multiplied",
            "opacity='0.5'",
            "opacity='0.5' fill='red'",
            "#80ff0000",
            "none");
        row("an opacity alone leaves the inherited colours",
            "fill='red' stroke='blue'",
            "opacity='0.5'",
            "#ffff0000",
            "#ff0000ff");
        row("a fill-opacity alone leaves the inherited colour",
            "fill='red'",
            "fill-opacity='0.5'",
            "#ffff0000",
            "none");
        row("a group's fill-opacity does not reach its paths",
            "fill-opacity='0.5'",
            "fill='red'",
            "#ffff0000",
            "none");
        row("the alpha of a colour is replaced",
            "",
            "fill='#00ff0000' stroke='transparent'",
            "#ffff0000",
            "#ff000000");
        row("an opacity alone leaves the inherited alpha, too",
            "fill='red' fill-opacity='0.5'",
            "opacity='1'",
            "#80ff0000",
            "none");
        row("the order in the document does not matter",
            "",
            "fill='red' fill-opacity='0.5' opacity='0.5'",
            "#40ff0000",
            "none");
        row("names of attributes are case-sensitive", "", "FILL='red' Stroke='red'", "#ff000000", "none");
    }

    void colorsAreRead()
    {
        QFETCH(QString, outer);
        QFETCH(QString, attributes);
        QFETCH(QString, fill);
        QFETCH(QString, stroke);
        const Reading reading(document(group(outer, path(attributes))));
        QVERIFY(reading.accepted);
        QCOMPARE(colorName(reading.shape().getBrush().color()), fill);
        QCOMPARE(colorName(reading.shape().getPen().color()), stroke);
        QCOMPARE(reading.shape().getBrush().style(), Qt::SolidPattern);
    }

    void colorsThatQtDoesNotKnowSwitchOff()
    {
        const Reading reading(document(path(QStringLiteral("fill='none' stroke='rgb(1,2,3)'"))));
        QVERIFY(reading.accepted);
        QVERIFY(!reading.shape().getBrush().color().isValid());
        QVERIFY(!reading.shape().getPen().color().isValid());
        QCOMPARE(reading.shape().getBrush().style(), Qt::SolidPattern);
    }

    void aFillOfNoneLeavesTheStroke()
    {
        const Reading reading(document(path(QStringLiteral("fill='none' stroke='red'"))));
        QVERIFY(!reading.shape().getBrush().color().isValid());
        QCOMPARE(reading.shape().getPen().color(), QColor(Qt::red));
    }

    void anOpacityOutOfRangeIsLeftToQt()
    {
        expectMessage(QStringLiteral("\"QColor::setAlphaF\": invalid value 1.5"));
        expectMessage(QStringLiteral("\"QColor::setAlphaF\": invalid value -1"));
        const Reading reading(
            document(path(QStringLiteral("fill='red' fill-opacity='1.5' stroke='red' stroke-opacity='-1'"))));
        QVERIFY(reading.accepted);
        QCOMPARE(colorName(reading.shape().getBrush().color()), QStringLiteral("#ffff0000"));
        QCOMPARE(colorName(reading.shape().getPen().color()), QStringLiteral("#00ff0000"));
    }

    void valuesAreAcceptedOrRejected_data()
    {
        QTest::addColumn<QString>("attribute");
        QTest::addColumn<bool>("accepted");
        const auto row = [](const char* attribute, bool accepted) {
            QTest::newRow(attribute) << QString::fromLatin1(attribute) << accepted;
        };
        for (const char* number :
             {"opacity", "fill-opacity", "stroke-opacity", "stroke-width", "stroke-miterlimit"}) {
            const QByteArray name(number);
            row(name + "='0.5'", true);
            row(name + "=' 0.5 '", true);
            row(name + "='5e-1'", true);
            row(name + "=''", true);
            row(name + "='50%'", false);
            row(name + "='0,5'", false);
            row(name + "='inherit'", false);
            row(name + "='1e999'", false);
        }
        row("fill-rule='nonzero'", true);
        row("fill-rule='evenodd'", true);
        row("fill-rule='EvenOdd'", true);
        row("fill-rule=''", true);
        row("fill-rule=' nonzero'", false);
        row("fill-rule='inherit'", false);
        row("stroke-width='2px'", true);
        row("stroke-width='2PX'", false);
        row("stroke-width='px'", false);
        row("stroke-width='2pt'", false);
        row("stroke-linecap='ROUND'", true);
        row("stroke-linecap=''", true);
        row("stroke-linecap='inherit'", false);
        row("stroke-linejoin='Bevel'", true);
        row("stroke-linejoin=''", true);
        row("stroke-linejoin='inherit'", false);
        row("stroke-miterlimit='2px'", false);
    }

    void valuesAreAcceptedOrRejected()
    {
        QFETCH(QString, attribute);
        QFETCH(bool, accepted);
        const Reading reading(document(path(attribute)));
        QCOMPARE(reading.accepted, accepted);
        QCOMPARE(reading.count(), accepted ? 1 : 0);
    }

    void fillRulesAreRead()
    {
        const Reading reading(document(path(QStringLiteral("fill-rule='NonZero'"))
                                       + path(QStringLiteral("fill-rule='EvenOdd'"))));
        QCOMPARE(reading.shape(0).getPath().fillRule(), Qt::WindingFill);
        QCOMPARE(reading.shape(1).getPath().fillRule(), Qt::OddEvenFill);
    }

    void widthsAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("width");
        QTest::newRow("a number") << QStringLiteral("2.5") << 2.5;
        QTest::newRow("pixels") << QStringLiteral("2px") << 2.0;
        QTest::newRow("px anywhere") << QStringLiteral("1px5") << 15.0;
        QTest::newRow("px more than once") << QStringLiteral("px1pxpx") << 1.0;
        QTest::newRow("nothing") << QString() << 1.0;
    }

    void widthsAreRead()
    {
        QFETCH(QString, text);
        QFETCH(double, width);
        const Reading reading(document(path(QStringLiteral("stroke-width='%1'").arg(text))));
        QVERIFY(reading.accepted);
        QCOMPARE(reading.shape().getPen().widthF(), width);
    }

    void aWidthOutOfRangeIsLeftToQt()
    {
        expectMessage(QStringLiteral("QPen::setWidthF: Setting a pen width that is out of range"));
        const Reading reading(document(path(QStringLiteral("stroke-width='-2'"))));
        QVERIFY(reading.accepted);
        QCOMPARE(reading.shape().getPen().widthF(), 1.0);
    }

    void capsJoinsAndMiterLimitsAreRead_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<Qt::PenCapStyle>("cap");
        QTest::addColumn<Qt::PenJoinStyle>("join");
        QTest::addColumn<double>("limit");
        QTest::newRow("butt, miter") << QStringLiteral(
            "stroke-linecap='butt' stroke-linejoin='miter' stroke-miterlimit='2'")
                                     << Qt::FlatCap << Qt::MiterJoin << 2.0;
        QTest::newRow("round, round") << QStringLiteral("stroke-linecap='ROUND' stroke-linejoin='round'")
                                      << Qt::RoundCap << Qt::RoundJoin << 4.0;
        QTest::newRow("square, bevel") << QStringLiteral("stroke-linecap='square' stroke-linejoin='BEVEL'")
                                       << Qt::SquareCap << Qt::BevelJoin << 4.0;
    }

    void capsJoinsAndMiterLimitsAreRead()
    {
        QFETCH(QString, attributes);
        QFETCH(Qt::PenCapStyle, cap);
        QFETCH(Qt::PenJoinStyle, join);
        QFETCH(double, limit);
        // Once on the path itself, and once inherited.
        const Reading reading(document(path(attributes) + group(attributes, path())));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(reading.shape(i).getPen().capStyle(), cap);
            QCOMPARE(reading.shape(i).getPen().joinStyle(), join);
            QCOMPARE(reading.shape(i).getPen().miterLimit(), limit);
        }
    }

    void attributesAreReadInTheirOwnOrderUntilOneIsRejected()
    {
        // Of a group, so that what was applied can be seen: each attribute stands before the rejected one in
        // the reading order or behind it, whatever the order in the document.
        const Reading reading(document(group(QStringLiteral("stroke-miterlimit='9' stroke-linejoin='round' "
                                                            "stroke-linecap='round' stroke-width='x' "
                                                            "stroke='red' fill='blue' opacity='0.5'"),
                                             path())));
        QVERIFY(reading.accepted);
        const PainterPath& shape = reading.shape();
        QCOMPARE(colorName(shape.getBrush().color()), QStringLiteral("#800000ff"));
        QCOMPARE(colorName(shape.getPen().color()), QStringLiteral("#80ff0000"));
        QCOMPARE(shape.getPen().widthF(), 1.0);
        QCOMPARE(shape.getPen().capStyle(), Qt::FlatCap);
        QCOMPARE(shape.getPen().joinStyle(), Qt::MiterJoin);
        QCOMPARE(shape.getPen().miterLimit(), 4.0);
    }

    void eachRejectedAttributeLeavesTheNextOnesUnread_data()
    {
        QTest::addColumn<QString>("attributes");
        // The second attribute of each row comes behind the first in the reading order.
        QTest::newRow("opacity, fill") << QStringLiteral("opacity='x' fill='red'");
        QTest::newRow("fill-opacity, fill") << QStringLiteral("fill-opacity='x' fill='red'");
        QTest::newRow("fill-rule, stroke") << QStringLiteral("fill-rule='x' stroke='red'");
        QTest::newRow("stroke-opacity, stroke") << QStringLiteral("stroke-opacity='x' stroke='red'");
        QTest::newRow("stroke-width, linecap") << QStringLiteral("stroke-width='x' stroke-linecap='round'");
        QTest::newRow("linecap, linejoin") << QStringLiteral("stroke-linecap='x' stroke-linejoin='round'");
        QTest::newRow("linejoin, miterlimit") << QStringLiteral("stroke-linejoin='x' stroke-miterlimit='9'");
    }

    void eachRejectedAttributeLeavesTheNextOnesUnread()
    {
        QFETCH(QString, attributes);
        const Reading reading(document(group(attributes, path())));
        QVERIFY(reading.accepted);
        const PainterPath& shape = reading.shape();
        QCOMPARE(colorName(shape.getBrush().color()), QStringLiteral("#ff000000"));
        QVERIFY(!shape.getPen().color().isValid());
        QCOMPARE(shape.getPen().capStyle(), Qt::FlatCap);
        QCOMPARE(shape.getPen().joinStyle(), Qt::MiterJoin);
        QCOMPARE(shape.getPen().miterLimit(), 4.0);
    }

    void aRejectedFillOpacityLeavesTheLaterAttributesUnread()
    {
        const Reading reading(document(
            group(QStringLiteral("fill-opacity='x' fill='red' stroke='red' stroke-width='7'"), path())));
        QCOMPARE(reading.shape().getBrush().color(), QColor(Qt::black));
        QVERIFY(!reading.shape().getPen().color().isValid());
        QCOMPARE(reading.shape().getPen().widthF(), 1.0);
        QVERIFY(!Reading(document(path(QStringLiteral("fill-opacity='x' fill='red'")))).accepted);
    }

    // Files

    void filesAreRead_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("shapes");
        const QByteArray text = document(path()).toUtf8();
        QTest::newRow("a document") << text << true << 1;
        QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbf") + text << true << 1;
        QTest::newRow("a null byte at the end") << text + QByteArray(1, '\0') + "rubbish" << true << 1;
        QTest::newRow("a null byte in the middle") << QByteArray(text).insert(10, '\0') << false << 0;
        QTest::newRow("nothing") << QByteArray() << false << 0;
        QTest::newRow("UTF-16") << QByteArray("<\0s\0v\0g\0/\0>\0", 12) << false << 0;
        QTest::newRow("another encoding than declared")
            << QByteArray("<?xml version='1.0' encoding='UTF-16'?>") + text << true << 1;
        QTest::newRow("bytes that are no UTF-8, in a comment")
            << QByteArray("<!-- \xff\xfe -->") + text << true << 1;
    }

    void filesAreRead()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, accepted);
        QFETCH(int, shapes);
        const QTemporaryDir directory;
        const QString fileName = directory.filePath(QStringLiteral("picture.svg"));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();

        PainterPathContainer container;
        QCOMPARE(Quillet::parseSvgFile(fileName, container), accepted);
        QCOMPARE(int(container.getPaths().size()), shapes);
    }

    void filesThatCannotBeReadAreRefused()
    {
        const QTemporaryDir directory;
        PainterPathContainer container;
        QVERIFY(!Quillet::parseSvgFile(directory.filePath(QStringLiteral("missing.svg")), container));
        QVERIFY(!Quillet::parseSvgFile(directory.path(), container));
        QVERIFY(container.getPaths().empty());
    }

    // Documents made to do harm

    void nestingUpToTheLimitIsReadInASmallStack()
    {
        // The root is the first level, the path the last.
        const QString text = document(nestedGroups(1998, path()));
        bool accepted = false;
        int shapes = 0;
        QVERIFY(runsInASmallStack([&] {
            const Reading reading(text);
            accepted = reading.accepted;
            shapes = reading.count();
        }));
        QVERIFY(accepted);
        QCOMPARE(shapes, 1);
    }

    void nestingBeyondTheLimitIsRefused_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("one level") << document(path() + nestedGroups(1999, path()));
        QTest::newRow("a million levels") << document(path() + nestedGroups(1000 * 1000, path()));
        QTest::newRow("a million levels, never closed")
            << document(path()).chopped(6) + QStringLiteral("<g>").repeated(1000 * 1000);
        const QString model = QStringLiteral("<!ELEMENT g %1a%2>")
                                  .arg(QString(100000, QLatin1Char('(')), QString(100000, QLatin1Char(')')));
        const auto doctype = [](const QString& subset) {
            return QStringLiteral("<!DOCTYPE svg [") + subset + QStringLiteral("]>");
        };
        QTest::newRow("a content model") << doctype(model) + document(path());
        QTest::newRow("a content model, never closed") << doctype(model.left(50000)) + document(path());
        QTest::newRow("a content model behind a comment")
            << doctype(QStringLiteral("<!-- ' -->") + model) + document(path());
        QTest::newRow("a content model in a parameter entity")
            << doctype(QStringLiteral("<!ENTITY % p \"") + model + QStringLiteral("\"> %p;"))
                   + document(path());
        QTest::newRow("levels from entities")
            << QStringLiteral("<!DOCTYPE svg [<!ENTITY a '%1'>]>").arg(QStringLiteral("<g>").repeated(1000))
                   + document(path()).chopped(6) + QStringLiteral("&a;").repeated(100);
    }

    void nestingBeyondTheLimitIsRefused()
    {
        QFETCH(QString, text);
        bool accepted = true;
        int shapes = 1;
        QVERIFY(runsInASmallStack([&] {
            const Reading reading(text);
            accepted = reading.accepted;
            shapes = reading.count();
        }));
        QVERIFY(!accepted);
        QCOMPARE(shapes, 0);
    }

    void aHundredThousandSiblingsAreRead()
    {
        const Reading reading(document(path().repeated(100 * 1000)));
        QVERIFY(reading.accepted);
        QCOMPARE(reading.count(), 100 * 1000);
    }

    void anEntityBombIsRefused()
    {
        QString subset = QStringLiteral("<!ENTITY a0 '<g></g>'>");
        for (int i = 1; i <= 30; ++i)
            subset += QStringLiteral("<!ENTITY a%1 '%2'>")
                          .arg(i)
                          .arg(QStringLiteral("&a%1;").arg(i - 1).repeated(10));
        const Reading reading(QStringLiteral("<!DOCTYPE svg [%1]>").arg(subset)
                              + document(QStringLiteral("&a30;")));
        QVERIFY(!reading.accepted);
        QCOMPARE(reading.count(), 0);
    }

    void whatADocumentRefersToIsNotFetched_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("an external entity")
            << QStringLiteral("<!DOCTYPE svg [<!ENTITY x SYSTEM 'file://%1/path'>]><svg>&x;</svg>");
        QTest::newRow("an external document type")
            << QStringLiteral("<!DOCTYPE svg SYSTEM 'file://%1/declaration'><svg>&x;</svg>");
        QTest::newRow("an external document type with a public name")
            << QStringLiteral("<!DOCTYPE svg PUBLIC 'x' 'file://%1/declaration'><svg>&x;</svg>");
        QTest::newRow("an external parameter entity")
            << QStringLiteral("<!DOCTYPE svg [<!ENTITY % d SYSTEM '%1/declaration'> %d;]><svg>&x;</svg>");
        QTest::newRow("a link to a document") << QStringLiteral(
            "<svg xmlns:xlink='http://www.w3.org/1999/xlink'>"
            "<use xlink:href='file://%1/document'/><image xlink:href='%1/document'/></svg>");
        QTest::newRow("an instruction that names a style sheet")
            << QStringLiteral("<?xml-stylesheet href='file://%1/document'?><svg/>");
    }

    void whatADocumentRefersToIsNotFetched()
    {
        QFETCH(QString, text);
        const QTemporaryDir directory;
        const auto write = [&](const QString& name, const QString& content) {
            QFile file(directory.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content.toUtf8());
        };
        write(QStringLiteral("path"), path());
        write(QStringLiteral("declaration"), QStringLiteral("<!ENTITY x \"%1\">").arg(path()));
        write(QStringLiteral("document"), document(path()));

        const Reading reading(text.replace(QStringLiteral("%1"), directory.path()));
        QCOMPARE(reading.count(), 0);
    }
};

QUILLET_TEST_MAIN(TestSvgFileParser)
#include "tst_SvgFileParser.moc"
