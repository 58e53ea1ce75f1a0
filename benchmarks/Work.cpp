#include "Work.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtXml/QDomDocument>

#include <cstdio>
#include <functional>
#include <random>

namespace {

WorkFile fileOf(const QString& text)
{
    WorkFile file;
    file.text = text;
    QDomDocument document;
    document.setContent(text);
    const QDomNodeList paths = document.elementsByTagName(QStringLiteral("path"));
    for (int i = 0; i < paths.size(); ++i)
        file.data.append(paths.at(i).toElement().attribute(QStringLiteral("d")));
    return file;
}

QStringList sortedFiles(const QString& directory)
{
    QStringList names;
    QDirIterator files(directory, {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        names.append(files.next());
    names.sort();
    return names;
}

WorkSet readFileSet(const char* name)
{
    WorkSet set{name, {}};
    const QDir directory(QStringLiteral(BENCHMARK_DATA));
    const QStringList names = sortedFiles(directory.filePath(QString::fromLatin1(name)));
    for (const QString& fileName : names) {
        QFile file(fileName);
        if (file.open(QIODevice::ReadOnly))
            set.files.push_back(fileOf(QString::fromUtf8(file.readAll())));
    }
    if (set.files.empty())
        std::fprintf(stderr, "The set \"%s\" is missing; scripts/benchmark-data makes it.\n", name);
    return set;
}

/// Numbers that are the same on every machine, as those of the standard distributions are not.
class Numbers
{
public:
    /// From 0 to \a limit - 1.
    unsigned below(unsigned limit) { return unsigned(m_engine() % limit); }

    QString decimal() { return QString::number((int(below(2000000)) - 1000000) / 1000.0, 'f', 3); }
    QString integer() { return QString::number(int(below(20000)) - 10000); }
    QString flag() { return QString::number(below(2)); }

    /// 17 digits, as printed by programs that want to lose no bit.
    QString longDecimal()
    {
        const quint64 digits = quint64(10000000) * (100000000 + below(900000000)) + below(10000000);
        const QString text = QString::number(digits) + QString::number(below(10));
        return text.left(3) + QLatin1Char('.') + text.mid(3);
    }

private:
    std::mt19937 m_engine; // its default seed is fixed
};

/// Path data of \a count numbers: a moveto and linetos.
QString polyline(int count, const std::function<QString()>& number)
{
    QString data;
    for (int i = 0; i < count; i += 2)
        data += (i == 0 ? QStringLiteral("M") : QStringLiteral(" ")) + number() + QLatin1Char(',') + number();
    return data;
}

// Several paths, because Qt's renderer stops reading one that has too many elements.

QStringList polylines(int count, const std::function<QString()>& number)
{
    constexpr int numbers_per_path = 1000;
    QStringList data;
    for (int i = 0; i < count; i += numbers_per_path)
        data += polyline(numbers_per_path, number);
    return data;
}

QStringList arcs(int count)
{
    constexpr int arcs_per_path = 1000;
    Numbers numbers;
    QStringList data;
    for (int i = 0; i < count; ++i) {
        if (i % arcs_per_path == 0)
            data += QStringLiteral("M0 0");
        data.last() += QStringLiteral("a%1 %2 %3 %4 %5 %6 %7")
                           .arg(QString::number(1 + numbers.below(100)),
                                QString::number(1 + numbers.below(100)),
                                QString::number(numbers.below(360)),
                                numbers.flag(),
                                numbers.flag(),
                                numbers.decimal(),
                                numbers.decimal());
    }
    return data;
}

WorkSet syntheticSet(const char* name, const QStringList& data)
{
    return {name, {{documentOf(data), data}}};
}

} // namespace

QStringList WorkSet::data() const
{
    QStringList all;
    for (const WorkFile& file : files)
        all += file.data;
    return all;
}

std::vector<WorkSet> readFileSets()
{
    std::vector<WorkSet> sets;
    for (const char* name : {"icons", "web-icons", "clipart", "maps"}) {
        WorkSet set = readFileSet(name);
        if (!set.files.empty())
            sets.push_back(std::move(set));
    }
    return sets;
}

std::vector<WorkSet> makeSyntheticSets()
{
    Numbers numbers;
    return {
        syntheticSet("decimals", polylines(1000000, [&] { return numbers.decimal(); })),
        syntheticSet("integers", polylines(1000000, [&] { return numbers.integer(); })),
        syntheticSet("arcs", arcs(200000)),
        syntheticSet("17-digits", polylines(500000, [&] { return numbers.longDecimal(); })),
        makeTinyPaths(),
    };
}

WorkSet makeTinyPaths()
{
    Numbers numbers;
    QStringList data;
    for (int i = 0; i < 100000; ++i)
        data += QStringLiteral("M%1 %2h8l-4 6z").arg(numbers.below(1000)).arg(numbers.below(1000));
    return {"tiny-paths", {{documentOf(data), data}}};
}

QString makeDocument(int size)
{
    Numbers numbers;
    QString text = QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\">");
    while (text.size() < size) {
        text += QStringLiteral("\n  <g stroke=\"#336699\" stroke-width=\"0.5px\">\n    <path d=\"M")
                + numbers.decimal() + QLatin1Char(' ') + numbers.decimal() + QStringLiteral(" C")
                + polyline(60, [&] { return numbers.decimal(); }).mid(1)
                + QStringLiteral("z\" fill=\"#ffcc00\" fill-rule=\"evenodd\"/>\n  </g>");
    }
    return text + QStringLiteral("\n</svg>\n");
}

QString documentOf(const QStringList& data)
{
    QString text = QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\">");
    for (int i = 0; i < data.size(); ++i)
        text += QStringLiteral("<path id=\"p%1\" d=\"").arg(i) + data.at(i).toHtmlEscaped()
                + QStringLiteral("\"/>");
    return text + QStringLiteral("</svg>");
}
