// The reader against the slow and literal one: same answer, same elements, same bits.

#include "LiteralPathReader.h"
#include "PathComparison.h"
#include "RandomPathData.h"
#include "TestCase.h"

#include <Quillet/SvgPathParser.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <cmath>
#include <cstring>

namespace {

constexpr int texts_of_each_style = 20000;

QString escaped(const QString& text)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact));
}

void compare(const QString& text)
{
    QPainterPath actual;
    QPainterPath expected;
    const bool actualResult = Quillet::parseSvgPathData(text, actual);
    const bool expectedResult = readPathDataLiterally(text, expected);
    const QString difference = firstDifference(actual, expected);
    if (actualResult == expectedResult && difference.isEmpty())
        return;
    QFAIL(qPrintable(QStringLiteral("%1: returned %2, expected %3; %4")
                         .arg(escaped(text))
                         .arg(actualResult)
                         .arg(expectedResult)
                         .arg(difference)));
}

} // namespace

class TestPathDataDifferential : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void bothReadersAgreeOnRandomTexts_data()
    {
        QTest::addColumn<int>("style");
        for (int i = 0; i < pathDataStyles().size(); ++i)
            QTest::newRow(pathDataStyles()[i].name) << i;
    }

    void bothReadersAgreeOnRandomTexts()
    {
        QFETCH(int, style);
        std::mt19937 random(20261121u + uint(style));
        const int count = rounds(texts_of_each_style);
        for (int i = 0; i < count && !QTest::currentTestFailed(); ++i)
            compare(randomPathData(pathDataStyles()[style], random));
    }

    void bothReadersAgreeOnEveryNumberOfFewDigits()
    {
        // All texts of up to six units that could be a token of the common form, or nearly one.
        const QString units = QStringLiteral("07.-e");
        for (int length = 1; length <= 6; ++length) {
            int count = 1;
            for (int i = 0; i < length; ++i)
                count *= units.size();
            for (int n = 0; n < count && !QTest::currentTestFailed(); ++n) {
                QString text = QStringLiteral("m1 ");
                for (int rest = n, i = 0; i < length; ++i, rest /= units.size())
                    text += units[rest % units.size()];
                compare(text);
            }
        }
    }

    void bothReadersAgreeOnRandomDoubles()
    {
        std::mt19937_64 random(7);
        const int count = rounds(200000);
        for (int i = 0; i < count && !QTest::currentTestFailed(); ++i) {
            const quint64 bits = random();
            double number = 0;
            std::memcpy(&number, &bits, sizeof number);
            if (!std::isfinite(number))
                continue;
            const int precision = 1 + i % 19;
            compare(QStringLiteral("M1 ") + QString::number(number, "efg"[i % 3], precision));
            compare(QStringLiteral("M1 ")
                    + QString::number(std::ldexp(double(bits >> 11), -int(bits % 64)), 'f', precision));
        }
    }
};

QUILLET_GUILESS_TEST_MAIN(TestPathDataDifferential)
#include "tst_PathDataDifferential.moc"
