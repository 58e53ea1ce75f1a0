#include "GalleryWindow.h"
#include "Pictures.h"

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillet-gallery"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));

    const QCommandLineOption screenshots(
        QStringLiteral("screenshots"),
        QStringLiteral("Write a picture of every page and every dialog as PNG "
                       "files into <directory>, then end."),
        QStringLiteral("directory"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows what the Quillet library can do."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(screenshots);
    parser.process(application);

    if (parser.isSet(screenshots)) {
        // The same pictures on every machine that has the dialogs' font.
        QApplication::setStyle(QStringLiteral("Fusion"));
        QApplication::setFont(QFont(QStringLiteral("Open Sans"), 9));
        GalleryWindow window;
        return writePictures(window, parser.value(screenshots)) ? 0 : 1;
    }

    GalleryWindow window;
    window.show();
    return QApplication::exec();
}
