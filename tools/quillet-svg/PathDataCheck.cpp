#include "PathDataCheck.h"

#include "NumberCheck.h"
#include "PathGrammar.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <algorithm>
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

/// Something in a segment that the reader does not take as SVG means it.
struct Fault
{
    int segment;
    int offset;
    QString rule;
    QString what;   ///< was found
    QString result; ///< of it, in what the reader draws
    QString advice;
    bool isNumber = false;
    bool misleads = false; ///< a number that the reader does not take: it has the next digit for a command
};

class PathDataCheck
{
public:
    explicit PathDataCheck(const XmlAttribute& attribute)
        : m_valuePosition(attribute.valuePosition),
          m_data(attribute.value),
          m_reading(readPathData(m_data)),
          m_places(attribute)
    {
    }

    QVector<Finding> check()
    {
        findFaults();
        const auto drawn = readByTheLibrary(m_data);
        if (!drawn) {
            checkRefused();
        } else if (m_reading.errorOffset < 0) {
            checkDrawn(*drawn);
        } else {
            const QPainterPath withoutTheError = readByTheLibrary(validPart()).value_or(QPainterPath());
            checkDrawn(withoutTheError);
            if (isSamePath(*drawn, withoutTheError))
                sayError(Finding::Note,
                         QStringLiteral("the reader draws what stands before it, as it should"));
            else
                sayError(Finding::Lost, QStringLiteral("the path ends here, but the reader goes on"));
        }
        return m_findings;
    }

private:
    void findFaults()
    {
        CurrentPoint point;
        for (int i = 0; i < m_reading.segments.size(); ++i) {
            const PathSegment& segment = m_reading.segments[i];
            if (point.follow(segment) && isFlatArc(segment)) {
                m_faults.append({i,
                                 segment.offset,
                                 QStringLiteral("arc-radius"),
                                 QStringLiteral("an arc with a radius of 0 is a line"),
                                 QStringLiteral("the reader draws nothing"),
                                 QStringLiteral("write a line, or run “quillet-svg convert”")});
            }
            if (segment.hasJoinedFlags) {
                m_faults.append(
                    {i,
                     segment.numberOffsets[3],
                     QStringLiteral("arc-flags"),
                     QStringLiteral("the flags of an arc are not apart"),
                     QStringLiteral("the reader draws something else"),
                     QStringLiteral(
                         "write the flags apart, as in “a5 5 0 1 1 10 0”, or run “quillet-svg convert”")});
            }
            findNumbers(i);
        }
        std::stable_sort(m_faults.begin(), m_faults.end(), [](const Fault& one, const Fault& other) {
            return one.offset < other.offset;
        });
    }

    void findNumbers(int segment)
    {
        const QStringList& numbers = m_reading.segments[segment].numbers;
        for (int i = 0; i < numbers.size(); ++i) {
            const QString what = faultOfNumber(numbers[i]);
            if (what.isEmpty())
                continue;
            bool isTaken = false;
            numbers[i].toDouble(&isTaken); // what the reader asks, too
            m_faults.append({segment,
                             m_reading.segments[segment].numberOffsets[i],
                             QStringLiteral("number"),
                             what,
                             isTaken ? QStringLiteral("what is drawn of it is chance")
                                     : QStringLiteral("the reader skips it and misreads what follows"),
                             QStringLiteral("write a number that can be drawn"),
                             true,
                             !isTaken});
        }
    }

    void say(Finding::Weight weight, const Fault& fault, const QString& result)
    {
        // There may be millions that say the same; so they share it.
        const QString message = fault.what + QStringLiteral("; ") + result;
        if (m_lastMessage != message)
            m_lastMessage = message;
        m_findings.append(
            {weight, m_places.at(fault.offset), fault.rule, m_lastMessage, fault.advice, m_valuePosition});
    }

    void sayError(Finding::Weight weight, const QString& result)
    {
        const Fault error{
            0,
            m_reading.errorOffset,
            QStringLiteral("path-error"),
            QStringLiteral("path data is wrong: ")
                + (m_reading.error.isEmpty() ? QStringLiteral("it cannot be read") : m_reading.error),
            {},
            QStringLiteral("correct it, or have the program that wrote the file write it anew")};
        say(weight, error, result);
    }

