#include "RandomPathData.h"

namespace {

template <typename List>
const typename List::value_type& pick(const List& list, std::mt19937& random)
{
    return list[std::uniform_int_distribution<int>(0, list.size() - 1)(random)];
}

bool oneIn(int n, std::mt19937& random)
{
    return std::uniform_int_distribution<int>(1, n)(random) == 1;
}

QVector<QString> list(std::initializer_list<const char*> texts)
{
    QVector<QString> result;
    for (const char* text : texts)
        result.append(QString::fromUtf8(text));
    return result;
}

QString numberText(const PathDataStyle& style, std::mt19937& random)
{
    const QString& form = pick(style.numbers, random);
    std::uniform_real_distribution<double> coordinate(-1000, 1000);
    if (form == QLatin1String("%d"))
        return QString::number(int(coordinate(random)));
    if (form == QLatin1String("%f"))
        return QString::number(coordinate(random), 'f', std::uniform_int_distribution<int>(0, 8)(random));
    if (form == QLatin1String("%g"))
        return QString::number(coordinate(random), 'g', 17);
    return form;
}

int neededNumbers(QChar letter)
{
    switch (letter.toLower().unicode()) {
    case 'h':
    case 'v':
        return 1;
    case 'm':
    case 'l':
    case 't':
        return 2;
    case 's':
    case 'q':
        return 4;
    case 'c':
        return 6;
    case 'a':
        return 7;
    default:
        return 0;
    }
}

int howManyNumbers(QChar letter, const PathDataStyle& style, std::mt19937& random)
{
    if (style.mostlyComplete && !oneIn(20, random))
        return neededNumbers(letter) * std::uniform_int_distribution<int>(1, 3)(random);
    return std::uniform_int_distribution<int>(0, 9)(random);
}

} // namespace

const QVector<PathDataStyle>& pathDataStyles()
{
    static const QString digits20 = QStringLiteral("12345678901234567890");
    static const QString digits400 = digits20.repeated(20);
    static const QVector<PathDataStyle> styles = {
        {"valid", list({"%d", "%f", "%f"}), list({" ", ",", ", "}), {}, true},
        {"minified", list({"%d", "%f", ".5", "-.5", "0", "1e2"}), list({"", " ", ","}), {}, true},
        {"arcs",
         list({"%d", "%f", "0", "1", "5", "90", "-0"}),
         list({" ", ","}),
         list({"A5 5 0 0 1", "a"}),
         true},
        {"degenerate arcs",
         list({"0", "-0", "1e-320", "1e300", "1e160", "1e-160", "1", "5", "%d"}),
         list({" "}),
         list({" A0 5 0 0 1 10 0", " A5 5 0 0 0 0 0", " a1 1 0 0 1 0 0", "A 1e200 1e200 45 1 0 1e-200 3 "}),
         true},
        {"big flags",
         list({"2147483647",
               "2147483648",
               "-2147483648",
               "-2147483649",
               "1e10",
               "-1e300",
               "0.9",
               "-0.9",
               "1.5",
               "2",
               "%d"}),
         list({" "}),
         list({" A 5 5 0", " a 9 4 30"}),
         true},
        {"17 digits", list({"%g", "%g", "%f"}), list({" ", ","}), {}, true},
        {"long numbers",
         list({"%d",
               "12345678901234567890",
               "0.12345678901234567890",
               "9007199254740993",
               "9007199254740992.",
               "90071992547409.93",
               "900.7199254740993",
               "0.9007199254740993",
               ".00000000000000000000000000001",
               "1234567890123456789",
               "0.1234567890123456789"})
             + QVector<QString>{digits400,
                                QStringLiteral("0.") + digits400,
                                QStringLiteral("-") + digits400,
                                digits400 + QStringLiteral("e-390"),
                                digits20 + QLatin1Char('.') + digits20,
                                QString(300, QLatin1Char('0')) + QLatin1Char('7')},
         list({" ", ","}),
         {},
         true},
        {"overflow and underflow",
         list({"1e308",
               "1.7976931348623157e308",
               "1.7976931348623159e308",
               "1e309",
               "-1e400",
               "1e-307",
               "2.2250738585072011e-308",
               "4.9e-324",
               "2e-324",
               "-1e-400",
               "0e999",
               "0.0e-999",
               "1e99999999999",
               "%d"}),
         list({" ", ","}),
         {},
         true},
        {"broken tokens",
         list({"%d",
               "%f",
               "1e",
               "1e+",
               "+",
               "-",
               ".",
               "e5",
               "E",
               "--1",
               "+-1",
               "1.2.3",
               "..",
               "+5",
               "+.5e+1",
               "5.",
               "-0",
               "+0",
               "00012"}),
         list({" ", ",", ""}),
         list({"e", ".", "-", "X", "1"}),
         false},
        {"odd white space",
         list({"%d", "%f"}),
         list({"\t",
               "\n",
               "\v",
               "\f",
               "\r\n",
               "\u0085",
               "\u00a0",
               "\u2003",
               "\u3000",
               "\u2028",
               " , ",
               "\u200b"}),
         list({"   ", "\u00a0", "\u1680"}),
         true},
        {"digits of other scripts",
         list({"%d", "\u0661\u0662", "1\u0663", "\uff11", "1.\u0967", "1e\u0665", "\u00b2", "5"}),
         list({" ", ","}),
         list({"\u0661", "\u00bd", "\U0001d7d9"}),
         true},
        {"stray commas", list({"%d", "%f"}), list({",", ",,", " , ", " ,, ", " "}), list({",", " ,"}), true},
        {"letters that are no commands",
         list({"%d", "%f"}),
         list({" ", ","}),
         list({"X", "b", "\u0161", "\u017a", "\u007a", "\u216f", "]", "z5", "Z 1 2", "10 20"}),
         true},
        {"nothing but noise",
         list({"", "1", "e", "."}),
         list({"", " "}),
         list({" ",
               ",",
               "Z",
               "z",
               "e",
               "E",
               "+",
               "-",
               ".",
               "0",
               "9",
               "M",
               "m",
               "\n",
               "\u0660",
               "\u00a0",
               "A"}),
         false},
    };
    return styles;
}

QString randomPathData(const PathDataStyle& style, std::mt19937& random)
{
    static const QString letters = QStringLiteral("MmLlHhVvCcSsQqTtAaZz");
    QString text;
    for (int commands = std::uniform_int_distribution<int>(0, 20)(random); commands > 0; --commands) {
        const QChar letter = letters[std::uniform_int_distribution<int>(0, letters.size() - 1)(random)];
        text += letter;
        for (int numbers = howManyNumbers(letter, style, random); numbers > 0; --numbers) {
            text += numberText(style, random) + pick(style.separators, random);
            if (!style.noise.isEmpty() && oneIn(30, random))
                text += pick(style.noise, random);
        }
        if (oneIn(200, random))
            text += QChar();
    }
    return text;
}
