#pragma once

class QString;

struct Timing
{
    double ours = 0;  ///< parseSvg(), in microseconds of the processor's time
    double floor = 0; ///< Qt's XML reader going through the same text, doing nothing with it
};

/// The floor is the time of QXmlStreamReader, for what it does not read to the end that of QDomDocument. Both
/// are the least times of several rounds. Where the ratio comes near \a limit, many more rounds are made
/// before it is believed: other processes may have had the caches.
Timing timingOf(const QString& text, double limit);
