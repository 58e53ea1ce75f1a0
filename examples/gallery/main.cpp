#include "GalleryWindow.h"
#include "PictureSurroundings.h"
#include "Pictures.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

/// The parser's own answer comes too late, as it needs an application.
bool asksForPictures(int argc, char** argv)
{
    return std::any_of(argv, argv + argc, [](const QByteArray& argument) {
        return argument == "--screenshots" || argument.startsWith("--screenshots=");
    });
}

} // namespace

int main(int argc, char** argv)
{
    std::optional<PictureSurroundings> surroundings;
    if (asksForPictures(argc, argv))
        surroundings.emplace();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillet-gallery"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));

    const QCommandLineOption screenshots(
        QStringLiteral("screenshots"),
        QStringLiteral("Write a picture of every page, every dialog and every sample as "
                       "PNG files into <directory>, then end. Needs no display."),
        QStringLiteral("directory"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows what the Quillet library can do."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(screenshots);
    parser.addPositionalArgument(
        QStringLiteral("file"), QStringLiteral("An SVG file to show."), QStringLiteral("[file]"));
    parser.process(application);

    const QStringList files = parser.positionalArguments();
    if (files.size() > 1)
        parser.showHelp(1);
    const bool writes = parser.isSet(screenshots);
    if (writes && !files.isEmpty() && !QFileInfo(files.first()).isReadable()) {
        QTextStream(stderr) << "quillet-gallery: cannot read " << files.first() << '\n';
        return 1;
    }
    if (surroundings)
        surroundings->prepareApplication();

    GalleryWindow window;
    if (!files.isEmpty())
        window.openFile(files.first());
    if (writes)
        return writePictures(window, parser.value(screenshots)) ? 0 : 1;
    window.show();
    return QApplication::exec();
}
