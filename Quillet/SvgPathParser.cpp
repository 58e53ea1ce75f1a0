#include <Quillet/SvgPathParser.h>

#include <QtCore/QChar>

#include <array>
#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>

namespace {

// Numbers
//
// A token is [+-] digits [. digits] [eE [+-] digits], where every part may be missing, and
// QString::toDouble() is what decides whether a token is a number and which. A correctly rounded conversion
// has only one result, so the usual tokens are converted where they stand, and only the others are gathered
// for toDouble().

/// A position in the text. It counts on the null that ends every QString's storage: that null is no part of
/// any token and no space, so only who takes units one by one needs to ask for the end.
class Cursor
{
public:
    explicit Cursor(const QString& text) : m_position(text.constData()), m_end(m_position + text.size()) {}

    bool atEnd() const { return m_position == m_end; }

    QChar takeUnit() { return *m_position++; }

    void skipSpaces()
    {
        while (m_position->isSpace())
            ++m_position;
    }

    /// White space, with one comma anywhere in it.
    void skipSeparator()
    {
        skipSpaces();
        if (*m_position == QLatin1Char(',')) {
            ++m_position;
            skipSpaces();
        }
    }

    /// Takes a token and reads it as a number. What a token that is no number took stays taken.
    bool takeNumber(double& number);

private:
    bool takeShortDecimal(double& number);
    void takeSign();
    void takeDigits();

