// What reading path data costs beside three peers: the literal reader of the tests, which takes unit after
// unit; the floor, which only appends the elements that come out; and the part of Qt's SVG renderer that
// reads path data.

#include "../tests/LiteralPathReader.h"
#include "QtSvgPeer.h"
#include "Rounds.h"
#include "Work.h"

#include <Quillet/SvgPathParser.h>

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace {

void readOurs(const QStringList& data)
{
    for (const QString& text : data) {
        QPainterPath path;
        Quillet::parseSvgPathData(text, path);
        benchmark::DoNotOptimize(path);
    }
}

void readLiterally(const QStringList& data)
{
    for (const QString& text : data) {
        QPainterPath path;
        readPathDataLiterally(text, path);
        benchmark::DoNotOptimize(path);
    }
}

using Elements = std::vector<QPainterPath::Element>;

std::vector<Elements> record(const QStringList& data)
{
    std::vector<Elements> recorded;
    for (const QString& text : data) {
        QPainterPath path;
        Quillet::parseSvgPathData(text, path);
        Elements elements;
        for (int i = 0; i < path.elementCount(); ++i)
            elements.push_back(path.elementAt(i));
        recorded.push_back(std::move(elements));
    }
    return recorded;
}

void replay(const std::vector<Elements>& recorded)
{
    for (const Elements& elements : recorded) {
        QPainterPath path;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            if (elements[i].type == QPainterPath::MoveToElement) {
                path.moveTo(elements[i]);
            } else if (elements[i].type == QPainterPath::LineToElement) {
                path.lineTo(elements[i]);
            } else {
                path.cubicTo(elements[i], elements[i + 1], elements[i + 2]);
                i += 2;
            }
        }
        benchmark::DoNotOptimize(path);
    }
}

void compareWithReaderAndFloor(const WorkSet& set)
{
    const QStringList data = set.data();
    const auto recorded = record(data);
    compareInRounds(set.name,
                    {{"ours", [=] { readOurs(data); }},
                     {"literal", [=] { readLiterally(data); }},
                     {"floor", [=] { replay(recorded); }}},
                    {{"literal", "ours", "literal"}, {"floor", "ours", "floor"}},
                    15);
}

/// Files that Qt reads otherwise, or one of the two rejects, would be no comparison.
QStringList dataReadAlike(const WorkSet& set)
{
    QStringList data;
    std::size_t leftOut = 0;
    for (const WorkFile& file : set.files) {
        if (QtSvgPeer::readsAlike(file.data))
            data += file.data;
        else
            ++leftOut;
    }
    benchmark::AddCustomContext("left out beside Qt, " + set.name,
                                std::to_string(leftOut) + " of " + std::to_string(set.files.size()));
    return data;
}

/// Qt reads whole documents. What it takes more for one with the data than for one with empty data is its
/// path part, the reading of the longer attributes as XML included; the second ratio leaves that out by
/// giving the data to an attribute that Qt does not know.
void compareWithQt(const WorkSet& set)
{
    const QStringList data = dataReadAlike(set);
    if (data.isEmpty())
        return;
    QStringList empty = data;
    std::for_each(empty.begin(), empty.end(), [](QString& text) { text.clear(); });

    const QByteArray full = documentOf(data).toUtf8();
    const QByteArray emptied = documentOf(empty).toUtf8();
    const QByteArray renamed = QByteArray(full).replace(R"( d=")", R"( d="" data-d=")");
    compareInRounds(
        set.name + "/qt",
        {{"ours", [=] { readOurs(data); }},
         {"qt full", [=] { QtSvgPeer::load(full); }},
         {"qt emptied", [=] { QtSvgPeer::load(emptied); }},
         {"qt renamed", [=] { QtSvgPeer::load(renamed); }}},
        {{"qt", "ours", "qt full", "qt emptied"}, {"qt without XML", "ours", "qt full", "qt renamed"}},
        15);
}

void describe(const WorkSet& set)
{
    const QStringList data = set.data();
    qint64 size = 0;
    for (const QString& text : data)
        size += text.size();
    benchmark::AddCustomContext("set " + set.name,
                                std::to_string(set.files.size()) + " files, " + std::to_string(data.size())
                                    + " paths, " + std::to_string(size / 1000) + " kB of path data");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    // Qt's renderer warns about data that it does not like.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

    std::vector<WorkSet> sets = readFileSets();
    for (WorkSet& set : makeSyntheticSets())
        sets.push_back(std::move(set));
    for (const WorkSet& set : sets) {
        describe(set);
        compareWithReaderAndFloor(set);
        if (QtSvgPeer::isAvailable())
            compareWithQt(set);
    }
    if (!QtSvgPeer::isAvailable())
        std::fputs("Built without Qt SVG: its rows are left out.\n", stderr);
    return runRounds(argc, argv);
}
