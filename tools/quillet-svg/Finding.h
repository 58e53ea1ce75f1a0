#pragma once

#include "XmlTree.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// Something to say about a place in a document.
struct Finding
{
    enum Weight {
        Note,    ///< worth knowing; the drawing is right
        Lost,    ///< the drawing is not what SVG says
        Refused, ///< the reader stops here
    };

    Weight weight = Note;
    Position position;
    QString rule;    ///< short name, the same for all findings of its kind
    QString message; ///< what was found
    QString advice;  ///< what to do about it

    /// Where the path data begins that holds it, of which more may be wrong in the same way; in the line 0
    /// for all other findings.
    Position series = {0, 0};
};

/// What to say about an entity that is not read.
Finding findingFor(const EntityReference& entity);

/// Puts the findings in the order of the document. What is found in a place more than once, since "use"
/// repeats it, is said once.
void sortFindings(QVector<Finding>& findings);
