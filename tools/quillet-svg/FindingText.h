#pragma once

#include "Checker.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// "FILE:LINE:COLUMN: lost: what was found [rule]; what to do", as compilers write it.
QString lineFor(const QString& fileName, const Finding& finding);

QJsonObject jsonFor(const Finding& finding);
QJsonObject jsonFor(const QString& fileName, const Check& check);

/// "clean", "lossy" or "refused".
QString nameOf(Finding::Weight verdict);
