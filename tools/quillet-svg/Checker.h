#pragma once

#include "Document.h"
#include "Finding.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// What the library's reader makes of a document.
struct Check
{
    bool accepted = false; ///< what parseSvg() answered
    int shapes = 0;        ///< that it appended
    QVector<Finding> findings;

    /// The weight of the gravest finding.
    Finding::Weight verdict() const;
};

/// Reads \a text with the library, and names what of it is refused, ignored or drawn otherwise than SVG says.
Check checkSvg(const QString& text);

/// Likewise, and names what of the file's bytes is not read as it stands there.
Check checkDocument(const Document& document);

/// What of the file's bytes is not read as it stands there.
QVector<Finding> checkBytes(const Document& document);
