#include "NumberCheck.h"

#include "Names.h"
#include "SubsetShape.h"

#include <QtCore/QRegularExpression>

#include <cmath>
#include <limits>

namespace {

QString withoutUnit(QString value)
{
    if (value.endsWith(QLatin1String("px")))
        value.chop(2);
    return value;
}

} // namespace

QString faultOfNumber(const QString& number)
{
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (std::isinf(value) || std::abs(value) > double(std::numeric_limits<float>::max()))
        return QStringLiteral("the number %1 is beyond ±3.4e38, the range that SVG asks for").arg(number);
    if (!ok)
        return QStringLiteral("the number %1 is too small to be told from 0").arg(number);
    return {};
}

QVector<Finding> checkNumber(const XmlAttribute& attribute)
{
    static const QRegularExpression grammar(
        QStringLiteral("\\A[+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?\\z"));
    const QString& name = attribute.name;
    const bool isWidth = name == QLatin1String("stroke-width");
    if (attribute.value.isEmpty()
        || (!isWidth && !isOneOf(name, {"opacity", "fill-opacity", "stroke-opacity", "stroke-miterlimit"})))
        return {};

    const QString trimmed = attribute.value.trimmed();
    const QString number = isWidth ? withoutUnit(trimmed) : trimmed;
    QString taken = attribute.value;
    if (isWidth)
        taken.remove(QStringLiteral("px"));
    const double value = taken.toDouble();
    QString message;
    Finding::Weight weight = Finding::Lost;
    if (!grammar.match(number).hasMatch()) {
        message = QStringLiteral("“%1” is no number in SVG; the reader takes it as %2")
                      .arg(attribute.value, QString::number(value));
    } else if (isWidth && value < 0) {
        message = QStringLiteral("the width %1 is an error in SVG; the reader ignores it").arg(number);
        weight = Finding::Note;
    } else if (isWidth && value >= unpaintable_width) {
        message = QStringLiteral("the width %1 is more than Qt draws; the reader ignores it").arg(number);
    } else if (name == QLatin1String("stroke-miterlimit") && value < 1) {
        // What comes of it depends on the joins.
        message = QStringLiteral("the limit %1 is an error in SVG; the reader takes it").arg(number);
        weight = Finding::Note;
    } else {
        message = faultOfNumber(number);
    }
    if (message.isEmpty())
        return {};
    return {{weight,
             attribute.valuePosition,
             QStringLiteral("number"),
             message,
             QStringLiteral("write a number as SVG has it")}};
}
