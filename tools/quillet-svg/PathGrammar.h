#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// One segment of path data.
struct PathSegment
{
    QChar command;               ///< of a line behind the first pair of a move: L or l
    QStringList numbers;         ///< as written
    int offset = 0;              ///< of the command, or of the first number where the command is not repeated
    bool hasJoinedFlags = false; ///< an arc whose flags stand against what follows them
    QVector<int> numberOffsets = {}; ///< of the numbers, in the path data
};

/// Path data as the grammar of SVG 1.1, 8.3.9, reads it.
struct PathReading
{
    QVector<PathSegment> segments; ///< up to the error, if there is one
    int errorOffset = -1;          ///< -1: none
    QString error;
};

PathReading readPathData(const QString& data);

/// Follows the current point through path data (SVG 1.1, 8.3).
class CurrentPoint
{
public:
    /// \return whether \a segment ends elsewhere than it begins.
    bool follow(const PathSegment& segment);

    QPointF at() const { return m_point; }

private:
    QPointF m_point;
    QPointF m_start;
};

/// Whether \a segment is an arc with a radius of zero, which makes it a line (SVG 1.1, F.6.2).
bool isFlatArc(const PathSegment& segment);

/// Whether \a segment is an arc with a sign at a radius. The grammar has none; by F.6.2 it is to be dropped,
/// so it does not count as an error here.
bool hasSignedRadius(const PathSegment& segment);

/// What begins with a move, or behind a segment that closes the subpath in front of it.
struct Subpath
{
    int begin; ///< index of its first segment
    int end;   ///< index behind its last
    QPointF start;
    bool isDot; ///< it has segments, and none has a length: SVG draws the caps of such a line
};

/// The subpaths of \a reading. A segment has a length where Qt finds one; what has none it does not draw.
QVector<Subpath> subpathsOf(const PathReading& reading);

/// The same path with every command and number apart. Flat arcs become lines.
QString spelledOut(const PathReading& reading, int segmentCount);

/// The points of a polygon (SVG 1.1, 9.7.1).
struct PointsReading
{
    QStringList numbers;  ///< up to the error, if there is one; two for each point
    int errorOffset = -1; ///< -1: none
    QString error;
};

PointsReading readPoints(const QString& points);
