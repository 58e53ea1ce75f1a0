#include "LiteralPathReader.h"
#include "PathComparison.h"
#include "TestCase.h"

#include <Quillet/SvgPathParser.h>

#include <QtCore/QLineF>
#include <cmath>

#include <functional>

Q_DECLARE_METATYPE(QPainterPath)

namespace {

// The expected side reads like the path: a list of calls on a QPainterPath.
using Call = std::function<void(QPainterPath&)>;
using Calls = QVector<Call>;

Call move(double x, double y)
{
    return [=](QPainterPath& path) { path.moveTo(x, y); };
}

Call line(double x, double y)
{
    return [=](QPainterPath& path) { path.lineTo(x, y); };
}

Call cubic(QPointF c1, QPointF c2, QPointF end)
{
    return [=](QPainterPath& path) { path.cubicTo(c1, c2, end); };
}

Call quad(QPointF control, QPointF end)
{
    return [=](QPainterPath& path) { path.quadTo(control, end); };
}

Call close()
{
    return [](QPainterPath& path) { path.closeSubpath(); };
}

QPainterPath pathOf(const Calls& calls)
{
    QPainterPath path;
    for (const Call& call : calls)
        call(path);
    return path;
}

QPainterPath read(const QString& text)
{
    QPainterPath path;
    Quillet::parseSvgPathData(text, path);
    return path;
}

void row(const char* name, const QString& text, bool result, const Calls& calls)
{
    QTest::newRow(name) << text << result << pathOf(calls);
}

void row(const char* name, const char* text, bool result, const Calls& calls)
{
    row(name, QString::fromUtf8(text), result, calls);
}

} // namespace

