#include "PathDataCheck.h"

#include "PathGrammar.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <optional>

namespace {

/// What the reader draws for \a data; nothing if it refuses it.
std::optional<QPainterPath> readByTheLibrary(const QString& data)
{
    Quillet::PainterPathContainer picture;
    const QString document = QStringLiteral("<svg><path d=\"%1\"/></svg>").arg(data.toHtmlEscaped());
    if (!Quillet::parseSvg(document, picture) || picture.getPaths().size() != 1)
        return std::nullopt;
    return picture.getPaths().front()->getPath();
}

bool sameElement(const QPainterPath::Element& one, const QPainterPath::Element& other)
{
    return one.type == other.type && one.x == other.x && one.y == other.y;
}

/// The first element in which the paths differ; -1 if they are the same.
int firstDifference(const QPainterPath& one, const QPainterPath& other)
{
    const int common = qMin(one.elementCount(), other.elementCount());
    for (int i = 0; i < common; ++i) {
        if (!sameElement(one.elementAt(i), other.elementAt(i)))
            return i;
    }
    return one.elementCount() == other.elementCount() ? -1 : common;
}

/// The first index in [0, count) for which \a condition holds; count if it holds for none. Where it holds for
/// one it holds for all behind.
template <typename Condition>
int firstOf(int count, Condition condition)
{
    int begin = 0;
    int end = count;
    while (begin < end) {
        const int middle = (begin + end) / 2;
        if (condition(middle))
            end = middle;
        else
            begin = middle + 1;
    }
    return begin;
}

/// The segment that draws the element \a element of the path.
int segmentOfElement(const PathReading& reading, int element)
{
    return firstOf(reading.segments.size(), [&](int segment) {
        const auto path = readByTheLibrary(spelledOut(reading, segment + 1));
        return path && path->elementCount() > element;
    });
}

/// The segment with which the reader begins to refuse \a data.
int refusedSegment(const PathReading& reading, const QString& data)
{
    const int count = reading.segments.size();
    const int validSize = reading.errorOffset >= 0 ? reading.errorOffset : data.size();
    return firstOf(count, [&](int segment) {
        const int end = segment + 1 < count ? reading.segments[segment + 1].offset : validSize;
        return !readByTheLibrary(data.left(end));
    });
}

/// The first segment that the reader never takes as SVG says, or \a otherwise if there is none. What comes of
/// it may show earlier: two moves with nothing between them become one.
int culprit(const PathReading& reading, int otherwise)
{
    for (int i = 0; i < reading.segments.size(); ++i) {
        if (reading.segments[i].hasJoinedFlags || isFlatArc(reading.segments[i]))
            return i;
    }
    return otherwise;
}

QString apart()
{
    return QStringLiteral("write the flags apart, as in “a5 5 0 1 1 10 0”, or run “quillet-svg convert”");
}

Finding describe(const XmlAttribute& attribute, const PathReading& reading, int index, Finding::Weight weight)
{
    Finding finding;
    finding.weight = weight;
    const bool inGrammar = index < reading.segments.size();
    const int offset = inGrammar ? reading.segments[index].offset : qMax(reading.errorOffset, 0);
    finding.position = positionInValue(attribute, offset);
    const QString reads = weight == Finding::Refused ? QStringLiteral("the reader refuses it")
                                                     : QStringLiteral("the reader draws something else");
    if (!inGrammar) {
        finding.rule = QStringLiteral("path-error");
        finding.message =
            QStringLiteral("path data is wrong: %1; %2")
                .arg(reading.error.isEmpty() ? QStringLiteral("it ends too soon") : reading.error, reads);
        finding.advice = QStringLiteral("have the program that wrote the file write it anew");
        return finding;
    }

    const PathSegment& segment = reading.segments[index];
    if (segment.hasJoinedFlags) {
        finding.rule = QStringLiteral("arc-flags");
        finding.message = QStringLiteral("the flags of an arc are not apart; %1").arg(reads);
        finding.advice = apart();
    } else if (isFlatArc(segment)) {
        finding.rule = QStringLiteral("arc-radius");
        finding.message = QStringLiteral("an arc with a radius of 0 is a line; the reader draws nothing");
        finding.advice = QStringLiteral("write a line, or run “quillet-svg convert”");
    } else {
        finding.rule = QStringLiteral("path-data");
        finding.message = QStringLiteral("the numbers of the command %1 are read otherwise than SVG says; %2")
                              .arg(QString(segment.command), reads);
        finding.advice = QStringLiteral("write all numbers apart, or run “quillet-svg convert”");
    }
    return finding;
}

} // namespace

QVector<Finding> checkPathData(const XmlAttribute& attribute)
{
    const QString& data = attribute.value;
    const PathReading reading = readPathData(data);
    const auto asRead = readByTheLibrary(data);
    if (!asRead) {
        return {describe(attribute, reading, refusedSegment(reading, data), Finding::Refused)};
    }

    QVector<Finding> findings;
    const auto asMeant = readByTheLibrary(spelledOut(reading, reading.segments.size()));
    const int element = asMeant ? firstDifference(*asRead, *asMeant) : -1;
    if (element >= 0) {
        const int segment = culprit(reading, segmentOfElement(reading, element));
        findings.append(describe(attribute, reading, segment, Finding::Lost));
    } else if (reading.errorOffset >= 0) {
        Finding finding = describe(attribute, reading, reading.segments.size(), Finding::Note);
        finding.message =
            QStringLiteral("path data is wrong: %1; the reader draws what stands before it, as it "
                           "should")
                .arg(reading.error);
        findings.append(finding);
    }
    return findings;
}
