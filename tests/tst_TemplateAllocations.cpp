#include "Allocations.h"
#include "TemplateTestCase.h"

#include <array>
#include <memory>
#include <new>
#include <optional>

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;

namespace {

const QString id = QStringLiteral("id");

// A callable too large for the inside of a std::function, so that copying it allocates.
template <typename Result, typename... Arguments>
std::function<Result(Arguments...)> large(const QString& name, QStringList& journal)
{
    const std::array<void*, 16> ballast = {};
    return [name, &journal, ballast](Arguments...) {
        journal.append(ballast[0] ? QString() : name);
        return Result(true);
    };
}

// All six callables allocate when they are copied; each appends its name to the journal.
MessageDialogTemplate withLargeCallables(const QString& name, QStringList& journal)
{
    MessageDialogTemplate t;
    t.id = id;
    t.title = name;
    for (auto& slot : t.buttons)
        slot.action = large<void>(name, journal);
    t.preExecCallback = large<bool, Quillet::MessageDialog&>(name, journal);
    t.postExecCallback = large<bool, Quillet::MessageDialog&>(name, journal);
    return t;
}

// Whether every member of the template comes from the one called so.
bool isWhole(const MessageDialogTemplate& t, const QString& name, QStringList& journal)
{
    journal.clear();
    Quillet::MessageDialog dialog;
    t.preExecCallback(dialog);
    t.postExecCallback(dialog);
    for (const auto& slot : t.buttons)
        slot.action();
    return t.id == id && t.title == name && journal.count(name) == 6 && journal.size() == 6;
}

// Calls \a operation with its n-th allocation failing.
template <typename Operation>
bool failsAtAllocation(std::size_t n, const Operation& operation)
{
    const FailingAllocation failing(n);
    try {
        operation();
    } catch (const std::bad_alloc&) {
        return true;
    }
    return false;
}

// A callback that, when it is copied, makes the next allocation fail, and that vetoes. The dialog copies it
// as soon as it has been constructed.
class FailingAfterCopy
{
public:
    explicit FailingAfterCopy(std::optional<FailingAllocation>& failing) : m_failing(failing) {}
    FailingAfterCopy(const FailingAfterCopy& other) : m_failing(other.m_failing) { m_failing.emplace(0U); }
    FailingAfterCopy(FailingAfterCopy&&) = default;

    bool operator()(Quillet::MessageDialog&) const { return false; }

private:
    std::optional<FailingAllocation>& m_failing;
};

} // namespace

