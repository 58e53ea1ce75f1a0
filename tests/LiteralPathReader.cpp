#include "LiteralPathReader.h"

#include <cmath>
#include <limits>
#include <vector>

namespace {

struct Reader
{
    const QString& text;
    QPainterPath& path;

    int position = 0;
    std::vector<double> numbers;
    QChar command;
    QChar lastCommand;
    double currentX = 0, currentY = 0;
    double subpathX = 0, subpathY = 0;
    double controlX = 0, controlY = 0;

    // The text is followed by a null, and nothing is read behind it.
    QChar unit() const { return position < text.size() ? text.at(position) : QChar(); }

    void skipSpaces()
    {
        while (unit().isSpace())
            position = position + 1;
    }

    QString scanToken()
    {
        QString token;
        token.reserve(1079);
        if (unit() == QLatin1Char('+') || unit() == QLatin1Char('-'))
            takeInto(token);
        while (unit().isDigit())
            takeInto(token);
        if (unit() == QLatin1Char('.'))
            takeInto(token);
        while (unit().isDigit())
            takeInto(token);
        if (unit() == QLatin1Char('e') || unit() == QLatin1Char('E')) {
            takeInto(token);
            if (unit() == QLatin1Char('+') || unit() == QLatin1Char('-'))
                takeInto(token);
            while (unit().isDigit())
                takeInto(token);
        }
        return token;
    }

    void takeInto(QString& token)
    {
        token.append(unit());
        position = position + 1;
    }

    bool read()
    {
        if (text.isEmpty())
            return true;
        numbers.reserve(8);
        while (true) {
            skipSpaces();
            if (position == text.size())
                return true;
            command = unit();
            position = position + 1;
            numbers.clear();
            skipSpaces();
            while (true) {
                bool ok = false;
                const double value = scanToken().toDouble(&ok);
                if (!ok)
                    break;
                numbers.push_back(value);
                skipSpaces();
                if (unit() == QLatin1Char(','))
                    position = position + 1;
                skipSpaces();
            }
            if (command == QLatin1Char('Z') || command == QLatin1Char('z'))
                numbers.push_back(0.0);
            if (!numbers.empty() && !carryOut())
                return false;
            if (position == text.size())
                return true;
        }
    }

    bool is(char upper, char lower) const
    {
        return command == QLatin1Char(upper) || command == QLatin1Char(lower);
    }

    bool lastWas(const char* letters) const
    {
        return !lastCommand.isNull() && QString::fromLatin1(letters).contains(lastCommand);
    }

    bool carryOut()
    {
        std::size_t next = 0;
        while (next < numbers.size()) {
            std::size_t needed = 0;
            if (is('M', 'm') || is('L', 'l') || is('T', 't'))
                needed = 2;
            else if (is('H', 'h') || is('V', 'v') || is('Z', 'z'))
                needed = 1;
            else if (is('C', 'c'))
                needed = 6;
            else if (is('S', 's') || is('Q', 'q'))
                needed = 4;
            else if (is('A', 'a'))
                needed = 7;
            else
                return false;

            if (numbers.size() - next < needed) {
                next = numbers.size();
            } else {
                apply(&numbers[next]);
                next = next + needed;
            }
            lastCommand = command;
        }
        return true;
    }

    void apply(const double* g)
    {
        const bool relative = command.isLower();
        const double baseX = relative ? currentX : 0.0;
        const double baseY = relative ? currentY : 0.0;
        const double reflectedX = currentX + currentX - controlX;
        const double reflectedY = currentY + currentY - controlY;

        if (is('M', 'm')) {
            currentX = baseX + g[0];
            currentY = baseY + g[1];
            subpathX = currentX;
            subpathY = currentY;
            path.moveTo(QPointF(currentX, currentY));
            command = relative ? QLatin1Char('l') : QLatin1Char('L');
        } else if (is('L', 'l')) {
            currentX = baseX + g[0];
            currentY = baseY + g[1];
            path.lineTo(QPointF(currentX, currentY));
        } else if (is('H', 'h')) {
            currentX = baseX + g[0];
            path.lineTo(QPointF(currentX, currentY));
        } else if (is('V', 'v')) {
            currentY = baseY + g[0];
            path.lineTo(QPointF(currentX, currentY));
        } else if (is('C', 'c')) {
            const QPointF c1(baseX + g[0], baseY + g[1]);
            const QPointF c2(baseX + g[2], baseY + g[3]);
            const QPointF p(baseX + g[4], baseY + g[5]);
            cubic(c1, c2, p);
        } else if (is('S', 's')) {
            const bool reflect = lastWas("CScs");
            const QPointF c1 = reflect ? QPointF(reflectedX, reflectedY) : QPointF(currentX, currentY);
            const QPointF c2(baseX + g[0], baseY + g[1]);
            const QPointF p(baseX + g[2], baseY + g[3]);
            cubic(c1, c2, p);
        } else if (is('Q', 'q')) {
            const QPointF cp(baseX + g[0], baseY + g[1]);
            const QPointF p(baseX + g[2], baseY + g[3]);
            quad(cp, p);
        } else if (is('T', 't')) {
            const bool reflect = lastWas("QTqt");
            const QPointF cp = reflect ? QPointF(reflectedX, reflectedY) : QPointF(currentX, currentY);
            const QPointF p(baseX + g[0], baseY + g[1]);
            quad(cp, p);
        } else if (is('A', 'a')) {
            arc(g, baseX + g[5], baseY + g[6]);
        } else {
            path.closeSubpath();
            currentX = subpathX;
            currentY = subpathY;
        }
    }

