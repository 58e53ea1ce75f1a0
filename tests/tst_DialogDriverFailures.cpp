#include "TestCase.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>

namespace {

struct Outcome
{
    QStringList failures; ///< what each failure says, without the place
    QString output;
    bool hasCrashed = false;
};

// Runs a program of failing cases, which go to its standard output as QtTest or GoogleTest writes them.
Outcome run(const char* program, const QString& argument, const QString& failure)
{
    QProcess process;
    process.start(QString::fromLocal8Bit(program), {argument});
    process.waitForFinished(-1);
    Outcome outcome;
    outcome.hasCrashed = process.exitStatus() == QProcess::CrashExit;
    outcome.output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    // A message may have several lines; what follows it, the place, is told by how the framework writes it.
    auto each = QRegularExpression(failure, QRegularExpression::DotMatchesEverythingOption)
                    .globalMatch(outcome.output);
    while (each.hasNext())
        outcome.failures.append(each.next().captured(1));
    return outcome;
}

QString underQtTest()
{
    return QStringLiteral(
        "FAIL!  : TestFailing::\\w+\\(\\) (.*?)\\n   Loc: \\[[^\\n]*failing-dialogs.cpp\\(\\d+\\)\\]");
}

QString lines(const QStringList& all)
{
    return all.join(QLatin1Char('\n'));
}

// How the dialog of most cases is described.
QString description()
{
    return QStringLiteral("  identifier: \"save-changes\"\n"
                          "  title: \"Unsaved changes\"\n"
                          "  text: \"Save the changes?\"\n"
                          "  icon: Question\n"
                          "  buttons: \"Save\", \"Cancel\"\n"
                          "  default button: \"Save\"\n"
                          "  primary button: \"Save\"");
}

QString unexpected(const QString& what)
{
    return lines(
        {QStringLiteral("An unexpected dialog has come:"), what, QStringLiteral("Still expected: none.")});
}

} // namespace