class TestTemplateAllocations : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { cacheNoPixmaps(); }

    void aFailingAllocationLeavesNoHalfMadeEntry()
    {
        QStringList journal;
        const MessageDialogTemplate t = withLargeCallables(QStringLiteral("new"), journal);
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        std::size_t n = 0;
        while (failsAtAllocation(n, [&] { MessageDialogTemplate::registerTemplate(t); })) {
            QVERIFY(templates.empty());
            ++n;
        }
        QVERIFY2(n >= 7, "six callables and the entry itself are to fail");
        QCOMPARE(templates.size(), std::size_t(1));
        QVERIFY(isWhole(templates.at(id), QStringLiteral("new"), journal));
    }

    void aFailingAllocationLeavesTheReplacedTemplateWhole()
    {
        QStringList journal;
        MessageDialogTemplate::registerTemplate(withLargeCallables(QStringLiteral("old"), journal));
        const MessageDialogTemplate t = withLargeCallables(QStringLiteral("new"), journal);
        const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
        std::size_t n = 0;
        while (failsAtAllocation(n, [&] { MessageDialogTemplate::registerTemplate(t); })) {
            QCOMPARE(templates.size(), std::size_t(1));
            QVERIFY(isWhole(templates.at(id), QStringLiteral("old"), journal));
            ++n;
        }
        QVERIFY2(n >= 6, "six callables are to fail");
        QVERIFY(isWhole(templates.at(id), QStringLiteral("new"), journal));
    }

    void unregisteringAllocatesNothing()
    {
        QStringList journal;
        MessageDialogTemplate::registerTemplate(withLargeCallables(QStringLiteral("old"), journal));
        const std::size_t before = allocations();
        MessageDialogTemplate::unregisterTemplate(id);
        QCOMPARE(allocations(), before);
    }

    void aFailingAllocationAddsNoPreprocessor()
    {
        QStringList journal;
        const auto preprocessor = large<void, MessageDialogTemplate&>(QStringLiteral("ran"), journal);
        std::size_t n = 0;
        while (failsAtAllocation(n, [&] { MessageDialogTemplatePreprocessors::add(id, preprocessor); })) {
            QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
            ++n;
        }
        QVERIFY2(n >= 2, "the callable and the entry are to fail");
        MessageDialogTemplate t;
        MessageDialogTemplatePreprocessors::apply(t);
        QCOMPARE(journal, QStringList(QStringLiteral("ran")));
        QVERIFY(MessageDialogTemplatePreprocessors::remove(id));
    }

    void aFailingCopyForThePreprocessorsBuildsNoDialog()
    {
        QStringList journal;
        const MessageDialogTemplate t = withLargeCallables(QStringLiteral("new"), journal);
        const ScopedPreprocessor preprocessor(QStringLiteral("journal"), [&](MessageDialogTemplate&) {
            journal.append(QStringLiteral("preprocessor"));
        });
        for (std::size_t n = 0; n < 6; ++n) {
            QVERIFY(failsAtAllocation(n, [&] { delete t.createDialog(); }));
            QCOMPARE(journal, QStringList());
        }
    }

    void nothingIsLostWhereverTheRegistryFails_data()
    {
        QTest::addColumn<bool>("replaces");
        QTest::newRow("a new entry") << false;
        QTest::newRow("a replacement") << true;
    }

    void nothingIsLostWhereverTheRegistryFails()
    {
        QFETCH(bool, replaces);
        QStringList journal;
        const MessageDialogTemplate old = withLargeCallables(QStringLiteral("old"), journal);
        const MessageDialogTemplate t = withLargeCallables(QStringLiteral("new"), journal);
        const auto attempt = [&](std::size_t n) {
            if (replaces)
                MessageDialogTemplate::registerTemplate(old);
            const Outcome outcome = withFailingAllocation(
                n, Failing::Library, [&] { MessageDialogTemplate::registerTemplate(t); });
            MessageDialogTemplate::unregisterTemplate(id);
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.threw, replaces ? 6 : 7); // six callables and the entry
    }

    void nothingIsLostWhereverThePreprocessorsFail()
    {
        QStringList journal;
        const auto preprocessor = large<void, MessageDialogTemplate&>(QStringLiteral("ran"), journal);
        const auto attempt = [&](std::size_t n) {
            const Outcome outcome = withFailingAllocation(
                n, Failing::Library, [&] { MessageDialogTemplatePreprocessors::add(id, preprocessor); });
            MessageDialogTemplatePreprocessors::remove(id);
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.threw, 2);
    }

    void lookingUpAllocatesNothing()
    {
        QStringList journal;
        MessageDialogTemplate::registerTemplate(withLargeCallables(QStringLiteral("old"), journal));
        const ScopedPreprocessor preprocessor(QStringLiteral("nothing"), [](MessageDialogTemplate&) {});
        MessageDialogTemplate t;
        const std::size_t before = heap().blocks;
        const std::size_t count = allocations();
        bool found = MessageDialogTemplate::getRegisteredTemplates().count(id) == 1;
        found = found && !MessageDialogTemplatePreprocessors::isEmpty();
        MessageDialogTemplatePreprocessors::apply(t);
        QCOMPARE(allocations(), count);
        QCOMPARE(heap().blocks, before);
        QVERIFY(found);
    }

    void nothingIsLostWhereverMakingADialogFails_data()
    {
        QTest::addColumn<bool>("runs");
        QTest::addColumn<bool>("preprocessed");
        QTest::newRow("createDialog") << false << false;
        QTest::newRow("createDialog, preprocessed") << false << true;
        QTest::newRow("exec") << true << false;
        QTest::newRow("exec, preprocessed") << true << true;
    }

    void nothingIsLostWhereverMakingADialogFails()
    {
        QFETCH(bool, runs);
        QFETCH(bool, preprocessed);
        std::optional<ScopedPreprocessor> preprocessor;
        if (preprocessed) {
            preprocessor.emplace(QStringLiteral("text"), [](MessageDialogTemplate& t) {
                t.text = t.title + QStringLiteral(" adjusted");
            });
        }
        QWidget parent;
        QStringList journal;
        MessageDialogTemplate t = withLargeCallables(QStringLiteral("name"), journal);
        for (auto& slot : t.buttons)
            slot.text = QStringLiteral("label");
        const auto attempt = [&](std::size_t n) {
            // Ends the run, where it comes as far as that.
            QTimer::singleShot(0, &parent, [&] {
                const auto dialogs = parent.findChildren<QDialog*>();
                for (auto* dialog : dialogs)
                    dialog->reject();
            });
            const Outcome outcome = withFailingAllocation(n, Failing::Library, [&] {
                if (runs)
                    t.exec(&parent);
                else
                    delete t.createDialog(&parent);
            });
            QCoreApplication::processEvents();
            journal = QStringList();
            if (!parent.children().isEmpty())
                qCritical("failing allocation %zu: a dialog is left", n);
            return outcome;
        };
        const FailureCount count = failEach(attempt);
        QCOMPARE(count.leaks, 0);
        QCOMPARE(count.coped, 0);
        // The dialog, its two callbacks, and the six callables of the adjusted copy.
        QVERIFY(count.threw >= (preprocessed ? 9 : 3));
    }

    void aFailingAllocationAfterTheConstructorLeavesNoDialogBehind_data()
    {
        QTest::addColumn<bool>("runs");
        QTest::newRow("createDialog") << false;
        QTest::newRow("exec") << true;
    }

    void aFailingAllocationAfterTheConstructorLeavesNoDialogBehind()
    {
        QFETCH(bool, runs);
        QWidget parent;
        std::optional<FailingAllocation> failing;
        MessageDialogTemplate t;
        t.buttons[0] = {QStringLiteral("only"), QMessageBox::AcceptRole, true, true, {}};
        t.preExecCallback = FailingAfterCopy(failing);
        bool failed = false;
        try {
            if (runs)
                t.exec(&parent);
            else
                delete t.createDialog(&parent);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        failing.reset();
        QVERIFY(failed);
        QVERIFY(parent.children().isEmpty());
    }
};

QUILLET_TEST_MAIN(TestTemplateAllocations)
#include "tst_TemplateAllocations.moc"
