#include "TestCase.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>

#include <map>
#include <memory>

namespace {

struct Outcome
{
    QStringList failures; ///< what each failure says, without the place
    QString output;
    bool hasCrashed = false;
};

std::unique_ptr<QProcess> start(const char* program, const QString& argument)
{
    auto process = std::make_unique<QProcess>();
    // Leaks are looked for where nothing fails: to tell Qt's own from others takes half a second a process.
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process->setProcessEnvironment(environment);
    process->start(QString::fromLocal8Bit(program), {argument});
    return process;
}

// Runs a program of failing cases, which go to its standard output as QtTest or GoogleTest writes them.
Outcome finish(QProcess& process, const QString& failure)
{
    if (!process.waitForFinished(60000))
        process.kill(); // which counts as a crash
    process.waitForFinished();
    Outcome outcome;
    outcome.output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    // A sanitizer ends a process as a failing test does.
    outcome.hasCrashed = process.exitStatus() == QProcess::CrashExit
                         || outcome.output.contains(QLatin1String("Sanitizer:"))
                         || outcome.output.contains(QLatin1String("runtime error:"));
    // A message may have several lines; what follows it, the place, is told by how the framework writes it.
    // The lines of our own sources that messages name are left out: they change with every edit.
    outcome.output.replace(QRegularExpression(QStringLiteral("\\(line \\d+\\)")), QStringLiteral("(line N)"));
    auto each = QRegularExpression(failure, QRegularExpression::DotMatchesEverythingOption)
                    .globalMatch(outcome.output);
    while (each.hasNext())
        outcome.failures.append(each.next().captured(1));
    return outcome;
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

QString stayedOpen(const QString& state)
{
    return lines(
        {QStringLiteral("Nothing has happened for 2000 ms while the dialog \"save-changes\" was open%1.")
             .arg(state),
         description()});
}

QString stillOpen(const QString& identifier)
{
    return QStringLiteral(
               "The dialog \"%1\" is still open at the end of its driver. Call wait() before, for boxes "
               "that are opened without blocking.")
        .arg(identifier);
}

} // namespace

/// What the test kit says when a test fails: each case runs a failing one in another process.
class TestDialogDriverFailures : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Those that wait for their time-out do it side by side.
    void initTestCase()
    {
        for (const char* function : {"blockedByAnotherDialog",
                                     "buttonOutsideOfItsBox",
                                     "coveredButton",
                                     "coveredCheckBox",
                                     "dialogOfAnotherKind",
                                     "dialogThatWasOpenBefore",
                                     "disabledButton",
                                     "hiddenButton",
                                     "modelessAndOpenAfterItsAnswer",
                                     "openAfterEscape",
                                     "openAfterItsAnswer",
                                     "endingForEver",
                                     "openAsAPopup",
                                     "openBehindAMenu",
                                     "openBehindAStubbornPopup",
                                     "openDuringItsAnswer",
                                     "openInsteadOfBeingClosedByItsApplication",
                                     "openInTheTimeOfAnotherDriver",
                                     "openUnderAMenuThatEndsIt",
                                     "openUnderAMenuThatEndsTheDriver",
                                     "openUnderADialogThatComesAndGoes",
                                     "openUnderADialogThatIsGivenUp",
                                     "openUnderAWindow",
                                     "openWithAnotherText",
                                     "openWithTooSmallAWindow",
                                     "openWithoutBeingActive",
                                     "screenshotsOfWhatHangs",
                                     "severalScreenshots",
                                     "unexpectedAndWaitedForUnderAWindow",
                                     "verifiedOnlyOnce"}) {
            m_early[QString::fromLatin1(function)] = start(FAILING_DIALOGS, QString::fromLatin1(function));
        }
    }

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
            unexpected(lines({QStringLiteral("  identifier: \"save-changes\""),
                              QStringLiteral("  title: \"Unsaved changes\""),
                              QStringLiteral("  text: \"Save the changes?\""),
                              QStringLiteral("  informative text: \"They are lost otherwise.\""),
                              QStringLiteral("  detailed text: \"harbour.svg\""),
                              QStringLiteral("  icon: Question"),
                              QStringLiteral("  check box: \"Do not ask again\""),
                              QStringLiteral("  buttons: \"Save\", \"Cancel\", \"Show Details...\""),
                              QStringLiteral("  default button: \"Save\""),
                              QStringLiteral("  primary button: \"Save\"")})));
        add("unexpectedPlainBox",
            lines({QStringLiteral("An unexpected dialog has come:"),
                   QStringLiteral("  identifier: \"\""),
                   QStringLiteral("  title: \"Disk\""),
                   QStringLiteral("  text: \"The disk is full.\""),
                   QStringLiteral("  icon: Warning"),
                   QStringLiteral("  buttons: \"OK\""),
                   QStringLiteral("  default button: \"OK\""),
                   QStringLiteral("Still expected: dialog \"a\" (line N).")}));
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
        add("unexpectedAndDeafToEscape", unexpected(description()));
        add("unexpectedAndHiddenUnseen", unexpected(description()));
        add("unexpectedAndGoneAtOnce", unexpected(description()));
        add("unexpectedAtTheEnd", unexpected(description()));
        add("unexpectedAndDestroyed", unexpected(description()));
        add("unexpectedAndDeletedByItsEnd", unexpected(description()));
        add("unexpectedUnderAWindow", unexpected(description()));
        add("unexpectedAndWaitedForUnderAWindow", unexpected(description()));
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
                                  "changes?\", buttons \"Save\", \"Cancel\": expected (line N)")}));

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
        add("longTextDiffers",
            differs(
                {QStringLiteral("  informative text:"),
                 QStringLiteral("    \"They are lost otherwise, and nobody can bring them back to me.\""),
                 QStringLiteral("  where this was expected:"),
                 QStringLiteral("    \"They are lost otherwise, and nobody can bring them back to you.\"")}));
        add("forbiddenBesideAnother", unexpected(description()));
        add("noneFits",
            differs({QStringLiteral("  text: \"Save the changes?\" where \"Save?\" was expected")}));
        add("noStandardButtonsExpected",
            differs({QStringLiteral(
                "  buttons: RestoreDefaults and custom ones \"Save\", \"Cancel\" where none was expected")}));
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
        says("noButtonAtAll", R"(has no button with the standard value none; its buttons are "Save")");
        says("clickWithoutEffect", "cannot be answered: its button \"Save\" does not react to a click");
        says("toggleWithoutEffect",
             "cannot be answered: its check box \"Do not ask again\" does not react to a click");
        says("noRole", R"(has no button with role -1; its buttons are "Save", "Cancel")");
        says("roleBeyondTheLast", R"(has no button with role 9; its buttons are "Save", "Cancel")");
        says("severalButtonsOfARole",
             R"(has 2 buttons with AcceptRole; its buttons are "Save", "Save a copy", "Cancel")");
        says("noTemplateOfTheSlot", "is of no registered template, so its slots are not known");
        says("slotOfAPlainBox", "is of no registered template, so its slots are not known");
        says("emptySlot", "has no button of slot 1");
        says("negativeSlot", "has no button of slot -1");
        says("slotBeyondTheLast", "has no button of slot 4");
        says("slotWhoseButtonIsGone", "has no button of slot 2");
        says("noCheckBox", "has no check box");
        says("closedBeforeEscape",
             "has closed before the key Esc. waitUntilClosed() is for boxes that their application closes");
        says("closedBeforeWhatFollowsWaiting", "has closed before a click on \"Save\"");
        says("closedBeforeItsAnswer", "has closed before a click on \"Save\"");
        says("destroyedBeforeItsAnswer", "has closed before the close of its window");
        says("destroyedBeforeItsChecks", "has been destroyed before it was checked");
        says("throwingAnException", "is given up, since the test's code has thrown \"no such file\"");
        says("throwingAfterItHasComeAgain", "is given up, since the test's code has thrown \"no such file\"");
        says("throwingAfterItsEnd", "is given up, since the test's code has thrown \"no such file\"");
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

        const auto staysOpen = [&](const char* function, const char* state) {
            add(function, stayedOpen(QLatin1String(state)));
        };
        staysOpen("openAfterItsAnswer", " after a click on \"Save\"");
        staysOpen("modelessAndOpenAfterItsAnswer", " after a click on \"Save\"");
        staysOpen("openDuringItsAnswer", " during a call of the test's code");
        staysOpen("openWithTooSmallAWindow", ", its window smaller than its contents");
        staysOpen("openWithoutBeingActive", ", its window not active");
        staysOpen("openBehindAMenu", ", behind a QMenu");
        staysOpen("openBehindAStubbornPopup", ", behind a QWidget");
        staysOpen("openUnderADialogThatComesAndGoes", " after a click on \"Save\"");
        staysOpen("openInTheTimeOfAnotherDriver", " during a call of the test's code");
        staysOpen("openUnderAMenuThatEndsIt", ", behind a QMenu");
        staysOpen("openAsAPopup", ", button \"Save\" disabled");
        add("dialogThatWasOpenBefore",
            QStringLiteral(
                "Nothing has happened for 2000 ms while a QInputDialog titled \"Name\" was open."));
        staysOpen("openInsteadOfBeingClosedByItsApplication", ", waiting for its end by the application");
        staysOpen("disabledButton", ", button \"Save\" disabled");
        staysOpen("hiddenButton", ", button \"Save\" hidden");
        staysOpen("coveredButton", ", button \"Save\" covered by QWidget \"curtain\"");
        staysOpen("buttonOutsideOfItsBox", ", button \"Save\" outside of the window");
        add("openWithAnotherText",
            stayedOpen(QStringLiteral(", button \"Save\" disabled"))
                .replace(QStringLiteral("Save the changes?"), QStringLiteral("Save?")));
        add("coveredCheckBox",
            stayedOpen(QStringLiteral(", check box \"Do not ask again\" disabled"))
                .replace(QStringLiteral("  buttons"),
                         QStringLiteral("  check box: \"Do not ask again\"\n  buttons")));
        staysOpen("openUnderAWindow", ", blocked by another window");
        add("openAfterEscape",
            lines({QStringLiteral(
                       "Nothing has happened for 2000 ms while the dialog without identifier was open "
                       "after the key Esc."),
                   twoButtons}));
        add("blockedByAnotherDialog",
            QStringLiteral(
                "Nothing has happened for 2000 ms while a QInputDialog titled \"Name\" was open."));

        add("dialogOfAnotherKind",
            QStringLiteral(
                "Nothing has happened for 2000 ms while a QInputDialog \"name\" titled \"\" was open."));

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
        add("preprocessorNotAdded",
            QStringLiteral("The preprocessor \"mine\" was not added: the name is taken or "
                           "empty, or the function is."));
    }

    void eachFailureIsOneMessageThatSaysWhatWasWrong()
    {
        const QByteArray function = QTest::currentDataTag();
        if (QGuiApplication::platformName() != QLatin1String("offscreen")
            && (function == "openWithTooSmallAWindow" || function.startsWith("openBehind")
                || function.startsWith("openUnderAMenu") || function == "openAsAPopup"))
            return; // a window manager makes no window smaller than it may be, and popups close by themselves
        QFETCH(const QString, message);
        const Outcome outcome = run(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(outcome.failures, QStringList(message));
        QVERIFY(!outcome.hasCrashed);
    }

    void severalFailuresAreToldInTheirOrder_data()
    {
        QTest::addColumn<QStringList>("messages");
        const QString thrown = QStringLiteral(
            "The dialog \"save-changes\" is given up, since the test's code has thrown \"no such file\".");
        QTest::newRow("throwingAfterTheDriversEnd")
            << QStringList({stillOpen(QStringLiteral("save-changes")), thrown});
        QTest::newRow("openUnderADialogThatIsGivenUp")
            << QStringList({unexpected(lines({QStringLiteral("  identifier: \"\""),
                                              QStringLiteral("  title: \"\""),
                                              QStringLiteral("  text: \"\""),
                                              QStringLiteral("  icon: NoIcon"),
                                              QStringLiteral("  buttons: \"OK\"")})),
                            stayedOpen(QStringLiteral(" during a call of the test's code"))});
        QTest::newRow("standardButtonsDiffer") << QStringList(
            {lines({QStringLiteral("The dialog \"save-changes\" differs from what was expected:"),
                    QStringLiteral(
                        "  text: \"Save the changes?\" where something like \"^Sav[^e]\" was expected"),
                    QStringLiteral("  detailed text: \"\" where \"details\" was expected"),
                    QStringLiteral("  default button: custom one \"Save\" where Save was expected"),
                    QStringLiteral("  primary button: custom one \"Save\" where Save was expected")}),
             lines({QStringLiteral("The dialog \"plain\" differs from what was expected:"),
                    QStringLiteral("  default button: none where Yes was expected"),
                    QStringLiteral("  primary button: a plain QMessageBox where Yes was expected")})});
        QTest::newRow("anotherBoxWithoutIdentifier") << QStringList(
            {lines(
                 {QStringLiteral("An unexpected dialog has come:"),
                  QStringLiteral("  identifier: \"\""),
                  QStringLiteral("  title: \"Disk\""),
                  QStringLiteral("  text: \"Format it?\""),
                  QStringLiteral("  icon: Question"),
                  QStringLiteral("  buttons: \"Yes\", \"No\""),
                  QStringLiteral("Still expected: dialog without identifier titled \"Disk\" with a text like "
                                 "\"is full\" (line N).")}),
             lines(
                 {QStringLiteral(
                      "The expected dialog without identifier titled \"Disk\" with a text like \"is "
                      "full\" has not come."),
                  QStringLiteral("What has come:"),
                  QStringLiteral("  dialog without identifier, titled \"Disk\", text \"Format it?\", buttons "
                                 "\"Yes\", \"No\": unexpected")})});
        QTest::newRow("cameInsteadOfAnother") << QStringList(
            {lines({QStringLiteral("An unexpected dialog has come:"),
                    QStringLiteral("  identifier: \"\""),
                    QStringLiteral("  title: \"\""),
                    QStringLiteral("  text: \"\""),
                    QStringLiteral("  icon: NoIcon"),
                    QStringLiteral("  buttons: \"OK\""),
                    QStringLiteral("Still expected: dialog \"save-changes\" titled \"Changes\" (line N).")}),
             lines({QStringLiteral("The expected dialog \"save-changes\" titled \"Changes\" has not come."),
                    QStringLiteral("What has come:"),
                    QStringLiteral("  dialog \"save-changes\", titled \"Unsaved changes\", text \"Save the "
                                   "changes?\", buttons \"Save\", \"Cancel\": expected (line N)"),
                    QStringLiteral("  dialog without identifier, titled \"\", text \"\", buttons \"OK\": "
                                   "unexpected")})});
        QTest::newRow("uncheckedAtTheEnd") << QStringList(
            {lines({QStringLiteral("The dialog \"save-changes\" differs from what was expected:"),
                    QStringLiteral("  title: \"Unsaved changes\" where \"Changes\" was expected")}),
             stillOpen(QStringLiteral("save-changes"))});
        QTest::newRow("noneOfTwoFits") << QStringList(
            {lines({QStringLiteral("The dialog \"save-changes\" differs from what was expected:"),
                    QStringLiteral("  text: \"Save the changes?\" where \"Save?\" was expected")}),
             lines({QStringLiteral("The expected dialog \"save-changes\" titled \"Changes\" has not come."),
                    QStringLiteral("What has come:"),
                    QStringLiteral("  dialog \"save-changes\", titled \"Unsaved changes\", text \"Save the "
                                   "changes?\", buttons \"Save\", \"Cancel\": expected (line N)")})});
        QTest::newRow("unexpectedTwice") << QStringList(
            {unexpected(description()), QStringLiteral("The same unexpected dialog has come again.")});
        QTest::newRow("openedByTheEndOfAnother")
            << QStringList({stillOpen(QStringLiteral("save-changes")), stillOpen(QStringLiteral("next"))});
    }

    void severalFailuresAreToldInTheirOrder()
    {
        QFETCH(const QStringList, messages);
        const Outcome outcome = run(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(outcome.failures, messages);
        QVERIFY(!outcome.hasCrashed);
    }

    void eachDialogHasAScreenshotOfItsOwn()
    {
        const Outcome outcome = run(QStringLiteral("severalScreenshots"));
        const auto files =
            QRegularExpression(QStringLiteral("The files are (.+)")).match(outcome.output).captured(1);
        QCOMPARE(files, QStringLiteral("dialog-1.png a_b_c-1.png a_b_c-2.png"));
        QCOMPARE(outcome.failures.size(), 4);
        const QString last = outcome.failures.constLast();
        QVERIFY2(last.startsWith(QLatin1String("Nothing has happened")), qPrintable(last));
        QVERIFY2(last.endsWith(QLatin1String("/a_b_c-2.png")), qPrintable(last));
    }

    void whatHangsHasItsScreenshot()
    {
        const Outcome outcome = run(QStringLiteral("screenshotsOfWhatHangs"));
        QCOMPARE(outcome.failures.size(), 2);
        QVERIFY2(outcome.failures.constFirst().endsWith(QLatin1String("/save-changes-1.png")),
                 qPrintable(outcome.output));
        QVERIFY2(outcome.failures.constLast().endsWith(QLatin1String("/QInputDialog-1.png")),
                 qPrintable(outcome.output));
    }

    void aScreenshotMayGoIntoAnyDirectory()
    {
        const Outcome outcome = run(QStringLiteral("screenshotInAStrangeDirectory"));
        QCOMPARE(outcome.failures.size(), 1);
        QVERIFY(outcome.output.contains(QStringLiteral("The files are there")));
    }

    void aScreenshotThatCannotBeWrittenIsWarnedOf()
    {
        const Outcome outcome = run(QStringLiteral("screenshotThatCannotBeWritten"));
        QVERIFY2(outcome.output.contains(QRegularExpression(
                     QStringLiteral("The screenshot .*/save-changes-1.png cannot be written."))),
                 qPrintable(outcome.output));
    }

    void aFailureNamesTheScreenshot()
    {
        const Outcome outcome = run(QStringLiteral("screenshot"));
        const auto file =
            QRegularExpression(QStringLiteral("The file is (.+)")).match(outcome.output).captured(1);
        QVERIFY(file.endsWith(QLatin1String("/pictures/save-changes-1.png")));
        QCOMPARE(
            outcome.failures,
            QStringList(lines({QStringLiteral("The dialog \"save-changes\" differs from what was expected:"),
                               QStringLiteral("  title: \"Unsaved changes\" where \"Changes\" was expected"),
                               QStringLiteral("  screenshot: ") + file})));
    }

    void aFailureIsToldAtTheLineThatForbidsTheDialog()
    {
        const Outcome outcome = run(QStringLiteral("forbidden"));
        QCOMPARE(outcome.failures, QStringList(unexpected(description())));
        QVERIFY(!outcome.output.contains(QStringLiteral("failing-dialogs.cpp(1)"))); // the driver's
    }

    void codeThatAsksForEverIsEnded()
    {
        const Outcome outcome = run(QStringLiteral("askingForEver"));
        QCOMPARE(outcome.failures.size(), 100);
        QCOMPARE(outcome.failures.constFirst(), unexpected(description()));
        QCOMPARE(outcome.failures.constLast(), QStringLiteral("The same unexpected dialog has come again."));
        QVERIFY(outcome.output.contains(
            QStringLiteral("100 unexpected dialogs: the code seems to ask until it gets another answer.")));
    }

    void aFailureOutsideOfEveryTestEndsTheProcess()
    {
        const Outcome outcome = run(QStringLiteral("no-framework"));
        QVERIFY(outcome.hasCrashed);
        QVERIFY2(outcome.output.contains(QStringLiteral(
                     "The expected dialog \"save-changes\" has not come.\nNo dialog has come.\n(No test "
                     "function of QtTest runs, and no failure handler is set. GoogleTest needs "
                     "reportFailuresToGoogleTest(), any other framework setFailureHandler().)\n")),
                 qPrintable(outcome.output));
    }

    void codeThatAsksForEverByAnotherDialogIsEnded()
    {
        const Outcome outcome = run(QStringLiteral("askingForEverByAnotherKind"));
        QVERIFY(outcome.hasCrashed);
        QCOMPARE(outcome.failures.size(), 19);
        QVERIFY(outcome.output.contains(
            QStringLiteral("20 time-outs: the code seems to ask until it gets another answer.")));
    }

    void aMenuMayEndTheDriver()
    {
        if (QGuiApplication::platformName() != QLatin1String("offscreen"))
            return; // a window manager may close the menu
        const Outcome outcome = run(QStringLiteral("openUnderAMenuThatEndsTheDriver"));
        QVERIFY(!outcome.hasCrashed);
        QCOMPARE(outcome.failures.constFirst(), stayedOpen(QStringLiteral(", behind a QMenu")));
    }

    void timeOutsOfWaitingCountToo()
    {
        const Outcome outcome = run(QStringLiteral("endingForEver"));
        QVERIFY(outcome.hasCrashed);
        QVERIFY(outcome.output.contains(
            QStringLiteral("time-outs: the code seems to ask until it gets another answer.")));
    }

    void aDriverNeedsAnApplication()
    {
        const Outcome outcome = run(QStringLiteral("no-application"));
        QVERIFY(outcome.hasCrashed);
        QVERIFY(outcome.output.contains(QStringLiteral("A DialogDriver needs a QApplication.\n")));
    }

    void aFailureWhileGoogleTestRunsNoTestsEndsTheProcess_data()
    {
        QTest::addColumn<QString>("when");
        for (const char* when : {"early", "late"})
            QTest::addRow("%s", when) << QString::fromLatin1(when);
    }

    void aFailureWhileGoogleTestRunsNoTestsEndsTheProcess()
    {
        QFETCH(const QString, when);
        const Outcome outcome = finish(*start(FAILING_DIALOGS_UNDER_GOOGLE_TEST, when), QStringLiteral("-"));
        QVERIFY(outcome.hasCrashed);
        QVERIFY(outcome.output.contains(QStringLiteral(
            "The expected dialog \"save-changes\" has not come.\nNo dialog has come.\n(GoogleTest "
            "runs no tests.)\n")));
        QCOMPARE(outcome.output.contains(QStringLiteral("Failing.NeverCame")),
                 when == QStringLiteral("late"));
    }

    void underGoogleTestAFailureIsOneOfItsOwn()
    {
        const Outcome outcome =
            finish(*start(FAILING_DIALOGS_UNDER_GOOGLE_TEST, QStringLiteral("--gtest_color=no")),
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

private:
    // Runs a case of failing-dialogs.
    Outcome run(const QString& argument)
    {
        auto process = std::move(m_early[argument]);
        if (!process)
            process = start(FAILING_DIALOGS, argument);
        return finish(*process,
                      QStringLiteral("FAIL!  : TestFailing::\\w+\\(\\) (.*?)\\n   Loc: "
                                     "\\[[^\\n]*failing-dialogs.cpp\\(\\d+\\)\\]"));
    }

    std::map<QString, std::unique_ptr<QProcess>> m_early;
};

QUILLET_TEST_MAIN(TestDialogDriverFailures)
#include "tst_DialogDriverFailures.moc"
