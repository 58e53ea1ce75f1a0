#pragma once

#include "Subset.h"

namespace Quillet {
class PainterPathContainer;
} // namespace Quillet

// Takes a rule's difference away, so that a picture shows whether the rule is what made it.

/// A document within the subset as it has to be for Quillet to read what SVG means, as far as \a rules can be
/// met so: FillRuleRule, ColourRule.
QDomDocument rewrittenForQuillet(const QDomDocument& document, Rules rules);

/// A document within the subset with opacities that mean to SVG what these mean to Quillet, where \a rules
/// has OpacityRule.
QDomDocument rewrittenForSvg(const QDomDocument& document, Rules rules);

/// Has pens measure miter limits as SVG does, and none draw lines of no width, as far as \a rules say.
void adjustPens(Quillet::PainterPathContainer& picture, Rules rules);