    const QChar* m_position;
    const QChar* m_end;
};

/// Appends the ASCII digits at \a position to \a value, which is right for up to 19 digits in all.
void readDigits(const QChar*& position, quint64& value)
{
    const auto digitAt = [](const QChar* place) { return uint(place->unicode()) - '0'; };
    for (; digitAt(position) <= 9; ++position)
        value = value * 10 + digitAt(position);
}

/// Takes a token without an exponent and of few digits, as most are; takes nothing of any other.
///
/// Its digits make an integer, and the place of the point a power of ten, that are both exact in a double.
/// So the quotient is rounded once, which is the correct rounding.
/// (Clinger, "How to Read Floating Point Numbers Accurately", 1990.)
bool Cursor::takeShortDecimal(double& number)
{
    static constexpr std::array<double, 20> powers_of_ten = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                                             1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13,
                                                             1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
    constexpr quint64 exact_integers = quint64(1) << 53;

    const QChar* position = m_position;
    const bool negative = *position == QLatin1Char('-');
    if (negative || *position == QLatin1Char('+'))
        ++position;

    quint64 integer = 0;
    const QChar* const digits = position;
    readDigits(position, integer);
    auto digitCount = position - digits;
    decltype(digitCount) fractionDigitCount = 0;
    if (*position == QLatin1Char('.')) {
        const QChar* const fractionDigits = ++position;
        readDigits(position, integer);
        fractionDigitCount = position - fractionDigits;
        digitCount += fractionDigitCount;
    }

    const ushort next = position->unicode();
    const bool goesOn = next == 'e' || next == 'E' || next > 0x7f; // an exponent, or digits of another script
    if (goesOn || digitCount < 1 || digitCount > 19 || integer > exact_integers)
        return false;

    m_position = position;
    const double magnitude = double(integer) / powers_of_ten[std::size_t(fractionDigitCount)];
    number = negative ? -magnitude : magnitude;
    return true;
}

/// Converts a token in plain ASCII, where the standard library has a correctly rounded conversion.
bool convertInPlace(const QChar* begin, const QChar* end, double& number)
{
#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L
    if (*begin == QLatin1Char('+'))
        ++begin; // from_chars() knows no plus sign
    std::array<char, 64> buffer = {};
    if (std::size_t(end - begin) > buffer.size())
        return false;
    char* last = buffer.data();
    for (; begin != end; ++begin)
        *last++ = begin->toLatin1(); // a digit of another script becomes 0, which ends the number
    const auto result = std::from_chars(buffer.data(), last, number);

    // What is no number, and what is too large or too small for one, is left for toDouble() to say.
    return result.ec == std::errc() && result.ptr == last && number != 0;
#else
    Q_UNUSED(begin)
    Q_UNUSED(end)
    Q_UNUSED(number)
    return false;
#endif
}

bool convertByQt(const QChar* begin, const QChar* end, double& number)
{
    QString token;
    token.reserve(1079); // every digit of the smallest double fits, so hardly a token reallocates
    for (; begin != end; ++begin)
        token.append(*begin);
    bool ok = false;
    number = token.toDouble(&ok);
    return ok;
}

void Cursor::takeSign()
{
    if (*m_position == QLatin1Char('+') || *m_position == QLatin1Char('-'))
        ++m_position;
}

void Cursor::takeDigits()
{
    while (m_position->isDigit()) // of any script
        ++m_position;
}

/// Whether a token that starts with \a unit takes nothing for sure: what mostly follows the last number of a
/// command is the letter of the next.
bool cannotBeginToken(ushort unit)
{
    return unit >= 'A' && unit <= 0x7f && unit != 'e' && unit != 'E';
}

bool Cursor::takeNumber(double& number)
{
    if (cannotBeginToken(m_position->unicode()))
        return false;

    // Where double arithmetic has excess precision, a quotient is rounded twice.
    if (FLT_EVAL_METHOD == 0 && takeShortDecimal(number))
        return true;

    const QChar* const begin = m_position;
    takeSign();
    takeDigits();
    if (*m_position == QLatin1Char('.'))
        ++m_position;
    takeDigits();
    if (*m_position == QLatin1Char('e') || *m_position == QLatin1Char('E')) {
        ++m_position;
        takeSign();
        takeDigits();
    }
    if (m_position == begin)
        return false;
    return convertInPlace(begin, m_position, number) || convertByQt(begin, m_position, number);
}

// Arcs

/// Truncates toward zero; what does not fit becomes the smallest int, as the x86 processors have it.
int truncated(double value)
{
    const bool fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? int(value) : INT_MIN;
}

/// The numbers of an arc command, the end point made absolute.
struct Arc // NOLINT(cppcoreguidelines-pro-type-member-init) it is only made of all its values
{
    QPointF start;
    QPointF end;
    double rx;
    double ry;
    double rotation; ///< of the ellipse's x axis, in degrees
    int largeArcFlag;
    int sweepFlag;
};

/// Appends an elliptical arc as cubic Bezier segments of at most about a quarter turn each.
///
/// After SVG 1.1, F.6 (conversion from end point to centre parametrization). The start and the end point are
/// turned by the ellipse's rotation and scaled by its radii, so that the ellipse becomes a unit circle. Both
/// points lie on that circle, and d is the square of their distance. The circle's centre lies on the
/// perpendicular bisector of the two, sqrt(1 / d - 1 / 4) times their distance away from its foot, on the
/// side that the flags decide. Where the radii are too small to reach (lambda > 1) they are scaled up until
/// they just do.
///
/// A segment from the angle t0 to t1 = t0 + 2h has its inner control points on the tangents of its ends, at
/// the distance k = 8/3 sin(h/2)^2 / sin(h), by which the curve's middle lies on the circle.
///
/// The order of all operations is fixed: the results are the same to the last bit on every machine with the
/// same sin, cos, atan2 and sqrt. Divisions by zero are let through. They end in an angle that is not a
/// number, and then nothing is drawn.
void appendArc(QPainterPath& path, const Arc& arc)
{
    constexpr double radians_per_degree = 0.017453292519943295;
    constexpr double full_turn = 6.283185307179586;
    // A little more than a quarter turn: an arc of exactly one quarter must not fall into two segments.
    constexpr double longest_segment = 1.5717963267948964;

    const double sx = arc.start.x();
    const double sy = arc.start.y();
    const double ex = arc.end.x();
    const double ey = arc.end.y();

    const double theta = arc.rotation * radians_per_degree;
    const double sinTheta = std::sin(theta);
    const double cosTheta = std::cos(theta);

    const double dx = (sx - ex) * 0.5;
    const double dy = (sy - ey) * 0.5;
    const double xPrime = dx * cosTheta + sinTheta * dy;
    const double yPrime = dy * cosTheta - sinTheta * dx;
    const double lambda = xPrime * xPrime / (arc.rx * arc.rx) + yPrime * yPrime / (arc.ry * arc.ry);
    const double scale = lambda > 1 ? std::sqrt(lambda) : 1;
    const double rx = std::fabs(arc.rx) * scale;
    const double ry = std::fabs(arc.ry) * scale;

    // Into the unit circle's space.
    const double a00 = cosTheta / rx;
    const double a01 = sinTheta / rx;
    const double a10 = -sinTheta / ry;
    const double a11 = cosTheta / ry;
    const double x0 = a00 * sx + a01 * sy;
    const double y0 = a10 * sx + a11 * sy;
    const double x1 = a00 * ex + a01 * ey;
    const double y1 = a10 * ex + a11 * ey;

    const double d = (x1 - x0) * (x1 - x0) + (y1 - y0) * (y1 - y0);
    double w = 1 / d + (-0.25);
    if (w < 0)
        w = 0;
    double sigma = std::sqrt(w);
    if (arc.sweepFlag == arc.largeArcFlag)
        sigma = -sigma;
    const double xc = (x0 + x1) * 0.5 - sigma * (y1 - y0);
    const double yc = sigma * (x1 - x0) + (y0 + y1) * 0.5;

    const double alpha0 = std::atan2(y0 - yc, x0 - xc);
    const double alpha1 = std::atan2(y1 - yc, x1 - xc);
    double delta = alpha1 - alpha0;
    if (arc.sweepFlag != 0 && delta < 0)
        delta = delta + full_turn;
    else if (arc.sweepFlag == 0 && delta > 0)
        delta = delta + (-full_turn);

    const int segments = truncated(std::ceil(std::fabs(delta / longest_segment)));
    if (segments <= 0)
        return;

    // Back to user space.
    const double b00 = cosTheta * rx;
    const double b01 = -(sinTheta * ry);
    const double b10 = sinTheta * rx;
    const double b11 = cosTheta * ry;
    const auto toUserSpace = [=](double e, double f) {
        return QPointF(b00 * e + b01 * f, b10 * e + b11 * f);
    };

    double t0 = (0 * delta) / segments + alpha0;
    double sin0 = std::sin(t0);
    double cos0 = std::cos(t0);
    for (int i = 0; i < segments; ++i) {
        const double t1 = ((i + 1) * delta) / segments + alpha0;
        const double sin1 = std::sin(t1);
        const double cos1 = std::cos(t1);
        const double h = (t1 - t0) * 0.5;
        const double sinHalf = std::sin(h * 0.5);
        const double k = (sinHalf * 2.6666666666666665 * sinHalf) / std::sin(h);

        const double e1 = (xc + cos0) - k * sin0;
        const double f1 = (sin0 + yc) + cos0 * k;
        const double e3 = xc + cos1;
        const double f3 = yc + sin1;
        const double e2 = sin1 * k + e3;
        const double f2 = f3 - k * cos1;
        path.cubicTo(toUserSpace(e1, f1), toUserSpace(e2, f2), toUserSpace(e3, f3));

        t0 = t1;
        sin0 = sin1;
        cos0 = cos1;
    }
}

// Commands

/// Carries out commands on a path: the drawing state of SVG path data, with a handler for each command.
class PathBuilder
{
public:
    explicit PathBuilder(QPainterPath& path) : m_path(path) {}

