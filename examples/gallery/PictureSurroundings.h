#pragma once

#include <memory>

class QTemporaryFile;

/// All that pictures of widgets depend on besides the program, made the same on every machine that has the
/// Debian package fonts-open-sans: platform, resolution, style, colours, locale and glyphs. Nothing of it
/// depends on a display or on the user's settings.
class PictureSurroundings
{
public:
    /// Sets the environment that QApplication reads; construct it before one.
    PictureSurroundings();
    ~PictureSurroundings();

    /// Sets what only an application has.
    void prepareApplication();

private:
    std::unique_ptr<QTemporaryFile> m_fontSettings; ///< null where the package is not installed
};
