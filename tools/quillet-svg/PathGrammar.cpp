#include "PathGrammar.h"

#include <QtCore/QRegularExpression>

namespace {

bool isSpace(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n')
           || c == QLatin1Char('\r');
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

/// How many numbers a command needs; -1 if there is no such command.
int numbersOf(QChar command)
{
    switch (command.toUpper().unicode()) {
    case 'Z':
        return 0;
    case 'H':
    case 'V':
        return 1;
    case 'M':
    case 'L':
    case 'T':
        return 2;
    case 'S':
    case 'Q':
        return 4;
    case 'C':
        return 6;
    case 'A':
        return 7;
    default:
        return -1;
    }
}

class Scanner
{
public:
    explicit Scanner(const QString& text) : m_text(text) {}

    int position() const { return m_position; }
    bool atEnd() const { return m_position == m_text.size(); }
    QChar current() const { return atEnd() ? QChar() : m_text[m_position]; }
    /// The current character, which takes two units outside the basic plane.
    QString character() const { return m_text.mid(m_position, current().isHighSurrogate() ? 2 : 1); }
    void step() { ++m_position; }
    void back(int position) { m_position = position; }

    void skipSpaces()
    {
        while (isSpace(current()))
            step();
    }

    /// \return whether there was a comma.
    bool skipCommaAndSpaces()
    {
        skipSpaces();
        if (current() != QLatin1Char(','))
            return false;
        step();
        skipSpaces();
        return true;
    }

    /// The number at the position; empty, and the position as it was, if there is none.
    QString number()
    {
        const int start = m_position;
        if (current() == QLatin1Char('+') || current() == QLatin1Char('-'))
            step();
        int digits = skipDigits();
        if (current() == QLatin1Char('.')) {
            step();
            digits += skipDigits();
        }
        if (digits == 0) {
            back(start);
            return {};
        }
        skipExponent();
        return m_text.mid(start, m_position - start);
    }

    QString flag()
    {
        if (current() != QLatin1Char('0') && current() != QLatin1Char('1'))
            return {};
        QString result = current();
        step();
        return result;
    }

private:
    int skipDigits()
    {
        const int start = m_position;
        while (isDigit(current()))
            step();
        return m_position - start;
    }

    void skipExponent()
    {
        const int start = m_position;
        if (current() != QLatin1Char('e') && current() != QLatin1Char('E'))
            return;
        step();
        if (current() == QLatin1Char('+') || current() == QLatin1Char('-'))
            step();
        if (skipDigits() == 0)
            back(start);
    }

    const QString& m_text;
    int m_position = 0;
};

bool isFlag(QChar command, int index)
{
    return command.toUpper() == QLatin1Char('A') && (index == 3 || index == 4);
}

/// Why \a segment goes on with no number at the position of \a scanner.
QString missingNumber(const Scanner& scanner, const PathSegment& segment)
{
    if (scanner.atEnd())
        return QStringLiteral("it ends where the command %1 needs another number").arg(segment.command);
    if (isFlag(segment.command, segment.numbers.size()))
        return QStringLiteral("“%1” stands where a flag of an arc must, 0 or 1").arg(scanner.character());
    return QStringLiteral("“%1” stands where the command %2 needs a number")
        .arg(scanner.character(), segment.command);
}

bool isRadiusWithSign(const QString& number)
{
    return number.startsWith(QLatin1Char('+')) || number.startsWith(QLatin1Char('-'));
}

/// Reads the numbers of one segment.
/// \return false where one is missing.
bool readNumbers(Scanner& scanner, PathSegment& segment, int count)
{
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            scanner.skipCommaAndSpaces();
        const bool flag = isFlag(segment.command, i);
        const int offset = scanner.position();
        const QString number = flag ? scanner.flag() : scanner.number();
        if (number.isEmpty())
            return false;
        const QChar next = scanner.current();
        if (flag && (isDigit(next) || next == QLatin1Char('.')))
            segment.hasJoinedFlags = true;
        segment.numbers.append(number);
        segment.numberOffsets.append(offset);
    }
    return true;
}

bool isArc(const PathSegment& segment)
{
    return segment.command.toUpper() == QLatin1Char('A');
}

bool isMove(const PathSegment& segment)
{
    return segment.command.toUpper() == QLatin1Char('M');
}

bool isClose(const PathSegment& segment)
{
    return segment.command.toUpper() == QLatin1Char('Z');
}

/// Whether \a segment, which begins in \a point, never leaves it.
bool staysIn(const QPointF& point, const PathSegment& segment)
{
    const QPointF base = segment.command.isLower() ? point : QPointF();
    const QChar command = segment.command.toUpper();
    if (isClose(segment))
        return true; // where nothing in front of it left the point
    if (command == QLatin1Char('H'))
        return qFuzzyIsNull(base.x() + segment.numbers[0].toDouble() - point.x());
    if (command == QLatin1Char('V'))
        return qFuzzyIsNull(base.y() + segment.numbers[0].toDouble() - point.y());
    for (int i = isArc(segment) ? 5 : 0; i + 1 < segment.numbers.size(); i += 2) {
        const QPointF each(segment.numbers[i].toDouble(), segment.numbers[i + 1].toDouble());
        if (base + each != point) // compares as Qt does that leaves such lines out
            return false;
    }
    return true;
}

} // namespace

