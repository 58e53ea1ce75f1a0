#include "TestCase.h"

#include <Quillet/LogQtTypes.h>

#include <iomanip>
#include <sstream>

namespace {

static_assert(noexcept(std::declval<std::wostream&>() << std::declval<const QString&>()));

std::wstring written(const QString& text)
{
    std::wostringstream stream;
    stream << text;
    return stream.str();
}

} // namespace

Q_DECLARE_METATYPE(std::wstring)

class TestLogQtTypes : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachCodePointBecomesOneCharacter_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::wstring>("expected");
        QTest::newRow("null") << QString() << std::wstring();
        QTest::newRow("empty") << QString(QLatin1String("")) << std::wstring();
        QTest::newRow("ASCII") << QStringLiteral("save-changes") << std::wstring(L"save-changes");
        QTest::newRow("Basic Multilingual Plane")
            << QStringLiteral("\u00E4\u20AC") << std::wstring(L"\u00E4\u20AC");
        QTest::newRow("a surrogate pair") << QStringLiteral("\U0001F4BE!") << std::wstring(L"\U0001F4BE!");
        QTest::newRow("half a surrogate pair")
            << QString(QChar(0xD83D)) << std::wstring(1, wchar_t(sizeof(wchar_t) < 4 ? 0xD83D : 0xFFFD));
        QTest::newRow("NUL inside") << QString::fromLatin1("a\0b", 3) << std::wstring(L"a\0b", 3);
    }

    void eachCodePointBecomesOneCharacter()
    {
        QFETCH(QString, text);
        QFETCH(std::wstring, expected);
        QVERIFY(written(text) == expected);
    }

    void widthAndFillApplyToTheWholeString()
    {
        std::wostringstream stream;
        stream << std::setw(6) << std::setfill(L'.') << QStringLiteral("\U0001F4BE") << QStringLiteral("ab")
               << std::setw(4) << std::left << QStringLiteral("ab");
        QVERIFY(stream.str().substr(0, 5) == L".....");
        QVERIFY(stream.str().substr(6) == L"abab..");
    }

    void theStreamIsReturned()
    {
        std::wostringstream stream;
        QCOMPARE(&(stream << QString()), &static_cast<std::wostream&>(stream));
    }
};

QUILLET_GUILESS_TEST_MAIN(TestLogQtTypes)
#include "tst_LogQtTypes.moc"
