#include "Console.h"

#include "Document.h"
#include "ExitStatus.h"
#include "FindingText.h"

QTextStream& Console::reportBeside(const QString& output)
{
    return isStandardStream(output) ? m_err : m_out;
}

int Console::misused(const QString& why)
{
    m_err << "quillet-svg: " << printable(why.simplified()) << "; see quillet-svg --help\n";
    return WrongArguments;
}

int Console::failed(const QString& why)
{
    m_err << "quillet-svg: " << why << '\n';
    return NoAccess;
}

int Console::unread(const QString& fileName, const QString& why)
{
    m_err << "quillet-svg: " << printable(nameOfInput(fileName)) << ": " << why << '\n';
    return NoAccess;
}

int Console::unwritten(const QString& fileName, const QString& why)
{
    const QString name = isStandardStream(fileName) ? QStringLiteral("<stdout>") : fileName;
    m_err << "quillet-svg: " << printable(name) << ": " << why << '\n';
    return NoAccess;
}

int Console::refused(const QString& fileName, const Position& position, const QString& why)
{
    m_err << printable(nameOfInput(fileName)) << ':' << position.line << ':' << position.column
          << ": refused: " << printable(why.simplified()) << '\n';
    return NotAccepted;
}

QString nameOfInput(const QString& fileName)
{
    return isStandardStream(fileName) ? QStringLiteral("<stdin>") : fileName;
}
