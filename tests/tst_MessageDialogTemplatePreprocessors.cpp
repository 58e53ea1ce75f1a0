#include "TemplateTestCase.h"

#include <memory>
#include <stdexcept>

using Quillet::MessageDialogTemplate;
using Quillet::TemplatePreprocessor;

using Preprocessors = Quillet::MessageDialogTemplatePreprocessors;

namespace {

static_assert(!std::is_default_constructible_v<Preprocessors>, "a scope, without instances");
static_assert(std::is_same_v<TemplatePreprocessor, std::function<void(MessageDialogTemplate&)>>);

const QString alpha = QStringLiteral("alpha");
const QString zeta = QStringLiteral("zeta");

// Appends a word to a template's text, so that the text tells what ran.
TemplatePreprocessor append(const QString& word)
{
    return [word](MessageDialogTemplate& t) { t.text += word + QLatin1Char(' '); };
}

QString applied()
{
    MessageDialogTemplate t;
    Preprocessors::apply(t);
    return t.text.trimmed();
}

} // namespace

class TestMessageDialogTemplatePreprocessors : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        for (const QString& name : {alpha, zeta, QStringLiteral("Zeta")})
            Preprocessors::remove(name);
        TemplateTestCase::cleanup();
    }

    void withoutPreprocessorsATemplateIsLeftAlone()
    {
        QVERIFY(Preprocessors::isEmpty());
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        Preprocessors::apply(t);
        QCOMPARE(t.id, QStringLiteral("save-changes"));
        QCOMPARE(t.icon, QMessageBox::Question);
        QCOMPARE(t.title, QStringLiteral("Unsaved changes"));
        QCOMPARE(t.text, QStringLiteral("Save the changes?"));
        QCOMPARE(t.buttons[1].text, QStringLiteral("&Discard"));
        QVERIFY(Preprocessors::isEmpty());
    }

    void aPreprocessorStaysUntilItIsRemoved()
    {
        QVERIFY(Preprocessors::add(alpha, append(QStringLiteral("one"))));
        QVERIFY(!Preprocessors::isEmpty());
        QCOMPARE(applied(), QStringLiteral("one"));
        QCOMPARE(applied(), QStringLiteral("one"));
        QVERIFY(Preprocessors::remove(alpha));
        QVERIFY(Preprocessors::isEmpty());
        QCOMPARE(applied(), QString());
    }

    void aTakenNameKeepsItsFirstPreprocessor()
    {
        QVERIFY(Preprocessors::add(alpha, append(QStringLiteral("first"))));
        QVERIFY(!Preprocessors::add(alpha, append(QStringLiteral("second"))));
        QCOMPARE(applied(), QStringLiteral("first"));
    }

    void anEmptyNameOrAnEmptyCallableIsRefused()
    {
        QVERIFY(!Preprocessors::add(QString(), append(QStringLiteral("nameless"))));
        QVERIFY(!Preprocessors::add(QLatin1String(""), append(QStringLiteral("nameless"))));
        QVERIFY(!Preprocessors::add(alpha, {}));
        QVERIFY(!Preprocessors::add(QString(), {}));
        QVERIFY(Preprocessors::isEmpty());
    }

    void aRefusalLeavesThePreprocessorsAlone()
    {
        QVERIFY(Preprocessors::add(alpha, append(alpha)));
        QVERIFY(!Preprocessors::add(alpha, {}));
        QVERIFY(!Preprocessors::add(QString(), append(QStringLiteral("nameless"))));
        QCOMPARE(applied(), alpha);
    }

    void refusalsAreNotLogged()
    {
        const LogCapture log;
        Preprocessors::add(QString(), append(QStringLiteral("nameless")));
        Preprocessors::add(alpha, {});
        Preprocessors::remove(alpha);
        QCOMPARE(log.lines(), QVector<LogLine>());
    }

    void preprocessorsRunInTheOrderOfTheirNames()
    {
        QVERIFY(Preprocessors::add(zeta, append(zeta)));
        QVERIFY(Preprocessors::add(alpha, append(alpha)));
        QVERIFY(Preprocessors::add(QStringLiteral("Zeta"), append(QStringLiteral("Zeta"))));
        QCOMPARE(applied(), QStringLiteral("Zeta alpha zeta"));
    }

    void eachPreprocessorSeesWhatThoseBeforeItChanged()
    {
        QString seen;
        QVERIFY(Preprocessors::add(zeta, [&](MessageDialogTemplate& t) { seen = t.title; }));
        QVERIFY(
            Preprocessors::add(alpha, [](MessageDialogTemplate& t) { t.title = QStringLiteral("changed"); }));
        applied();
        QCOMPARE(seen, QStringLiteral("changed"));
    }

    void aPreprocessorKeepsItsStateFromCallToCall()
    {
        QVERIFY(Preprocessors::add(
            alpha, [calls = 0](MessageDialogTemplate& t) mutable { t.text = QString::number(++calls); }));
        QCOMPARE(applied(), QStringLiteral("1"));
        QCOMPARE(applied(), QStringLiteral("2"));
    }

    void removingTellsWhetherThereWasOne()
    {
        QVERIFY(!Preprocessors::remove(alpha));
        QVERIFY(!Preprocessors::remove(QString()));
        QVERIFY(Preprocessors::add(alpha, append(alpha)));
        QVERIFY(!Preprocessors::remove(QStringLiteral("Alpha")));
        QVERIFY(Preprocessors::remove(alpha));
        QVERIFY(!Preprocessors::remove(alpha));
    }

    void aRemovedNameIsFreeForAnother()
    {
        QVERIFY(Preprocessors::add(alpha, append(QStringLiteral("first"))));
        QVERIFY(Preprocessors::remove(alpha));
        QVERIFY(Preprocessors::add(alpha, append(QStringLiteral("second"))));
        QCOMPARE(applied(), QStringLiteral("second"));
    }

    void removingOneLeavesTheOthers()
    {
        QVERIFY(Preprocessors::add(alpha, append(alpha)));
        QVERIFY(Preprocessors::add(zeta, append(zeta)));
        QVERIFY(Preprocessors::remove(alpha));
        QCOMPARE(applied(), zeta);
    }

    void removingDestroysTheCallable()
    {
        const auto token = std::make_shared<int>();
        QVERIFY(Preprocessors::add(alpha, [token](MessageDialogTemplate&) {}));
        QCOMPARE(token.use_count(), 2L);
        QVERIFY(Preprocessors::remove(alpha));
        QCOMPARE(token.use_count(), 1L);
    }

    void anExceptionSkipsThePreprocessorsAfterIt()
    {
        QVERIFY(Preprocessors::add(alpha, [](MessageDialogTemplate& t) {
            t.text = QStringLiteral("started");
            throw std::runtime_error("preprocessor");
        }));
        QVERIFY(Preprocessors::add(zeta, append(zeta)));
        MessageDialogTemplate t;
        QVERIFY_EXCEPTION_THROWN(Preprocessors::apply(t), std::runtime_error);
        QCOMPARE(t.text, QStringLiteral("started"));
    }

    void anExceptionOfACallableThatIsCopiedAddsNothing()
    {
        struct Callable
        {
            explicit Callable(const bool& condition) : throws(condition) {}
            Callable(const Callable& other) : throws(other.throws)
            {
                if (throws)
                    throw std::runtime_error("copy");
            }
            void operator()(MessageDialogTemplate&) const {}

            const bool& throws;
        };
        bool throws = false;
        const Quillet::TemplatePreprocessor preprocessor{Callable(throws)};
        throws = true; // NOLINT(clang-analyzer-deadcode.DeadStores): the callable reads it by reference
        QVERIFY_EXCEPTION_THROWN(Preprocessors::add(alpha, preprocessor), std::runtime_error);
        QVERIFY(Preprocessors::isEmpty());
    }

    void anExceptionOfAPreprocessorPassesThroughCreateDialog()
    {
        QVERIFY(Preprocessors::add(alpha, [](MessageDialogTemplate& t) {
            t.text = QStringLiteral("changed");
            throw std::runtime_error("preprocessor");
        }));
        MessageDialogTemplate t;
        QVERIFY_EXCEPTION_THROWN(t.createDialog(), std::runtime_error);
        QCOMPARE(t.text, QString());
    }
};

QUILLET_TEST_MAIN(TestMessageDialogTemplatePreprocessors)
#include "tst_MessageDialogTemplatePreprocessors.moc"
