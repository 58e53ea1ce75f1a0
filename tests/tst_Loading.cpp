#include "Allocations.h"
#include "TestCase.h"

#include <QtCore/QFile>
#include <QtCore/QLibrary>
#include <QtCore/QTranslator>
#include <QtWidgets/QLabel>

#include <link.h>

namespace {

const QString library_file = QStringLiteral(QUILLET_LIBRARY_FILE);
const QString module_file = QStringLiteral(LATE_HOST_MODULE_FILE);
const QString resource = QStringLiteral(":/QSS/MessageBox.qss");

// The objects of this process whose file name contains "libQuillet".
QStringList loadedObjects()
{
    QStringList names;
    dl_iterate_phdr(
        [](dl_phdr_info* object, size_t, void* data) {
            const QString name = QString::fromLocal8Bit(object->dlpi_name);
            if (name.contains(QLatin1String("libQuillet")))
                static_cast<QStringList*>(data)->append(name);
            return 0;
        },
        &names);
    return names;
}

// The titles that dialogs made inside the module take from their icons.
QStringList titles(QLibrary& module)
{
    const auto titleOf = reinterpret_cast<void (*)(int, QString*)>(module.resolve("titleOf"));
    QStringList result;
    for (const int icon : {QMessageBox::Critical,
                           QMessageBox::Information,
                           QMessageBox::Question,
                           QMessageBox::Warning,
                           QMessageBox::NoIcon}) {
        QString title;
        titleOf(icon, &title);
        result.append(title);
    }
    return result;
}

// What they are, with a word in front of each.
QStringList englishTitles(const QString& prefix = QString())
{
    return {prefix + QStringLiteral("Error"),
            prefix + QStringLiteral("Information"),
            prefix + QStringLiteral("Question"),
            prefix + QStringLiteral("Warning"),
            prefix + QStringLiteral("Message")};
}

// Answers every text of the context QObject with its own name in front.
class NamingTranslator : public QTranslator
{
public:
    explicit NamingTranslator(const QString& name) : m_name(name)
    {
        QCoreApplication::installTranslator(this);
    }

    bool isEmpty() const override { return false; }

    QString
    translate(const char* context, const char* sourceText, const char* disambiguation, int n) const override
    {
        const bool expected = qstrcmp(context, "QObject") == 0 && !disambiguation && n == -1;
        return expected ? m_name + QLatin1Char(' ') + QString::fromLatin1(sourceText) : QString();
    }

private:
    QString m_name;
};

} // namespace

class TestLoading : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { cacheNoPixmaps(); }

    void init()
    {
        TestCase::init();
        QCOMPARE(loadedObjects(), QStringList());
    }

    void theResourcesComeAndGoWithTheLibrary()
    {
        QVERIFY(!QFile::exists(resource));
        QLibrary library(library_file);
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        QCOMPARE(loadedObjects().size(), 1);
        QVERIFY(QFile::exists(resource));

        QVERIFY(library.unload());
        QCOMPARE(loadedObjects(), QStringList());
        QVERIFY(!QFile::exists(resource));
    }

    void titlesAreTranslatedByTheTranslatorInstalledAtLoadAndNeverAgain()
    {
        QLibrary module(module_file);
        {
            const NamingTranslator atLoad(QStringLiteral("first"));
            QVERIFY2(module.load(), qPrintable(module.errorString()));
        }
        const NamingTranslator later(QStringLiteral("second"));
        QCOMPARE(titles(module), englishTitles(QStringLiteral("first ")));
        QVERIFY(module.unload());
        QCOMPARE(loadedObjects(), QStringList());

        QVERIFY(module.load());
        QCOMPARE(titles(module), englishTitles(QStringLiteral("second ")));
        QVERIFY(module.unload());
    }

    void aTitleThatIsTranslatedAsNothingGivesWayToTheGeneralOne()
    {
        class Translator : public NamingTranslator
        {
        public:
            Translator() : NamingTranslator(QStringLiteral("any")) {}

            QString translate(const char* context, const char* sourceText, const char*, int) const override
            {
                const bool isTitle = qstrcmp(context, "QObject") == 0 && qstrcmp(sourceText, "Message") != 0;
                return isTitle ? QString::fromLatin1("") : QString();
            }
        };
        QLibrary module(module_file);
        {
            const Translator translator;
            QVERIFY(module.load());
        }
        QCOMPARE(titles(module), QStringList(QVector<QString>(5, QStringLiteral("Message")).toList()));
        QVERIFY(module.unload());
    }

    void titlesAreEnglishWithoutATranslator()
    {
        QLibrary module(module_file);
        QVERIFY(module.load());
        QCOMPARE(titles(module), englishTitles());
        QVERIFY(module.unload());
    }

    void theLibraryLeavesAfterDialogsWereShownAndQtWorksOn()
    {
        for (int cycle = 0; cycle < 20; ++cycle) {
            QLibrary module(module_file);
            QVERIFY(module.load());
            const auto showAWarning = reinterpret_cast<void (*)()>(module.resolve("showAWarning"));
            showAWarning();
            QVERIFY(module.unload());
            QCOMPARE(loadedObjects(), QStringList());

            // Style sheets, fonts and pixmaps that Qt still caches must not refer to the library.
            QLabel label(QStringLiteral("label"));
            label.setStyleSheet(QStringLiteral("color: red; font-family: \"Open Sans\""));
            label.show();
            QCoreApplication::processEvents();
        }
    }

    void templatesAndPreprocessorsGoWithTheLibrary()
    {
        for (int cycle = 0; cycle < 3; ++cycle) {
            QLibrary module(module_file);
            QVERIFY(module.load());
            const auto leaveATemplateBehind =
                reinterpret_cast<int (*)()>(module.resolve("leaveATemplateBehind"));
            QCOMPARE(leaveATemplateBehind(), 0);
            QVERIFY(module.unload());
            QCOMPARE(loadedObjects(), QStringList());
        }
    }

    void thousandsOfLoadsLeaveTheHeapAsItWas()
    {
        // What measures coverage keeps three blocks for each library that is unloaded.
        const int cycles = rounds(countsMalloc() ? 2000 : 50); // a sanitizer takes long to load a library
        const std::size_t kept = qEnvironmentVariableIsSet("LLVM_PROFILE_FILE") ? std::size_t(cycles) * 3 : 0;
        const auto cycle = [](bool shows) {
            QLibrary module(module_file);
            module.load();
            reinterpret_cast<int (*)()>(module.resolve("leaveATemplateBehind"))();
            if (shows)
                reinterpret_cast<void (*)()>(module.resolve("showAWarning"))();
            module.unload();
        };
        for (int i = 0; i < 10; ++i)
            cycle(true);
        const Heap before = heap();
        for (int i = 0; i < cycles; ++i)
            cycle(i % 10 == 0);
        QCOMPARE(loadedObjects(), QStringList());
        QCOMPARE(heap().blocks, before.blocks + kept);
        QVERIFY(kept > 0 || heap().bytes <= before.bytes + 1024);
    }
};

QUILLET_TEST_MAIN(TestLoading)
#include "tst_Loading.moc"
