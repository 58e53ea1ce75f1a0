#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTextStream>

/// Runs the command line \a arguments, the name of the program first, and gives back the exit status.
int runQuilletSvg(const QStringList& arguments, QTextStream& out, QTextStream& err);
