#pragma once

#include "Finding.h"

#include <QtCore/QString>
#include <QtCore/QTextStream>

/// Where the program says what came of a command. Each error is one line, and gives the exit status.
class Console
{
public:
    Console(QTextStream& out, QTextStream& err) : m_out(out), m_err(err) {}

    QTextStream& out() { return m_out; }
    QTextStream& err() { return m_err; }

    /// Where a command reports that writes a file named \a output: not into what it writes.
    QTextStream& reportBeside(const QString& output);

    int misused(const QString& why);
    int failed(const QString& why);
    int unread(const QString& fileName, const QString& why);
    int unwritten(const QString& fileName, const QString& why);
    int refused(const QString& fileName, const Position& position, const QString& why);

private:
    QTextStream& m_out;
    QTextStream& m_err;
};

/// How a file that is read is called: "<stdin>" for "-".
QString nameOfInput(const QString& fileName);