    void cubic(const QPointF& c1, const QPointF& c2, const QPointF& p)
    {
        path.cubicTo(c1, c2, p);
        controlX = c2.x();
        controlY = c2.y();
        currentX = p.x();
        currentY = p.y();
    }

    void quad(const QPointF& cp, const QPointF& p)
    {
        path.quadTo(cp, p);
        controlX = cp.x();
        controlY = cp.y();
        currentX = p.x();
        currentY = p.y();
    }

    static qint32 toInt32(double value)
    {
        const double whole = std::trunc(value);
        if (std::isnan(whole) || whole < -2147483648.0 || whole > 2147483647.0)
            return std::numeric_limits<qint32>::min();
        return qint32(whole);
    }

    void arc(const double* g, double ex, double ey)
    {
        const double sx = currentX;
        const double sy = currentY;
        currentX = ex;
        currentY = ey;

        const qint32 large = toInt32(g[3]);
        const qint32 sweep = toInt32(g[4]);
        const double theta = g[2] * 0.017453292519943295;
        const double st = sin(theta);
        const double ct = cos(theta);
        const double dx = (sx - ex) * 0.5;
        const double dy = (sy - ey) * 0.5;
        const double xp = dx * ct + st * dy;
        const double yp = dy * ct - st * dx;
        const double lambda = (xp * xp) / (g[0] * g[0]) + (yp * yp) / (g[1] * g[1]);
        double rx = fabs(g[0]);
        double ry = fabs(g[1]);
        if (lambda > 1) {
            rx = fabs(g[0]) * sqrt(lambda);
            ry = fabs(g[1]) * sqrt(lambda);
        }
        const double a00 = ct / rx;
        const double a01 = st / rx;
        const double a10 = -st / ry;
        const double a11 = ct / ry;
        const double x0 = a00 * sx + a01 * sy;
        const double y0 = a10 * sx + a11 * sy;
        const double x1 = a00 * ex + a01 * ey;
        const double y1 = a10 * ex + a11 * ey;
        const double d = (x1 - x0) * (x1 - x0) + (y1 - y0) * (y1 - y0);
        double w = 1.0 / d + (-0.25);
        if (w < 0)
            w = 0;
        double sigma = sqrt(w);
        if (sweep == large)
            sigma = -sigma;
        const double xc = (x0 + x1) * 0.5 - sigma * (y1 - y0);
        const double yc = sigma * (x1 - x0) + (y0 + y1) * 0.5;
        const double alpha0 = atan2(y0 - yc, x0 - xc);
        const double alpha1 = atan2(y1 - yc, x1 - xc);
        double delta = alpha1 - alpha0;
        if (sweep != 0 && delta < 0)
            delta = delta + 6.283185307179586;
        else if (sweep == 0 && delta > 0)
            delta = delta + (-6.283185307179586);
        const qint32 n = toInt32(ceil(fabs(delta / 1.5717963267948964)));
        if (n <= 0)
            return;

        const double b00 = ct * rx;
        const double b01 = -(st * ry);
        const double b10 = st * rx;
        const double b11 = ct * ry;
        for (qint32 i = 0; i <= n - 1; ++i) {
            const double t0 = (double(i) * delta) / double(n) + alpha0;
            const double t1 = ((double(i) + 1) * delta) / double(n) + alpha0;
            const double h = (t1 - t0) * 0.5;
            const double k = (sin(h * 0.5) * 2.6666666666666665 * sin(h * 0.5)) / sin(h);
            const double e1 = (xc + cos(t0)) - k * sin(t0);
            const double f1 = (sin(t0) + yc) + cos(t0) * k;
            const double e3 = xc + cos(t1);
            const double f3 = yc + sin(t1);
            const double e2 = sin(t1) * k + e3;
            const double f2 = f3 - k * cos(t1);
            path.cubicTo(QPointF(b00 * e1 + b01 * f1, b10 * e1 + b11 * f1),
                         QPointF(b00 * e2 + b01 * f2, b10 * e2 + b11 * f2),
                         QPointF(b00 * e3 + b01 * f3, b10 * e3 + b11 * f3));
        }
    }
};

} // namespace

bool readPathDataLiterally(const QString& data, QPainterPath& path)
{
    Reader reader{data, path, 0, {}, {}, {}, 0, 0, 0, 0, 0, 0};
    return reader.read();
}
