#pragma once

#include "Console.h"

#include <QtCore/QStringList>

struct CheckOptions
{
    bool asJson = false;
    bool withNotes = false;
    bool onlySummary = false;
};

/// Checks the files and the directories \a names. \return the exit status.
int runCheck(const QStringList& names, const CheckOptions& options, Console& console);