    /// Begins a command, which need not exist as long as it gets no number.
    void beginCommand(QChar letter);

    /// Gives the command its next number, and carries it out when a group is complete.
    ///
    /// \return false when there is no such command.
    bool addNumber(double number);

    /// Ends the command. A group that is not complete is dropped.
    void endCommand();

private:
    /// Reads the numbers of one group; the base of its coordinates has been set.
    using Handler = void (PathBuilder::*)(const double* group);

    struct Command
    {
        char letter; ///< of the relative form
        std::size_t arity;
        Handler handler;
    };

    static const Command* find(QChar letter);
    void carryOutGroup();

    void moveTo(const double* group);
    void lineTo(const double* group);
    void horizontalLineTo(const double* group);
    void verticalLineTo(const double* group);
    void cubicTo(const double* group);
    void smoothCubicTo(const double* group);
    void quadTo(const double* group);
    void smoothQuadTo(const double* group);
    void arcTo(const double* group);
    void closeSubpath(const double* group);

    /// Adding a base of 0 in absolute commands is not idle: it turns -0 into +0.
    QPointF point(const double* pair) const { return {m_base.x() + pair[0], m_base.y() + pair[1]}; }

    bool lastCommandWas(char one, char other) const;
    QPointF reflectedControlPoint() const;
    void curveThrough(const QPointF& control1, const QPointF& control2, const QPointF& end);
    void curveThrough(const QPointF& control, const QPointF& end);

