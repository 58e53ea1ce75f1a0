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

bool isDefinition(const QString& name)
{
    return isOneOf(name, {"defs", "symbol", "clipPath", "mask", "pattern", "marker"});
}

bool isAnimation(const QString& name)
{
    return isOneOf(
        name, {"animate", "animateColor", "animateMotion", "animateTransform", "set", "mpath", "script"});
}

bool isPicture(const QString& name)
{
    return isOneOf(name, {"image", "text", "foreignObject", "video", "audio", "iframe", "canvas"});
}

bool isElementOfSvg(const QString& name)
{
    return isShape(name) || isDefinition(name) || isAnimation(name) || isPicture(name)
           || name.startsWith(QLatin1String("fe")) || name.startsWith(QLatin1String("font"))
           || name.startsWith(QLatin1String("glyph")) || isOneOf(name, {"svg",
                                                                        "g",
                                                                        "a",
                                                                        "switch",
                                                                        "style",
                                                                        "linearGradient",
                                                                        "radialGradient",
                                                                        "stop",
                                                                        "desc",
                                                                        "filter",
                                                                        "title",
                                                                        "color-profile",
                                                                        "metadata",
                                                                        "hkern",
                                                                        "view",
                                                                        "cursor",
                                                                        "vkern",
                                                                        "missing-glyph",
                                                                        "solidcolor",
                                                                        "tspan",
                                                                        "tref",
                                                                        "textPath",
                                                                        "link",
                                                                        "altGlyphDef"});
}