bool CurrentPoint::follow(const PathSegment& segment)
{
    const QPointF begin = m_point;
    const QPointF base = segment.command.isLower() ? m_point : QPointF();
    const auto number = [&](int fromTheEnd) {
        return segment.numbers[segment.numbers.size() - fromTheEnd].toDouble();
    };
    switch (segment.command.toUpper().unicode()) {
    case 'Z':
        m_point = m_start;
        break;
    case 'H':
        m_point.setX(base.x() + number(1));
        break;
    case 'V':
        m_point.setY(base.y() + number(1));
        break;
    default:
        m_point = base + QPointF(number(2), number(1));
    }
    if (segment.command.toUpper() == QLatin1Char('M'))
        m_start = m_point;
    return m_point.x() != begin.x() || m_point.y() != begin.y(); // QPointF's operator is not exact
}

bool isFlatArc(const PathSegment& segment)
{
    return isArc(segment) && (segment.numbers[0].toDouble() == 0 || segment.numbers[1].toDouble() == 0);
}

bool hasSignedRadius(const PathSegment& segment)
{
    return isArc(segment) && (isRadiusWithSign(segment.numbers[0]) || isRadiusWithSign(segment.numbers[1]));
}

PathReading readPathData(const QString& data)
{
    PathReading reading;
    Scanner scanner(data);
    const auto fail = [&](const QString& why) {
        reading.errorOffset = scanner.position();
        reading.error = why;
    };

    scanner.skipSpaces();
    while (!scanner.atEnd()) {
        PathSegment segment;
        segment.command = scanner.current();
        segment.offset = scanner.position();
        const int count = numbersOf(segment.command);
        if (count < 0) {
            fail(QStringLiteral("“%1” stands where a command must").arg(scanner.character()));
            return reading;
        }
        if (reading.segments.isEmpty() && segment.command.toUpper() != QLatin1Char('M')) {
            fail(QStringLiteral("it does not begin with a move, M or m"));
            return reading;
        }
        scanner.step();
        scanner.skipSpaces();

        bool goesOn = true;
        while (goesOn) {
            if (!readNumbers(scanner, segment, count)) {
                fail(missingNumber(scanner, segment));
                return reading;
            }
            reading.segments.append(segment);
            const bool comma = count > 0 && scanner.skipCommaAndSpaces();
            scanner.skipSpaces();
            if (segment.command == QLatin1Char('M'))
                segment.command = QLatin1Char('L');
            else if (segment.command == QLatin1Char('m'))
                segment.command = QLatin1Char('l');
            segment.numbers.clear();
            segment.numberOffsets.clear();
            segment.hasJoinedFlags = false;
            segment.offset = scanner.position();
            const QChar next = scanner.current();
            goesOn = count > 0
                     && (comma || isDigit(next) || next == QLatin1Char('.') || next == QLatin1Char('-')
                         || next == QLatin1Char('+'));
        }
    }
    return reading;
}

QVector<Subpath> subpathsOf(const PathReading& reading)
{
    const QVector<PathSegment>& segments = reading.segments;
    QVector<Subpath> subpaths;
    CurrentPoint point;
    for (int end = 0; end < segments.size();) {
        const int begin = end;
        if (isMove(segments[end]))
            point.follow(segments[end++]);
        const QPointF start = point.at();
        bool isDrawn = false;
        bool hasLength = begin == end && isClose(segments[end]); // what it closes is closed already
        while (end < segments.size() && !isMove(segments[end])) {
            const PathSegment& segment = segments[end++];
            const bool isLeftOut = !point.follow(segment) && isArc(segment); // SVG 1.1, F.6.2
            isDrawn = isDrawn || !isLeftOut;
            hasLength = hasLength || !staysIn(start, segment);
            if (isClose(segment))
                break;
        }
        subpaths.append({begin, end, start, isDrawn && !hasLength});
    }
    return subpaths;
}

QString spelledOut(const PathReading& reading, int segmentCount)
{
    QString result;
    for (int i = 0; i < segmentCount; ++i) {
        const PathSegment& segment = reading.segments[i];
        QChar command = segment.command;
        QStringList numbers = segment.numbers;
        if (isFlatArc(segment)) {
            command = command.isLower() ? QLatin1Char('l') : QLatin1Char('L');
            numbers = numbers.mid(5);
        }
        result += command + numbers.join(QLatin1Char(' ')) + QLatin1Char(' ');
    }
    return result;
}

PointsReading readPoints(const QString& points)
{
    static const QRegularExpression number(
        QStringLiteral("\\G[\\s,]*([-+]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][-+]?\\d+)?)"));
    static const QRegularExpression notSeparator(QStringLiteral("[^\\s,]"));
    PointsReading reading;
    int last = 0; // where the last number stands
    int end = 0;
    for (auto matches = number.globalMatch(points); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        reading.numbers.append(match.captured(1));
        last = match.capturedStart(1);
        end = match.capturedEnd();
    }
    const int wrong = points.indexOf(notSeparator, end);
    if (wrong >= 0) {
        reading.errorOffset = wrong;
        reading.error = QStringLiteral("“%1” is no number").arg(points.mid(wrong, 20).trimmed());
    } else if (reading.numbers.size() % 2 != 0) {
        reading.errorOffset = last;
        reading.error = QStringLiteral("the last point has no y");
    }
    if (reading.numbers.size() % 2 != 0)
        reading.numbers.removeLast();
    return reading;
}
