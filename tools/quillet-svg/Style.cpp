#include "Style.h"

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

namespace {

double clampedFraction(double value)
{
    return std::clamp(value, 0.0, 1.0);
}

/// A number, or a percentage of \a whole; \a ok tells whether it is one.
double numberOrPercentage(const QString& text, double whole, bool& ok)
{
    if (text.endsWith(QLatin1Char('%')))
        return text.chopped(1).toDouble(&ok) / 100 * whole;
    QString number = text;
    number.remove(QStringLiteral("deg"));
    return number.toDouble(&ok);
}

QColor readFunction(const QString& name, const QStringList& arguments)
{
    if (arguments.size() < 3 || arguments.size() > 4)
        return {};
    const bool isHsl = name.startsWith(QLatin1String("hsl"));
    double numbers[4] = {0, 0, 0, 1};
    for (int i = 0; i < arguments.size(); ++i) {
        bool ok = false;
        numbers[i] = numberOrPercentage(arguments[i], i == 3 || isHsl ? 1 : 255, ok);
        if (!ok)
            return {};
    }
    const double alpha = clampedFraction(numbers[3]);
    if (!isHsl)
        return QColor::fromRgbF(clampedFraction(numbers[0] / 255),
                                clampedFraction(numbers[1] / 255),
                                clampedFraction(numbers[2] / 255),
                                alpha);
    const double turns = numbers[0] / 360;
    return QColor::fromHslF(
        turns - std::floor(turns), clampedFraction(numbers[1]), clampedFraction(numbers[2]), alpha);
}

QColor readHexadecimal(const QString& digits)
{
    bool ok = false;
    const uint value = digits.toUInt(&ok, 16);
    if (!ok)
        return {};
    switch (digits.size()) {
    case 3:
    case 4: {
        QString doubled;
        for (const QChar digit : digits)
            doubled += QString(2, digit);
        return readHexadecimal(doubled);
    }
    case 6:
        return QColor::fromRgb(value);
    case 8:
        return QColor::fromRgba((value >> 8U) | (value << 24U));
    default:
        return {};
    }
}

} // namespace

const Declaration* find(const QVector<Declaration>& properties, const QString& property)
{
    for (const Declaration& each : properties) {
        if (each.property == property)
            return &each;
    }
    return nullptr;
}

void set(QVector<Declaration>& properties, const QString& property, const QString& value)
{
    const Declaration* const found = find(properties, property);
    if (found)
        properties[int(found - properties.constData())].value = value;
    else
        properties.append({property, value});
}

QVector<Declaration> eachOnce(const QVector<Declaration>& declarations)
{
    QVector<Declaration> result;
    QHash<QString, int> places;
    for (const Declaration& each : declarations) {
        const auto place = places.constFind(each.property);
        if (place == places.constEnd()) {
            places.insert(each.property, result.size());
            result.append(each);
        } else {
            result[*place].value = each.value;
        }
    }
    return result;
}

QVector<Declaration> readStyle(const QString& text)
{
    static const QRegularExpression comments(QStringLiteral("/\\*.*?\\*/"),
                                             QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression important(QStringLiteral("\\s*!\\s*important\\s*$"),
                                              QRegularExpression::CaseInsensitiveOption);
    QVector<Declaration> result;
    const QStringList parts = QString(text).remove(comments).split(QLatin1Char(';'));
    for (const QString& part : parts) {
        const int colon = part.indexOf(QLatin1Char(':'));
        const QString property = part.left(colon).trimmed().toLower();
        if (colon < 0 || property.isEmpty())
            continue;
        const QString value = part.mid(colon + 1);
        result.append(
            {property, QString(value).remove(important).trimmed(), important.match(value).hasMatch()});
    }
    return result;
}

QColor readColor(const QString& text)
{
    static const QRegularExpression function(QStringLiteral("^(rgba?|hsla?)\\s*\\(([^)]*)\\)$"));
    static const QRegularExpression separators(QStringLiteral("[\\s,/]+"));
    const QString value = text.trimmed().toLower();
    if (value.startsWith(QLatin1Char('#')))
        return readHexadecimal(value.mid(1));
    const QRegularExpressionMatch match = function.match(value);
    if (match.hasMatch())
        return readFunction(match.captured(1), match.captured(2).split(separators, Qt::SkipEmptyParts));
    QColor color;
    if (!value.contains(QLatin1Char(' ')) && value != QLatin1String("transparent"))
        color.setNamedColor(value);
    else if (value == QLatin1String("transparent"))
        color = QColor(0, 0, 0, 0);
    return color;
}

QString referenceIn(const QString& value)
{
    static const QRegularExpression reference(
        QStringLiteral("^\\s*url\\(\\s*[\"']?#([^\"')]+?)[\"']?\\s*\\)"));
    return reference.match(value).captured(1);
}