    /// The part in which the grammar finds no error.
    QString validPart() const
    {
        return m_reading.errorOffset < 0 ? m_data : m_data.left(m_reading.errorOffset);
    }

    /// The segment with which the reader begins to refuse the data; behind the last if that lies in the
    /// error.
    int refusedSegment() const
    {
        const QVector<PathSegment>& segments = m_reading.segments;
        return firstOf(segments.size(), [&](int segment) {
            const bool isLast = segment + 1 == segments.size();
            return !readByTheLibrary(isLast ? validPart() : m_data.left(segments[segment + 1].offset));
        });
    }

    /// What stands behind the place where the reader stops is not judged.
    void checkRefused()
    {
        const QString refuses = QStringLiteral("the reader refuses the document here");
        int cause = -1;
        const int refused = refusedSegment();
        if (refused < m_reading.segments.size()) {
            for (int i = 0; i < m_faults.size() && m_faults[i].segment <= refused; ++i)
                cause = m_faults[i].misleads ? i : cause;
        }
        for (int i = 0; i < (cause < 0 ? m_faults.size() : cause); ++i)
            say(Finding::Lost, m_faults[i], m_faults[i].result);
        if (cause >= 0)
            say(Finding::Refused, m_faults[cause], refuses);
        else
            sayError(Finding::Refused, refuses);
    }

    /// \a drawn is what the reader makes of the valid part.
    void checkDrawn(const QPainterPath& drawn)
    {
        const QPainterPath meant =
            readByTheLibrary(spelledOut(m_reading, m_reading.segments.size())).value_or(QPainterPath());
        const bool isNumberWrong =
            std::any_of(m_faults.begin(), m_faults.end(), [](const Fault& each) { return each.isNumber; });
        const bool isSame = isSamePath(meant, drawn) && !isNumberWrong;
        for (const Fault& fault : qAsConst(m_faults)) {
            if (isSame)
                say(Finding::Note, fault, QStringLiteral("here that makes no difference"));
            else
                say(Finding::Lost, fault, fault.result);
        }
        // No way is known in which this comes about.
        if (m_faults.isEmpty() && !isSame) {
            say(Finding::Lost,
                {0,
                 0,
                 QStringLiteral("path-data"),
                 QStringLiteral("the reader reads this otherwise than SVG says"),
                 {},
                 QStringLiteral("write all numbers apart, or run “quillet-svg convert”")},
                QStringLiteral("it draws something else"));
        }
    }

    static bool isSamePath(const QPainterPath& one, const QPainterPath& other)
    {
        if (one.elementCount() != other.elementCount())
            return false;
        for (int i = 0; i < one.elementCount(); ++i) {
            const QPainterPath::Element a = one.elementAt(i);
            const QPainterPath::Element b = other.elementAt(i);
            if (a.type != b.type || a.x != b.x || a.y != b.y)
                return false;
        }
        return true;
    }

    const Position m_valuePosition;
    const QString& m_data;
    const PathReading m_reading;
    PlacesInValue m_places;
    QVector<Fault> m_faults; ///< in their order in the data
    QString m_lastMessage;
    QVector<Finding> m_findings;
};

} // namespace

QVector<Finding> checkPathData(const XmlAttribute& attribute)
{
    return PathDataCheck(attribute).check();
}

QVector<Finding> checkCaps(const XmlAttribute& attribute)
{
    QVector<Finding> findings;
    PlacesInValue places(attribute);
    const PathReading reading = readPathData(attribute.value);
    const QVector<Subpath> subpaths = subpathsOf(reading);
    for (const Subpath& each : subpaths) {
        if (!each.isDot)
            continue;
        findings.append(
            {Finding::Lost,
             places.at(reading.segments[each.begin].offset),
             QStringLiteral("caps"),
             QStringLiteral("of a line without length SVG draws the caps, and the reader nothing"),
             QStringLiteral("make it a trifle long, or run “quillet-svg convert”"),
             attribute.valuePosition});
    }
    return findings;
}
