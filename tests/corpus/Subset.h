#pragma once

#include <QtCore/QRectF>
#include <QtCore/QStringList>
#include <QtXml/QDomDocument>

// Which documents Quillet must draw as SVG has it. Decided from docs/vector-paths.md and SVG 1.1 alone, never
// from what is drawn.

/// The rules by which Quillet's reading of a document differs from SVG's, as docs/vector-paths.md has them.
enum Rule : unsigned {
    FillRuleRule = 1,   ///< odd-even where a path has no fill rule of its own
    OpacityRule = 2,    ///< how opacities are inherited and multiplied
    ColourRule = 4,     ///< what is no colour for QColor switches fill or stroke off
    MiterLimitRule = 8, ///< limits are measured as Qt::MiterJoin measures them
    HairlineRule = 16,  ///< a stroke of width 0 is one pixel wide
};
using Rules = unsigned;

constexpr Rule all_rules[] = {FillRuleRule, OpacityRule, ColourRule, MiterLimitRule, HairlineRule};

/// For reports.
QString nameOf(Rule rule);

struct Judgement
{
    QStringList outside; ///< what the document has beyond the subset; empty where it stays within
    Rules rules = 0;     ///< the rules that may make a difference to this document
    QRectF area;         ///< the part of user space to be shown; null where the document does not say
};

/// Judges a well-formed document whose root element is named "svg".
///
/// Within the subset are documents of the root, groups and paths, with attributes that Quillet reads, with
/// values that are right by SVG 1.1, and with path data in which no arc's flag is written together with
/// what follows. Attributes and elements that draw nothing do not count.
Judgement judge(const QDomDocument& document);
