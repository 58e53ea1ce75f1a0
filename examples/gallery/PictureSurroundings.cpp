#include "PictureSurroundings.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTemporaryFile>
#include <QtCore/QTextStream>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <iterator>

/// The resources stand in a static library. The macro wants no namespace around it.
static void keepFontSettings()
{
    Q_INIT_RESOURCE(PictureSurroundings);
}

namespace {

const char* const font_files[] = {
    "/usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf",
    "/usr/share/fonts/truetype/open-sans/OpenSans-Bold.ttf",
};

constexpr int font_size = 13; // pixels

const char* const variables_that_change_pictures[] = {
    "QT_DEVICE_PIXEL_RATIO",
    "QT_FONT_DPI",
    "QT_QPA_PLATFORMTHEME",
    "QT_SCALE_FACTOR",
    "QT_SCREEN_SCALE_FACTORS",
};

bool areFontsInstalled()
{
    return std::all_of(std::begin(font_files), std::end(font_files), [](const char* file) {
        return QFileInfo::exists(QString::fromLatin1(file));
    });
}

} // namespace

PictureSurroundings::PictureSurroundings()
{
    // QApplication would do this; before it is done, Qt takes names of files for ASCII, and keeps to that.
    std::setlocale(LC_ALL, "");

    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* variable : variables_that_change_pictures)
        qunsetenv(variable);

    if (areFontsInstalled()) {
        keepFontSettings();
        m_fontSettings.reset(QTemporaryFile::createNativeFile(QStringLiteral(":/gallery/fonts.conf")));
        qputenv("FONTCONFIG_FILE", QFile::encodeName(m_fontSettings->fileName()));
    }
}

PictureSurroundings::~PictureSurroundings() = default;

void PictureSurroundings::prepareApplication()
{
    if (m_fontSettings) {
        for (const char* file : font_files)
            QFontDatabase::addApplicationFont(QString::fromLatin1(file));
    } else {
        QTextStream(stderr) << "quillet-gallery: the pictures show this machine's fonts; the same everywhere "
                               "are those of the Debian package fonts-open-sans\n";
    }
    QFont font(QStringLiteral("Open Sans"));
    font.setPixelSize(font_size);
    QApplication::setFont(font);

    QLocale::setDefault(QLocale::c());
    QApplication::setCursorFlashTime(0);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(QApplication::style()->standardPalette());
}