    QPainterPath& m_path;
    const Command* m_command = nullptr; ///< null where there is none of that letter
    bool m_relative = false;
    std::array<double, 7> m_numbers = {}; ///< of the group that is not complete yet
    std::size_t m_numberCount = 0;
    QPointF m_base; ///< of the group being carried out: (0, 0) or the current point
    QPointF m_currentPoint;
    QPointF m_subpathStart;
    QPointF m_lastControlPoint;
    char m_lastCommand = 0; ///< also of a group that was too short to be carried out
};

const PathBuilder::Command* PathBuilder::find(QChar letter)
{
    static constexpr std::array<Command, 10> commands = {{
        {'m', 2, &PathBuilder::moveTo},
        {'l', 2, &PathBuilder::lineTo},
        {'h', 1, &PathBuilder::horizontalLineTo},
        {'v', 1, &PathBuilder::verticalLineTo},
        {'c', 6, &PathBuilder::cubicTo},
        {'s', 4, &PathBuilder::smoothCubicTo},
        {'q', 4, &PathBuilder::quadTo},
        {'t', 2, &PathBuilder::smoothQuadTo},
        {'a', 7, &PathBuilder::arcTo},
        {'z', 1, &PathBuilder::closeSubpath},
    }};
    // For each ASCII character the place of its command in the table, counted from 1.
    static constexpr std::array<quint8, 128> places = [] {
        std::array<quint8, 128> result = {};
        for (std::size_t i = 0; i < commands.size(); ++i)
            result[static_cast<unsigned char>(commands[i].letter)] = quint8(i + 1);
        return result;
    }();

    const std::size_t lowerCase = letter.unicode() | 0x20u;
    const std::size_t place = lowerCase < places.size() ? places[lowerCase] : 0;
    return place > 0 ? &commands[place - 1] : nullptr;
}

void PathBuilder::beginCommand(QChar letter)
{
    m_command = find(letter);
    m_relative = (letter.unicode() & 0x20) != 0;
}

bool PathBuilder::addNumber(double number)
{
    if (!m_command)
        return false;
    m_numbers[m_numberCount++] = number;
    if (m_numberCount == m_command->arity)
        carryOutGroup();
    return true;
}

void PathBuilder::endCommand()
{
    // A closepath needs no number, but goes the way of all commands, which are carried out once for each
    // group. So it closes once more for each number that was given to it.
    if (m_command && m_command->letter == 'z')
        addNumber(0.0);

    // A group that is too short draws nothing, but what follows sees its command all the same.
    if (m_numberCount > 0)
        m_lastCommand = m_command->letter;
    m_numberCount = 0;
}

void PathBuilder::carryOutGroup()
{
    m_base = m_relative ? m_currentPoint : QPointF();
    (this->*m_command->handler)(m_numbers.data());
    m_numberCount = 0;
    m_lastCommand = m_command->letter;
    if (m_command->letter == 'm')
        m_command = find(QLatin1Char('l')); // the pairs after the first are linetos
}

void PathBuilder::moveTo(const double* group)
{
    m_currentPoint = point(group);
    m_subpathStart = m_currentPoint;
    m_path.moveTo(m_currentPoint);
}

void PathBuilder::lineTo(const double* group)
{
    m_currentPoint = point(group);
    m_path.lineTo(m_currentPoint);
}

void PathBuilder::horizontalLineTo(const double* group)
{
    m_currentPoint.setX(m_base.x() + group[0]);
    m_path.lineTo(m_currentPoint);
}

void PathBuilder::verticalLineTo(const double* group)
{
    m_currentPoint.setY(m_base.y() + group[0]);
    m_path.lineTo(m_currentPoint);
}

void PathBuilder::cubicTo(const double* group)
{
    curveThrough(point(group), point(group + 2), point(group + 4));
}

void PathBuilder::smoothCubicTo(const double* group)
{
    const QPointF control1 = lastCommandWas('c', 's') ? reflectedControlPoint() : m_currentPoint;
    curveThrough(control1, point(group), point(group + 2));
}

void PathBuilder::quadTo(const double* group)
{
    curveThrough(point(group), point(group + 2));
}

void PathBuilder::smoothQuadTo(const double* group)
{
    const QPointF control = lastCommandWas('q', 't') ? reflectedControlPoint() : m_currentPoint;
    curveThrough(control, point(group));
}

void PathBuilder::arcTo(const double* group)
{
    const QPointF end = point(group + 5);
    appendArc(m_path,
              {m_currentPoint, end, group[0], group[1], group[2], truncated(group[3]), truncated(group[4])});
    m_currentPoint = end;
}

void PathBuilder::closeSubpath(const double* /*group*/)
{
    m_path.closeSubpath();
    m_currentPoint = m_subpathStart;
}

bool PathBuilder::lastCommandWas(char one, char other) const
{
    return m_lastCommand == one || m_lastCommand == other;
}

QPointF PathBuilder::reflectedControlPoint() const
{
    return {m_currentPoint.x() + m_currentPoint.x() - m_lastControlPoint.x(),
            m_currentPoint.y() + m_currentPoint.y() - m_lastControlPoint.y()};
}

void PathBuilder::curveThrough(const QPointF& control1, const QPointF& control2, const QPointF& end)
{
    m_path.cubicTo(control1, control2, end);
    m_lastControlPoint = control2;
    m_currentPoint = end;
}

void PathBuilder::curveThrough(const QPointF& control, const QPointF& end)
{
    m_path.quadTo(control, end);
    m_lastControlPoint = control;
    m_currentPoint = end;
}

} // namespace

namespace Quillet {

bool parseSvgPathData(const QString& data, QPainterPath& path)
{
    Cursor cursor(data);
    PathBuilder builder(path);
    for (cursor.skipSpaces(); !cursor.atEnd(); cursor.skipSpaces()) {
        builder.beginCommand(cursor.takeUnit()); // whatever stands here, be it a digit or a comma
        cursor.skipSpaces();
        double number = 0;
        while (cursor.takeNumber(number)) {
            if (!builder.addNumber(number))
                return false;
            cursor.skipSeparator();
        }
        builder.endCommand();
    }
    return true;
}

} // namespace Quillet