/// What the test kit says when a test fails: each case runs a failing one in another process.
class TestDialogDriverFailures : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachFailureIsOneMessageThatSaysWhatWasWrong_data()
    {
        QTest::addColumn<QString>("message");
        const auto add = [](const char* function, const QString& message) {
            QTest::newRow(function) << message;
        };
        const auto differs = [](const QStringList& differences) {
            return lines(
                QStringList(QStringLiteral("The dialog \"save-changes\" differs from what was expected:"))
                + differences);
        };

        add("unexpected",
            unexpected(description().replace(
                QStringLiteral("  icon"),
                QStringLiteral("  informative text: \"They are lost otherwise.\"\n  icon"))));
        add("unexpectedPlainBox",
            lines({QStringLiteral("An unexpected dialog has come:"),
                   QStringLiteral("  identifier: \"\""),
                   QStringLiteral("  title: \"Disk\""),
                   QStringLiteral("  text: \"The disk is full.\""),
                   QStringLiteral("  icon: Warning"),
                   QStringLiteral("  buttons: \"OK\""),
                   QStringLiteral("  default button: \"OK\""),
                   QStringLiteral("Still expected: \"a\".")}));
        const QString twoButtons = lines({QStringLiteral("  identifier: \"\""),
                                          QStringLiteral("  title: \"\""),
                                          QStringLiteral("  text: \"\""),
                                          QStringLiteral("  icon: NoIcon"),
                                          QStringLiteral("  buttons: \"One\", \"Two\"")});
        add("unexpectedWithoutEscapeButton", unexpected(twoButtons));
        add("unexpectedAgain", unexpected(description()));
        add("unexpectedInsideAnExpectedOne",
            unexpected(lines({QStringLiteral("  identifier: \"\""),
                              QStringLiteral("  title: \"About\""),
                              QStringLiteral("  text: \"text\""),
                              QStringLiteral("  icon: NoIcon"),
                              QStringLiteral("  buttons: \"OK\"")})));
        add("unexpectedAndGoneAtOnce", unexpected(description()));
        add("unexpectedAndStubborn", unexpected(description()));
        add("unexpectedAndDueLater", unexpected(description()));
        add("screenshotThatCannotBeWritten", unexpected(description()));
        add("driverEndedByADismissal", unexpected(description()));

        add("neverCame",
            QStringLiteral("The expected dialog \"save-changes\" has not come.\nNo dialog has come."));
        add("verifiedOnlyOnce",
            QStringLiteral("The expected dialog \"save-changes\" has not come.\nNo dialog has come."));
        add("cameTooRarely",
            lines({QStringLiteral("The expected dialog \"save-changes\" has come 1 of 3 times."),
                   QStringLiteral("What has come:"),
                   QStringLiteral("  dialog \"save-changes\", titled \"Unsaved changes\", text \"Save the "
                                  "changes?\", buttons \"Save\", \"Cancel\"")}));

        add("everythingDiffers",
            differs(
                {QStringLiteral("  title: \"Unsaved changes\" where \"Changes\" was expected"),
                 QStringLiteral("  text: \"Save the changes?\" where \"Save?\" was expected"),
                 QStringLiteral("  informative text: \"\" where \"Otherwise they are lost.\" was expected"),
                 QStringLiteral("  icon: Question where Warning was expected"),
                 QStringLiteral("  buttons: \"Save\", \"Cancel\" where \"Save\", \"Discard\" was expected"),
                 QStringLiteral("  buttons: custom ones \"Save\", \"Cancel\" where Save|Cancel was expected"),
                 QStringLiteral("  default button: \"Save\" where \"Cancel\" was expected"),
                 QStringLiteral("  primary button: \"Save\" where \"Cancel\" was expected")}));
        add("differsAndGoneAtOnce",
            differs({QStringLiteral("  title: \"Unsaved changes\" where \"Changes\" was expected")}));
        add("plainBoxDiffers",
            lines({QStringLiteral("The dialog without identifier differs from what was expected:"),
                   QStringLiteral("  buttons: Yes|No where Ok was expected"),
                   QStringLiteral("  default button: \"\" where \"Yes\" was expected"),
                   QStringLiteral("  primary button: a plain QMessageBox where \"Yes\" was expected")}));

        const auto says = [&](const char* function, const char* problem) {
            add(function, QStringLiteral("The dialog \"save-changes\" %1.").arg(QLatin1String(problem)));
        };
        says("noSuchButton", R"(has no button "Sav"; its buttons are "Save", "Cancel")");
        says("noSuchStandardButton",
             R"(has no button with the standard value Save; its buttons are "Save", "Cancel")");
        says("noSuchRole", R"(has no button with HelpRole; its buttons are "Save", "Cancel")");
        says("severalButtonsOfARole",
             R"(has 2 buttons with AcceptRole; its buttons are "Save", "Save a copy", "Cancel")");
        says("noTemplateOfTheSlot", "is of no registered template, so its slots are not known");
        says("emptySlot", "has no button of slot 1");
        says("noCheckBox", "has no check box");
        says("disabledButton", "cannot be answered: the button \"Save\" is disabled");
        says("hiddenButton", "cannot be answered: the button \"Save\" is hidden");
        says("coveredButton", "cannot be answered: the button \"Save\" is covered");
        says("closedBeforeItsAnswer", "has closed before a click on \"Save\"");
        says("destroyedBeforeItsAnswer", "has closed before the close of its window");
        says("destroyedBeforeItsChecks", "has been destroyed before it was checked");
        says("throwingAnException", "is given up, since the test's code has thrown \"no such file\"");
        says("throwingSomethingElse", "is given up, since the test's code has thrown an exception");
        says("blockedAtTheEnd",
             "is still open at the end of its driver, blocked by a QInputDialog titled \"Name\"");
        says("blockedBySheet",
             "is still open at the end of its driver, blocked by a QInputDialog titled \"Name\"");
        says("driverEndedByItsAnswer",
             "is still open at the end of its driver. Call wait() before, for boxes that are opened without "
             "blocking");
        says("openAtTheEnd",
             "is still open at the end of its driver. Call wait() before, for boxes that are opened without "
             "blocking");

        add("openAfterItsAnswer",
            lines({QStringLiteral(
                       "Nothing has happened for 2000 ms while the dialog \"save-changes\" was open after "
                       "a click on \"Save\"."),
                   description()}));
        add("openDuringItsAnswer",
            lines({QStringLiteral(
                       "Nothing has happened for 2000 ms while the dialog \"save-changes\" was open during "
                       "a call of the test's code."),
                   description()}));
        add("openAfterEscape",
            lines({QStringLiteral(
                       "Nothing has happened for 2000 ms while the dialog without identifier was open "
                       "after the key Esc."),
                   twoButtons}));
        add("blockedByAnotherDialog",
            QStringLiteral(
                "Nothing has happened for 2000 ms while a QInputDialog titled \"Name\" was open."));

        add("negativeTimes", QStringLiteral("A dialog cannot be expected -1 times."));
        add("noTimeOut", QStringLiteral("A time-out of 0 ms would end nothing."));

        add("preprocessorLeftBehind",
            QStringLiteral(
                "A preprocessor has been left behind. Give its name to the StateGuard, which removes it "
                "then."));
        add("preprocessorLost",
            QStringLiteral("The preprocessor \"mine\" has been removed and cannot be put back."));
        add("allPreprocessorsLost",
            QStringLiteral("All preprocessors have been removed and cannot be put back."));
        add("preprocessorNotAdded", QStringLiteral("The preprocessor \"mine\" was not added."));
    }

    void eachFailureIsOneMessageThatSaysWhatWasWrong()
    {
        QFETCH(const QString, message);
        const Outcome outcome =
            run(FAILING_DIALOGS, QString::fromLatin1(QTest::currentDataTag()), underQtTest());
        QCOMPARE(outcome.failures, QStringList(message));
        QVERIFY(!outcome.hasCrashed);
    }

    void aDialogThatTheEndOfAnotherBringsIsEndedToo()
    {
        const Outcome outcome =
            run(FAILING_DIALOGS, QStringLiteral("openedByTheEndOfAnother"), underQtTest());
        const QString message =
            QStringLiteral("The dialog \"%1\" is still open at the end of its driver. Call "
                           "wait() before, for boxes that are opened without blocking.");
        QCOMPARE(
            outcome.failures,
            QStringList({message.arg(QStringLiteral("save-changes")), message.arg(QStringLiteral("next"))}));
        QVERIFY(!outcome.hasCrashed);
    }

    void aFailureNamesTheScreenshot()
    {
        const Outcome outcome = run(FAILING_DIALOGS, QStringLiteral("screenshot"), underQtTest());
        const auto file =
            QRegularExpression(QStringLiteral("The file is (.+)")).match(outcome.output).captured(1);
        QVERIFY(file.endsWith(QLatin1String("/pictures/save-changes-1.png")));
        QCOMPARE(
            outcome.failures,
            QStringList(lines({QStringLiteral("The dialog \"save-changes\" differs from what was expected:"),
                               QStringLiteral("  title: \"Unsaved changes\" where \"Changes\" was expected"),
                               QStringLiteral("  screenshot: ") + file})));
    }

    void codeThatAsksForEverIsEnded()
    {
        const Outcome outcome = run(FAILING_DIALOGS, QStringLiteral("askingForEver"), underQtTest());
        QCOMPARE(outcome.failures.size(), 100);
        QCOMPARE(outcome.failures.constLast(), unexpected(description()));
        QVERIFY(outcome.output.contains(
            QStringLiteral("100 unexpected dialogs: the code seems to ask until it gets another answer.")));
    }

    void aFailureOutsideOfEveryTestEndsTheProcess()
    {
        const Outcome outcome =
            run(FAILING_DIALOGS, QStringLiteral("no-framework"), QStringLiteral("^(.*)\\n$"));
        QVERIFY(outcome.hasCrashed);
        QVERIFY2(outcome.output.contains(QStringLiteral(
                     "The expected dialog \"save-changes\" has not come.\nNo dialog has come.\n(No test "
                     "function of QtTest runs, and no failure handler is set. GoogleTest needs "
                     "reportFailuresToGoogleTest(), any other framework setFailureHandler().)\n")),
                 qPrintable(outcome.output));
    }

    void aDriverNeedsAnApplication()
    {
        const Outcome outcome = run(FAILING_DIALOGS, QStringLiteral("no-application"), QString());
        QVERIFY(outcome.hasCrashed);
        QVERIFY(outcome.output.contains(QStringLiteral("A DialogDriver needs a QApplication.\n")));
    }

    void underGoogleTestAFailureIsOneOfItsOwn()
    {
        const Outcome outcome =
            run(FAILING_DIALOGS_UNDER_GOOGLE_TEST,
                QStringLiteral("--gtest_color=no"),
                QStringLiteral("failing-dialogs-gtest.cpp:\\d+: Failure\\nFailed\\n(.*?)\\n+\\[  FAILED"));
        QCOMPARE(
            outcome.failures,
            QStringList(
                {unexpected(lines({QStringLiteral("  identifier: \"\""),
                                   QStringLiteral("  title: \"Disk\""),
                                   QStringLiteral("  text: \"The disk is full.\""),
                                   QStringLiteral("  icon: Warning"),
                                   QStringLiteral("  buttons: \"OK\""),
                                   QStringLiteral("  default button: \"OK\"")})),
                 QStringLiteral("The expected dialog \"save-changes\" has not come.\nNo dialog has come.")}));
        QVERIFY(!outcome.hasCrashed);
    }
};

QUILLET_TEST_MAIN(TestDialogDriverFailures)
#include "tst_DialogDriverFailures.moc"
