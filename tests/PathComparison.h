#pragma once

#include <QtCore/QString>
#include <QtGui/QPainterPath>

/// Where two paths differ, element by element and bit by bit; empty if they are the same.
QString firstDifference(const QPainterPath& actual, const QPainterPath& expected);
