#include "TestCase.h"

#include <QtCore/QLibrary>
#include <QtCore/QTranslator>

namespace {

// Translates the library's five titles.
class ApplicationTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char* context,
                      const char* sourceText,
                      const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "QObject") == 0 && qstrcmp(sourceText, "Error") == 0
                   ? QStringLiteral("Fehler")
                   : QString();
    }
};

} // namespace

/// A program that is not linked to the library, but loads a module that is.
class TestLateLoadingSnippets : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theModuleIsLoadedBehindTheTranslator()
    {
        ApplicationTranslator translator;
        const QString moduleFileName = QStringLiteral(LATE_HOST_MODULE_FILE);
        //! [load]
        QCoreApplication::installTranslator(&translator);
        QLibrary module(moduleFileName); // the part of the application that is linked to Quillet
        if (!module.load())
            qFatal("%s", qPrintable(module.errorString()));
        //! [load]
        const auto titleOf = reinterpret_cast<void (*)(int, QString*)>(module.resolve("titleOf"));
        QString title;
        titleOf(QMessageBox::Critical, &title);
        QCOMPARE(title, QStringLiteral("Fehler"));
        QVERIFY(module.unload());
    }
};

QUILLET_TEST_MAIN(TestLateLoadingSnippets)
#include "tst_LateLoadingSnippets.moc"
