#include "Conditions.h"

#include "Names.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>

namespace {

/// The parts of SVG that no path can draw, by the names that features have (SVG 1.1, L).
bool isDrawnFeature(const QString& feature)
{
    static const QRegularExpression known(
        QStringLiteral("^(http://www\\.w3\\.org/TR/SVG11/feature#|"
                       "http://www\\.w3\\.org/Graphics/SVG/feature/1\\.2/#|org\\.w3c\\.(svg|dom\\.svg))"));
    static const QRegularExpression undrawn(
        QStringLiteral("#(Basic)?(Text|Font|Image|Filter|Mask|Clip|Pattern|Marker|Animation|Script|"
                       "Extensibility|ColorProfile)$"));
    return known.match(feature).hasMatch() && !undrawn.match(feature).hasMatch();
}

bool isEnglish(const QString& language)
{
    const QString tag = language.trimmed().toLower();
    return tag == QLatin1String("en") || tag.startsWith(QLatin1String("en-"));
}

} // namespace

bool passesTests(const XmlElement& element)
{
    return std::none_of(element.attributes.begin(), element.attributes.end(), [](const XmlAttribute& each) {
        return isFailedTest(each.name, each.value);
    });
}

bool isFailedTest(const QString& name, const QString& value)
{
    if (name == QLatin1String("requiredExtensions"))
        return true;
    if (name == QLatin1String("requiredFeatures")) {
        const QStringList features = value.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return features.isEmpty() || !std::all_of(features.begin(), features.end(), isDrawnFeature);
    }
    if (name == QLatin1String("systemLanguage")) {
        const QStringList languages = value.split(QLatin1Char(','));
        return std::none_of(languages.begin(), languages.end(), isEnglish);
    }
    return false;
}
