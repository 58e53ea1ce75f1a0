#pragma once

#include <Checker.h>
#include <Converter.h>

#include <QtCore/QString>
#include <QtGui/QImage>

/// An SVG document, what is found in it, and what becomes of it when it is converted.
struct ConvertedDocument
{
    QString error; ///< why there is nothing else; empty if there is
    Check check;
    Conversion conversion;
    QImage original;  ///< what Qt's renderer draws; null if that is nothing
    QImage asItIs;    ///< what the library draws of the original
    QImage converted; ///< what the library draws of the conversion
};

/// Reads, checks and converts a file, and draws pictures with longer sides of \a size on white.
ConvertedDocument convertDocument(const QString& fileName, int size);
