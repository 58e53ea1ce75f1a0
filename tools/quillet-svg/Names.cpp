#include "Names.h"

#include <algorithm>

bool isOneOf(const QString& name, std::initializer_list<const char*> names)
{
    return std::any_of(
        names.begin(), names.end(), [&](const char* each) { return name == QLatin1String(each); });
}

bool isShape(const QString& name)
{
    return isOneOf(name, {"path", "rect", "circle", "ellipse", "line", "polyline", "polygon", "use"});
}

bool isGeometry(const QString& attribute)
{
    return isOneOf(attribute,
                   {"x",
                    "y",
                    "width",
                    "height",
                    "cx",
                    "cy",
                    "r",
                    "rx",
                    "ry",
                    "x1",
                    "y1",
                    "x2",
                    "y2",
                    "d",
                    "points",
                    "pathLength"});
}

bool isContainer(const QString& name)
{
    return isOneOf(name, {"svg", "g", "a", "switch"});
}

bool isAnimation(const QString& name)
{
    return isOneOf(name, {"animate", "animateColor", "animateMotion", "animateTransform", "set", "mpath"});
}

bool isPicture(const QString& name)
{
    return isOneOf(name, {"image", "text", "foreignObject", "video", "audio", "iframe", "canvas"});
}

bool isElementOfSvg(const QString& name)
{
    return isShape(name) || isContainer(name) || isAnimation(name) || isPicture(name)
           || name.startsWith(QLatin1String("fe")) || name.startsWith(QLatin1String("font"))
           || name.startsWith(QLatin1String("glyph"))
           || isOneOf(name, {"altGlyphDef",    "clipPath", "color-profile", "cursor",         "defs",
                             "desc",           "filter",   "hkern",         "linearGradient", "link",
                             "marker",         "mask",     "metadata",      "missing-glyph",  "pattern",
                             "radialGradient", "script",   "solidcolor",    "stop",           "style",
                             "symbol",         "textPath", "title",         "tref",           "tspan",
                             "view",           "vkern"});
}
