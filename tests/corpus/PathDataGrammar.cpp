#include "PathDataGrammar.h"

namespace {

class Grammar
{
public:
    explicit Grammar(const QString& data) : m_position(data.constData()) {}

    PathDataTraits read()
    {
        skipSpaces();
        QChar command = letter();
        m_traits.isValid = m_position->isNull() || command == QLatin1Char('m');
        while (m_traits.isValid && !m_position->isNull()) {
            command = letter();
            ++m_position;
            m_traits.isValid = readArguments(command);
            skipSpaces();
        }
        return m_traits;
    }

private:
    QChar letter() const { return m_position->toLower(); }

    bool isSpace() const
    {
        return *m_position == QLatin1Char(' ') || *m_position == QLatin1Char('\t')
               || *m_position == QLatin1Char('\n') || *m_position == QLatin1Char('\r');
    }

    bool isDigit() const { return *m_position >= QLatin1Char('0') && *m_position <= QLatin1Char('9'); }

    bool isSign() const { return *m_position == QLatin1Char('+') || *m_position == QLatin1Char('-'); }

    bool isPoint() const { return *m_position == QLatin1Char('.'); }

    void skipSpaces()
    {
        while (isSpace())
            ++m_position;
    }

    /// \return whether there was one.
    bool skipSeparator()
    {
        const QChar* const begin = m_position;
        skipSpaces();
        if (*m_position == QLatin1Char(',')) {
            ++m_position;
            skipSpaces();
        }
        return m_position != begin;
    }

    bool skipDigits()
    {
        const QChar* const begin = m_position;
        while (isDigit())
            ++m_position;
        return m_position != begin;
    }

    bool readNumber(double* number = nullptr)
    {
        const QChar* const begin = m_position;
        if (isSign())
            ++m_position;
        bool hasDigits = skipDigits();
        if (isPoint()) {
            ++m_position;
            hasDigits = skipDigits() || hasDigits;
        }
        if (!hasDigits)
            return false;
        if (letter() == QLatin1Char('e')) {
            ++m_position;
            if (isSign())
                ++m_position;
            if (!skipDigits())
                return false;
        }
        if (number)
            *number = QString(begin, int(m_position - begin)).toDouble();
        return true;
    }

    bool readRadius()
    {
        double radius = 0;
        if (isSign() || !readNumber(&radius))
            return false;
        m_traits.hasFlatArcs = m_traits.hasFlatArcs || radius == 0;
        return true;
    }

    bool readFlag()
    {
        if (*m_position != QLatin1Char('0') && *m_position != QLatin1Char('1'))
            return false;
        ++m_position;
        m_traits.hasCompactFlags = m_traits.hasCompactFlags || isDigit() || isPoint();
        return true;
    }

    bool readNumbers(int count)
    {
        for (int i = 0; i < count; ++i) {
            if (i > 0)
                skipSeparator();
            if (!readNumber())
                return false;
        }
        return true;
    }

    bool readArc()
    {
        if (!readRadius())
            return false;
        skipSeparator();
        if (!readRadius())
            return false;
        skipSeparator();
        if (!readNumber() || !skipSeparator() || !readFlag())
            return false;
        skipSeparator();
        if (!readFlag())
            return false;
        skipSeparator();
        return readNumbers(2);
    }

    bool readGroup(QChar command)
    {
        switch (command.unicode()) {
        case 'm':
        case 'l':
        case 't':
            return readNumbers(2);
        case 'h':
        case 'v':
            return readNumbers(1);
        case 'c':
            return readNumbers(6);
        case 's':
        case 'q':
            return readNumbers(4);
        case 'a':
            return readArc();
        default:
            return false;
        }
    }

    bool readArguments(QChar command)
    {
        if (command == QLatin1Char('z'))
            return true;
        skipSpaces();
        do {
            if (!readGroup(command))
                return false;
            const QChar* const end = m_position;
            skipSeparator();
            if (!isDigit() && !isSign() && !isPoint()) {
                m_position = end; // no more groups: a comma here is an error
                return true;
            }
        } while (true);
    }

    const QChar* m_position; // up to the null that ends every QString's storage
    PathDataTraits m_traits;
};

} // namespace

PathDataTraits traitsOfPathData(const QString& data)
{
    return Grammar(data).read();
}
