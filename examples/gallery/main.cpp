#include "GalleryWindow.h"
#include "Pictures.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtWidgets/QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillet-gallery"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));

    const QCommandLineOption screenshots(
        QStringLiteral("screenshots"),
        QStringLiteral("Write a picture of every page, every dialog and every sample as "
                       "PNG files into <directory>, then end."),
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
    if (writes) {
        // The same pictures on every machine that has the dialogs' font.
        QApplication::setStyle(QStringLiteral("Fusion"));
        QApplication::setFont(QFont(QStringLiteral("Open Sans"), 9));
    }

    GalleryWindow window;
    if (!files.isEmpty())
        window.openFile(files.first());
    if (writes)
        return writePictures(window, parser.value(screenshots)) ? 0 : 1;
    window.show();
    return QApplication::exec();
}
