#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <vector>

/// One document of a work set.
struct WorkFile
{
    QString text;
    QStringList data; ///< the attribute "d" of each path
};

/// What the contenders of one comparison are given to do.
struct WorkSet
{
    std::string name;
    std::vector<WorkFile> files;

    QStringList data() const;
};

/// The sets of SVG files that scripts/benchmark-data has made; says so on stderr where one is missing.
std::vector<WorkSet> readFileSets();

/// Sets of one file each, the same in every run.
std::vector<WorkSet> makeSyntheticSets();

/// A document of 100,000 paths of one triangle each.
WorkSet makeTinyPaths();

/// A document of paths of a few curves each, as drawing programs write them, of about \a size characters.
QString makeDocument(int size);

/// A document that holds nothing but these paths. Their ids count up from "p0".
QString documentOf(const QStringList& data);
