#include "PictureComparison.h"
#include "TestCase.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

namespace {

const QString stored_directory = QStringLiteral(STORED_DIRECTORY);
const QString work_directory = QStringLiteral(WORK_DIRECTORY);

QStringList picturesIn(const QDir& directory)
{
    return directory.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
}

struct Variable
{
    QString name;
    QString value;
};

/// Has the gallery paint its pictures into \a directory.
///
/// \return what it wrote on its standard error stream, if it failed
QByteArray paint(const QDir& directory, const Variable& variable = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!variable.name.isEmpty())
        environment.insert(variable.name, variable.value);
    QProcess gallery;
    gallery.setProcessEnvironment(environment);
    gallery.setStandardOutputFile(QProcess::nullDevice());
    gallery.start(QStringLiteral(GALLERY_FILE), {QStringLiteral("--screenshots"), directory.path()});
    gallery.waitForFinished(-1);
    const bool succeeded = gallery.exitStatus() == QProcess::NormalExit && gallery.exitCode() == 0;
    return succeeded ? QByteArray() : "the gallery failed:\n" + gallery.readAllStandardError();
}

} // namespace

// The pictures of the guides are compared with those that the gallery paints now.
class TestPictures : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!QFile::exists(QStringLiteral("/usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf"))) {
            // What QSKIP() does; with a reason alone, that is no standard C++.
            return QTest::qSkip("the pictures show the fonts of the Debian package fonts-open-sans, which is "
                                "not installed",
                                __FILE__,
                                __LINE__);
        }
        QVERIFY(QDir(work_directory).removeRecursively());
        QCOMPARE(paint(m_painted), QByteArray());
    }

    void theGalleryPaintsThePicturesThatAreStored_data()
    {
        QTest::addColumn<QString>("fileName");
        QStringList names = picturesIn(m_painted) + picturesIn(stored_directory);
        names.removeDuplicates();
        for (const QString& name : qAsConst(names))
            QTest::newRow(qPrintable(QString(name).remove(QStringLiteral(".png")))) << name;
    }

    void theGalleryPaintsThePicturesThatAreStored()
    {
        QFETCH(const QString, fileName);
        QVERIFY2(m_painted.exists(fileName), "it is stored, and the gallery does not paint it");
        const QString difference =
            pictureDifference(QImage(m_painted.filePath(fileName)),
                              QDir(stored_directory).filePath(fileName),
                              QDir(work_directory).filePath(QStringLiteral("differences/") + fileName));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    void theMachineDoesNotShowInThePictures_data()
    {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("value");
        const auto row = [](const char* variable, const char* value) {
            QTest::newRow(variable) << QString::fromLatin1(variable) << QString::fromLatin1(value);
        };
        row("FONTCONFIG_FILE", "/usr/share/fontconfig/conf.avail/10-no-antialias.conf");
        row("LC_ALL", "ar_EG.UTF-8");
        row("QT_DEVICE_PIXEL_RATIO", "2");
        row("QT_FONT_DPI", "192");
        row("QT_QPA_PLATFORM", "none such");
        row("QT_SCALE_FACTOR", "2");
        row("QT_SCREEN_SCALE_FACTORS", "2");
        row("QT_STYLE_OVERRIDE", "windows");
    }

    void theMachineDoesNotShowInThePictures()
    {
        QFETCH(const QString, variable);
        QFETCH(const QString, value);
        const QTemporaryDir temporary;
        const QDir directory(temporary.path());
        QCOMPARE(paint(directory, {variable, value}), QByteArray());
        QCOMPARE(picturesIn(directory), picturesIn(m_painted));
        const QStringList names = picturesIn(directory);
        for (const QString& name : names) {
            const bool same = QImage(directory.filePath(name)) == QImage(m_painted.filePath(name));
            QVERIFY2(same, qPrintable(name));
        }
    }

private:
    QDir m_painted = QDir(work_directory).filePath(QStringLiteral("painted"));
};

QUILLET_GUILESS_TEST_MAIN(TestPictures)
#include "tst_Pictures.moc"
