#pragma once

#include "Finding.h"
#include "Style.h"
#include "StyleSheet.h"

#include <QtCore/QCache>
#include <QtCore/QVector>

/// What attributes, style sheets and styles say about the elements of a document (SVG 1.1, 6).
class Cascade
{
public:
    explicit Cascade(const XmlTree& tree);

    /// What of the style sheets is not followed, and which elements have too many properties.
    const QVector<Finding>& findings() const { return m_findings; }

    /// The properties of the element \a i and its other attributes that matter for the drawing, each once.
    /// \a around are those of the element that it is drawn in, for values that are "inherit".
    QVector<Declaration> propertiesOf(int i, const QVector<Declaration>& around) const;

    /// The properties in styles that only a later edition of SVG has: the geometry of shapes.
    QVector<Declaration> geometryOf(int i) const;

private:
    QVector<Declaration> stylesOf(int i) const;
    void read(const XmlElement& style);
    void say(const Position& position, const char* rule, const QString& message, const QString& advice);

    const QVector<XmlElement>& m_elements;
    StyleSheet m_styleSheet;
    mutable QCache<int, QVector<Declaration>> m_styles{200000}; ///< by elements; counted are declarations
    QVector<Finding> m_findings;
};
