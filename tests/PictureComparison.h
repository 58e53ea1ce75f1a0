#pragma once

#include <QtCore/QString>
#include <QtGui/QImage>

/// What the comparison of pictures lets pass. A pixel counts whose red, green, blue or alpha is off by more
/// than the first; a picture fails in which more than the second of all pixels count, or more than the third
/// in number. tests/README.md says why these.
constexpr int channel_tolerance = 8;
constexpr double pixels_tolerance = 1.0 / 10000;
constexpr int most_pixels = 10;

/// How \a actual differs from the picture stored as \a storedFile; empty if it does so within the tolerance.
/// If not, a picture that shows where is written as \a differenceFile, and the answer names it. It has three
/// parts, from left to right: the stored picture, the actual one, and a map that is white where they are the
/// same, grey where they differ within the tolerance of a channel and red where they differ more.
QString pictureDifference(const QImage& actual, const QString& storedFile, const QString& differenceFile);