class TestSvgPathParser : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void pathDataIsRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QPainterPath>("expected");

        row("the empty text", "", true, {});
        row("white space alone", " \t\n ", true, {});
        row("white space of other kinds", "\u00a0\u2003M\u0085 1\u30002\u2028", true, {move(1, 2)});
        row("a zero-width space is no white space", "M 1 2\u200b L 3 4", true, {move(1, 2), line(3, 4)});

        row("absolute and relative lines", "M 1 2 L 3 4 l 1 1", true, {move(1, 2), line(3, 4), line(4, 5)});
        row("pairs after a moveto are linetos; one number too many is dropped",
            "M 10 20 30 40 50",
            true,
            {move(10, 20), line(30, 40)});
        row("a first relative moveto starts from the origin", "m 1 1 2 2", true, {move(1, 1), line(3, 3)});
        row("a relative moveto starts from the current point", "M 5 5 m 1 2", true, {move(5, 5), move(6, 7)});
        row("horizontal and vertical lines",
            "M 1 2 H 5 V 6 h 1 v 1 h 1 2",
            true,
            {move(1, 2), line(5, 2), line(5, 6), line(6, 6), line(6, 7), line(7, 7), line(9, 7)});
        row("a closed triangle", "M0,0L10,10z", true, {move(0, 0), line(10, 10), close()});
        row("a closepath returns to the start of its subpath",
            "M 1 1 L 5 1 L 5 5 z l 1 0",
            true,
            {move(1, 1), line(5, 1), line(5, 5), close(), line(2, 1)});
        row("a number after a closepath closes again",
            "M 1 1 L 5 1 Z 5",
            true,
            {move(1, 1), line(5, 1), close(), close()});
        row("a lineto without a moveto starts at the origin", "L 5 5", true, {line(5, 5)});

        row("a cubic", "M0 0C1 2 3 4 5 6", true, {move(0, 0), cubic({1, 2}, {3, 4}, {5, 6})});
        row("a relative cubic, twice",
            "M1 1c1 2 3 4 5 6 1 1 2 2 3 3",
            true,
            {move(1, 1), cubic({2, 3}, {4, 5}, {6, 7}), cubic({7, 8}, {8, 9}, {9, 10})});
        row("a smooth cubic reflects the control point of a cubic",
            "M0 0C1 2 3 4 5 6S 9 9 10 10",
            true,
            {move(0, 0), cubic({1, 2}, {3, 4}, {5, 6}), cubic({7, 8}, {9, 9}, {10, 10})});
        row("a smooth cubic reflects that of a smooth cubic, in one command as well",
            "M0 0S 3 4 5 6 9 9 10 10s 1 1 2 2",
            true,
            {move(0, 0),
             cubic({0, 0}, {3, 4}, {5, 6}),
             cubic({7, 8}, {9, 9}, {10, 10}),
             cubic({11, 11}, {11, 11}, {12, 12})});
        row("a smooth cubic after another command starts at the current point",
            "L 5 5 S 10 10 20 20",
            true,
            {line(5, 5), cubic({5, 5}, {10, 10}, {20, 20})});
        row("a quadratic", "M0 0Q1 2 3 4", true, {move(0, 0), quad({1, 2}, {3, 4})});
        row("a smooth quadratic reflects the control point of a quadratic",
            "M0 0q1 2 3 4 t 3 0 T 9 9",
            true,
            {move(0, 0), quad({1, 2}, {3, 4}), quad({5, 6}, {6, 4}), quad({7, 2}, {9, 9})});
        row("a smooth quadratic after a cubic starts at the current point",
            "M0 0C1 2 3 4 5 6T 7 8",
            true,
            {move(0, 0), cubic({1, 2}, {3, 4}, {5, 6}), quad({5, 6}, {7, 8})});
        row("a group that is too short is dropped but still becomes the last command",
            "C 1 2 3 4 5 6 Q 7 T 8 9",
            true,
            {cubic({1, 2}, {3, 4}, {5, 6}), quad({7, 8}, {8, 9})});
        row("a command without numbers does not become the last command",
            "C 1 2 3 4 5 6 L S 8 8 9 9",
            true,
            {cubic({1, 2}, {3, 4}, {5, 6}), cubic({7, 8}, {8, 8}, {9, 9})});
        row("the command after a moveto counts as a lineto",
            "M 1 1 C 1 2 3 4 5 6 M 1 1 2 2 S 8 8 9 9",
            true,
            {move(1, 1),
             cubic({1, 2}, {3, 4}, {5, 6}),
             move(1, 1),
             line(2, 2),
             cubic({2, 2}, {8, 8}, {9, 9})});

        row("numbers may touch", "M 1.5.5", true, {move(1.5, 0.5)});
        row("a sign begins a number", "M10-20", true, {move(10, -20)});
        row("exponents", "M 1e2 -3E-1", true, {move(100, -0.3)});
        row("plus signs", "M+1 +.5e+1", true, {move(1, 5)});
        row("points without digits on one side", "M.5 5.", true, {move(0.5, 5)});
        row("an absolute -0 becomes 0", "M -0 -0", true, {move(0.0, 0.0)});
        row("a relative -0 keeps the current point", "M 1 1 l -0 1", true, {move(1, 1), line(1, 2)});

        row("a digit in place of a command", "10 20", false, {});
        row("a lone digit is a command without numbers", "1", true, {});
        row("an unknown command without numbers is skipped", "M 10 20 X", true, {move(10, 20)});
        row("an unknown command with a number ends the reading", "M 10 20 X 5 L 1 1", false, {move(10, 20)});
        row("a comma after a command letter is a command", "M,10,20", false, {});
        row("two commas end the numbers", "M 0,,0", false, {});
        row("one comma, with white space around it, separates", "M 0 , 0", true, {move(0, 0)});
        row("a comma at the end", "M 1 2,", true, {move(1, 2)});
        row("an exponent without digits is no number, and is lost", "M 1e 2", true, {});
        row("a lone sign is no number, and is lost", "M 1 - 2", true, {});
        row("a lone sign at the end, white space behind it", "M 1 2 L - ", true, {move(1, 2)});
        row("a lone exponent letter at the end, white space behind it", "M 1 2e \n", true, {});
        row("a letter beyond ASCII whose low byte is a command's", "M 1 2 \u014c 3 4", false, {move(1, 2)});
        row("digits of another script are part of a token that is no number",
            "M 1 \u0662 L 3 4",
            true,
            {line(3, 4)});
        row("digits of another script end a number that they follow",
            "M 1\u0662 2 L 3 4",
            true,
            {line(3, 4)});
        row("a lone exponent is no number, and lost",
            "M 1 2 e L 3 4 E L 5 6",
            true,
            {move(1, 2), line(3, 4), line(5, 6)});
        row("a number of more digits than a double has is rounded to the nearest",
            "M 9007199254740993 9007199254740995 L 3 4",
            true,
            {move(9007199254740992.0, 9007199254740996.0), line(3, 4)});
        row("a nought may have an exponent", "M 0e5 -0E0 L 3 4", true, {move(0, 0), line(3, 4)});
        row("an embedded null is a command without numbers",
            QStringLiteral("M 1 2") + QChar() + QStringLiteral("L 3 4"),
            true,
            {move(1, 2), line(3, 4)});
        row("an embedded null with a number ends the reading",
            QStringLiteral("M 1 2") + QChar() + QStringLiteral("5"),
            false,
            {move(1, 2)});

        row("an overflow is no number", "M 1e400 5 L 3 4", true, {line(3, 4)});
        row("an underflow is no number", "M 1 1e-400 L 3 4", true, {line(3, 4)});
        row("what Qt's path takes for too large is left out, but moves the current point",
            "M 1e300 1e300 l 0 0 L 1 1",
            true,
            {move(1e300, 1e300), line(1e300, 1e300), line(1, 1)});

        row("an arc without an x radius draws nothing and moves",
            "M 0 0 A 0 5 0 0 1 10 0 l 1 1",
            true,
            {move(0, 0), line(11, 1)});
        row("an arc without a y radius draws nothing and moves",
            "M 0 0 A 5 0 0 0 1 10 0 l 1 1",
            true,
            {move(0, 0), line(11, 1)});
        row("an arc to where it starts draws nothing",
            "M 3 3 A 5 5 0 0 1 3 3 l 1 1",
            true,
            {move(3, 3), line(4, 4)});
        row("flags that are not set apart are one number", "M 0 0 A 5 5 0 1010 0", true, {move(0, 0)});
    }

    void pathDataIsRead()
    {
        QFETCH(QString, text);
        QFETCH(bool, result);
        QFETCH(QPainterPath, expected);

        QPainterPath path;
        QCOMPARE(Quillet::parseSvgPathData(text, path), result);
        QCOMPARE(firstDifference(path, expected), QString());

        QPainterPath literal;
        QCOMPARE(readPathDataLiterally(text, literal), result);
        QCOMPARE(firstDifference(literal, expected), QString());
    }

    void elementsAreAppendedToThePath()
    {
        QPainterPath path;
        path.moveTo(7, 8);
        path.lineTo(9, 9);
        QVERIFY(Quillet::parseSvgPathData(QStringLiteral("l 1 1 m 1 1"), path));
        QCOMPARE(firstDifference(path, pathOf({move(7, 8), line(9, 9), line(1, 1), move(2, 2)})), QString());
    }

    void anEmptyTextLeavesThePathUntouched()
    {
        QPainterPath path;
        path.addRect(1, 2, 3, 4);
        const QPainterPath before = path;
        QVERIFY(Quillet::parseSvgPathData(QString(), path));
        QCOMPARE(path, before);
    }

    // Arcs

    void anArcTakesASegmentForEachQuarterTurn_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("segments");
        QTest::addColumn<QPointF>("centre");
        QTest::addColumn<double>("radius");
        QTest::newRow("a quarter turn")
            << QStringLiteral("M 5 0 A 5 5 0 0 1 0 5") << 1 << QPointF(0, 0) << 5.0;
        QTest::newRow("a half turn") << QStringLiteral("M 0 0 A 5 5 0 0 1 10 0") << 2 << QPointF(5, 0) << 5.0;
        QTest::newRow("a half turn, the other way")
            << QStringLiteral("M 0 0 A 5 5 0 0 0 10 0") << 2 << QPointF(5, 0) << 5.0;
        QTest::newRow("three quarters")
            << QStringLiteral("M 5 0 A 5 5 0 1 0 0 5") << 3 << QPointF(0, 0) << 5.0;
        QTest::newRow("the large arc the other way")
            << QStringLiteral("M 5 0 A 5 5 0 1 1 0 5") << 3 << QPointF(5, 5) << 5.0;
        QTest::newRow("radii that are too small grow")
            << QStringLiteral("M 0 0 A 1 1 0 0 1 10 0") << 2 << QPointF(5, 0) << 5.0;
        QTest::newRow("radii that have grown and by rounding are still too small")
            << QStringLiteral("M 0 0 A 1 1 0 0 1 18 47") << 2 << QPointF(9, 23.5) << std::hypot(9, 23.5);
        QTest::newRow("negative radii count as positive")
            << QStringLiteral("M 5 0 A -5 -5 0 0 1 0 5") << 1 << QPointF(0, 0) << 5.0;
        QTest::newRow("a rotated circle is a circle")
            << QStringLiteral("M 5 0 A 5 5 77 0 1 0 5") << 1 << QPointF(0, 0) << 5.0;
        QTest::newRow("flags are truncated toward zero")
            << QStringLiteral("M 5 0 A 5 5 0 .9 1.9 0 5") << 1 << QPointF(0, 0) << 5.0;
        QTest::newRow("the flags 2 and 1 are different")
            << QStringLiteral("M 5 0 A 5 5 0 2 1 0 5") << 1 << QPointF(0, 0) << 5.0;
        QTest::newRow("flags too large for an int are one and the same flag")
            << QStringLiteral("M 5 0 A 5 5 0 1e10 -1e10 0 5") << 3 << QPointF(5, 5) << 5.0;
    }

    void anArcTakesASegmentForEachQuarterTurn()
    {
        QFETCH(QString, text);
        QFETCH(int, segments);
        QFETCH(QPointF, centre);
        QFETCH(double, radius);
        const QPainterPath path = read(text);
        QCOMPARE(path.elementCount(), 1 + 3 * segments);
        for (int i = 0; i <= 100; ++i) {
            const double distance = QLineF(centre, path.pointAtPercent(i / 100.0)).length();
            QVERIFY2(qAbs(distance - radius) < radius * 5e-4, QByteArray::number(distance));
        }
    }

    void aRotatedEllipseLiesOnItsEquation()
    {
        // The semi-axes 10 and 5, the long one turned by 30 degrees.
        const QPainterPath path = read(QStringLiteral("M 0 0 A 10 5 30 1 1 3 4"));
        QVERIFY(path.elementCount() > 1);
        const QPainterPath circle = QTransform().scale(1 / 10.0, 1 / 5.0).rotate(-30).map(path);
        // In the circle's space three points decide the centre; all others have the same distance from it.
        const QPointF a = circle.pointAtPercent(0);
        const QPointF b = circle.pointAtPercent(0.3);
        const QPointF c = circle.pointAtPercent(0.6);
        const QLineF bisector1 = QLineF((a + b) / 2, b).normalVector();
        const QLineF bisector2 = QLineF((b + c) / 2, c).normalVector();
        QPointF centre;
        QVERIFY(bisector1.intersects(bisector2, &centre) != QLineF::NoIntersection);
        for (int i = 0; i <= 100; ++i)
            QVERIFY(qAbs(QLineF(centre, circle.pointAtPercent(i / 100.0)).length() - 1) < 1e-3);
    }

    void anArcEndsWhereTheNextCommandStarts()
    {
        const QPainterPath path = read(QStringLiteral("M 1 1 a 5 7 20 0 1 3.1 4.2 l 0 0.5"));
        QCOMPARE(path.currentPosition(), QPointF(1 + 3.1, 1 + 4.2 + 0.5));
    }

    void anArcLeavesTheLastControlPointAlone()
    {
        // The smooth quadratic comes after an arc, so it starts at the current point; the one after it
        // reflects that point, and not the quadratic's from before the arc.
        const QPainterPath path = read(QStringLiteral("M0 0 Q 1 5 2 0 A 0 0 0 0 0 4 0 T 6 0 T 8 2"));
        QCOMPARE(
            firstDifference(
                path, pathOf({move(0, 0), quad({1, 5}, {2, 0}), quad({4, 0}, {6, 0}), quad({8, 0}, {8, 2})})),
            QString());
    }

    // Sizes

    void tenMillionDigitsAreOneNumberThatIsTooLarge()
    {
        QString text = QStringLiteral("M 1 2 L ");
        text.append(QString(10 * 1000 * 1000, QLatin1Char('7')));
        text.append(QStringLiteral(" 3 4"));
        QPainterPath path;
        // The number is refused, and what follows it is a "3" with the number 4.
        QVERIFY(!Quillet::parseSvgPathData(text, path));
        QCOMPARE(firstDifference(path, pathOf({move(1, 2)})), QString());
    }

    void aMillionNumbersOfOneCommandAreRead()
    {
        QPainterPath path;
        QVERIFY(Quillet::parseSvgPathData(
            QStringLiteral("M0 0") + QStringLiteral(" 1 2 3 4").repeated(250000), path));
        QCOMPARE(path.elementCount(), 500001);
    }
};

QUILLET_TEST_MAIN(TestSvgPathParser)
#include "tst_SvgPathParser.moc"
