#include "GalleryPage.h"
#include "GalleryWindow.h"
#include "LogView.h"
#include "TemplatesPage.h"
#include "TestCase.h"

#include <QuilletTesting/DialogDriver.h>

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <quorvel/Logger.h>

#include <QtCore/QPointer>
#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>

#include <cmath>

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::Testing::DialogDriver;

namespace {

/// The gallery, and its templates page in the hands of a user.
struct OpenedPage
{
    void choose(const QString& id) const
    {
        const QList<QListWidgetItem*> found = list->findItems(id, Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        list->setCurrentItem(found.first());
    }

    void type(const QString& field, const QString& text) const
    {
        page->findChild<QLineEdit*>(field)->setText(text);
    }

    QAbstractButton* button(const QString& text) const
    {
        const QList<QAbstractButton*> buttons = page->findChildren<QAbstractButton*>();
        for (QAbstractButton* each : buttons) {
            if (each->text().remove(QLatin1Char('&')) == text)
                return each;
        }
        return nullptr;
    }

    void click(const QString& text) const
    {
        QVERIFY2(button(text), qPrintable(text));
        button(text)->click();
    }

    /// Switches a preprocessor on or off.
    void clickPreprocessor(const QString& preprocessor) const
    {
        page->findChild<QCheckBox*>(preprocessor)->click();
    }

    /// Runs the chosen template and answers its dialog with the button that shows \a text.
    void execAndClick(const QString& text) const
    {
        DialogDriver driver;
        driver.expect(list->currentItem()->text()).click(text);
        click(QStringLiteral("exec()"));
    }

    QStringList identifiers() const
    {
        QStringList result;
        for (int i = 0; i < list->count(); ++i)
            result.append(list->item(i)->text());
        return result;
    }

    /// The lines since the page was made, or since this was called last.
    QStringList takeLog() const
    {
        const QString lines = log->toPlainText();
        log->clear();
        return lines.isEmpty() ? QStringList() : lines.split(QLatin1Char('\n'));
    }

    std::unique_ptr<GalleryWindow> window = std::make_unique<GalleryWindow>();
    TemplatesPage* page = window->findChild<TemplatesPage*>();
    QListWidget* list = page->findChild<QListWidget*>();
    QPlainTextEdit* log = page->findChild<QPlainTextEdit*>(QStringLiteral("log"));
};

const MessageDialogTemplate& registered(const QString& id)
{
    return MessageDialogTemplate::getRegisteredTemplates().at(id);
}

QStringList registeredIdentifiers()
{
    QStringList result;
    for (const auto& entry : MessageDialogTemplate::getRegisteredTemplates())
        result.append(entry.first);
    return result;
}

/// What a label shows of \a text, with the tags of rich text read.
QString shown(const QString& text)
{
    QTextDocument document;
    if (Qt::mightBeRichText(text))
        document.setHtml(text);
    else
        document.setPlainText(text);
    return document.toPlainText();
}

double luminance(const QColor& color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return qMax(a, b) / qMin(a, b);
}

QTextCharFormat formatOfLine(const QWidget& view, int line)
{
    const auto* const lines = view.findChild<QPlainTextEdit*>();
    return lines->document()->findBlockByNumber(line).begin().fragment().charFormat();
}

void setColors(QWidget& widget, const QColor& text, const QColor& base)
{
    QPalette palette;
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Base, base);
    widget.setPalette(palette);
}

} // namespace

class TestGalleryTemplates : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSamplesAreRegisteredAndListed()
    {
        const OpenedPage opened;
        const QStringList samples = {QStringLiteral("about"),
                                     QStringLiteral("delete-file"),
                                     QStringLiteral("export-failed"),
                                     QStringLiteral("save-changes")};
        QCOMPARE(registeredIdentifiers(), samples);
        QCOMPARE(opened.identifiers(), samples);
        QCOMPARE(opened.takeLog().constFirst(),
                 QStringLiteral("[2] MessageDialogTemplate: registering dialog template: about"));
    }

    void aChosenTemplateIsInTheEditor()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("delete-file"));
        const auto& t = registered(QStringLiteral("delete-file"));
        const auto* const page = opened.page;
        QCOMPARE(page->findChild<QLineEdit*>(QStringLiteral("id"))->text(), t.id);
        QCOMPARE(page->findChild<QComboBox*>(QStringLiteral("icon"))->currentText(),
                 QStringLiteral("Warning"));
        QCOMPARE(page->findChild<QLineEdit*>(QStringLiteral("title"))->text(), t.title);
        QCOMPARE(page->findChild<QPlainTextEdit*>(QStringLiteral("text"))->toPlainText(), t.text);
        QCOMPARE(page->findChild<QLineEdit*>(QStringLiteral("slot 1 text"))->text(), t.buttons[1].text);
        QCOMPARE(page->findChild<QComboBox*>(QStringLiteral("slot 1 role"))->currentText(),
                 QStringLiteral("RejectRole"));
    }

    void everyFieldOfTheEditorIsStored()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        opened.page->findChild<QComboBox*>(QStringLiteral("icon"))
            ->setCurrentText(QStringLiteral("Critical"));
        opened.type(QStringLiteral("title"), QStringLiteral("Fire"));
        opened.page->findChild<QPlainTextEdit*>(QStringLiteral("text"))->setPlainText(QStringLiteral("A\nB"));
        opened.type(QStringLiteral("slot 3 text"), QStringLiteral("Run"));
        opened.page->findChild<QComboBox*>(QStringLiteral("slot 3 role"))
            ->setCurrentText(QStringLiteral("HelpRole"));
        opened.click(QStringLiteral("escape")); // the first such switch, slot 0's; was on
        opened.click(QStringLiteral("Replace"));

        const auto& t = registered(QStringLiteral("about"));
        QCOMPARE(t.icon, QMessageBox::Critical);
        QCOMPARE(t.title, QStringLiteral("Fire"));
        QCOMPARE(t.text, QStringLiteral("A\nB"));
        QCOMPARE(t.buttons[3].text, QStringLiteral("Run"));
        QCOMPARE(t.buttons[3].role, QMessageBox::HelpRole);
        QVERIFY(t.buttons[0].isDefault);
        QVERIFY(!t.buttons[0].isEscape);
        QCOMPARE(registeredIdentifiers().size(), 4);
    }

    void aNewIdentifierIsRegisteredBesideTheOthers()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        QVERIFY(!opened.button(QStringLiteral("Register")));
        opened.takeLog();
        opened.type(QStringLiteral("id"), QStringLiteral("credits"));
        opened.click(QStringLiteral("Register"));
        QVERIFY(opened.button(QStringLiteral("Replace")));
        QCOMPARE(opened.identifiers(), registeredIdentifiers());
        QCOMPARE(opened.list->currentItem()->text(), QStringLiteral("credits"));
        QCOMPARE(registered(QStringLiteral("credits")).title, registered(QStringLiteral("about")).title);
        QCOMPARE(
            opened.takeLog(),
            QStringList({QStringLiteral("[2] MessageDialogTemplate: registering dialog template: credits")}));
    }

    void anUnregisteredTemplateStaysInTheEditor()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        opened.takeLog();
        opened.click(QStringLiteral("Unregister"));
        QVERIFY(!registeredIdentifiers().contains(QStringLiteral("about")));
        QCOMPARE(opened.identifiers(), registeredIdentifiers());
        QCOMPARE(
            opened.takeLog(),
            QStringList({QStringLiteral("[2] MessageDialogTemplate: unregistering dialog template: about")}));
        opened.click(QStringLiteral("Register"));
        QVERIFY(registeredIdentifiers().contains(QStringLiteral("about")));
    }

    void anotherEntryStaysChosenWhenOneIsUnregistered()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("delete-file"));
        opened.type(QStringLiteral("id"), QStringLiteral("about"));
        opened.click(QStringLiteral("Unregister"));
        QCOMPARE(opened.list->currentItem()->text(), QStringLiteral("delete-file"));
    }

    void onlyAChosenTemplateCanBeRun()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        QVERIFY(opened.button(QStringLiteral("exec()"))->isEnabled());
        opened.click(QStringLiteral("Unregister"));
        QVERIFY(!opened.button(QStringLiteral("exec()"))->isEnabled());
        QVERIFY(!opened.button(QStringLiteral("createDialog()"))->isEnabled());
    }

    void choosingTheSameEntryAgainUndoesTheEdits()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        const QString state = QStringLiteral("state");
        QCOMPARE(opened.page->findChild<QLabel*>(state)->text(), QString());
        opened.type(QStringLiteral("title"), QStringLiteral("Fire"));
        QCOMPARE(opened.page->findChild<QLabel*>(state)->text(), QStringLiteral("not registered yet"));
        QTest::keyClick(opened.list, Qt::Key_Return);
        QCOMPARE(opened.page->findChild<QLineEdit*>(QStringLiteral("title"))->text(),
                 QStringLiteral("About Harbour"));
        QCOMPARE(opened.page->findChild<QLabel*>(state)->text(), QString());
    }

    void anEmptyIdentifierIsRefusedByTheLibrary_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("verb");
        QTest::newRow("register") << QStringLiteral("Register") << QStringLiteral("register");
        QTest::newRow("unregister") << QStringLiteral("Unregister") << QStringLiteral("unregister");
    }

    void anEmptyIdentifierIsRefusedByTheLibrary()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, verb);
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        opened.takeLog();
        opened.type(QStringLiteral("id"), QString());
        opened.click(button);
        QCOMPARE(opened.takeLog(),
                 QStringList({QStringLiteral("[3] MessageDialogTemplate: trying to %1 dialog template with "
                                             "empty identifier!")
                                  .arg(verb)}));
        QCOMPARE(registeredIdentifiers().size(), 4);
        QCOMPARE(opened.list->currentItem()->text(), QStringLiteral("about"));
    }

    void aRunLogsCallbacksActionAndResult()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("save-changes"));
        opened.takeLog();
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes"))
            .run([&](QMessageBox& box) { QCOMPARE(box.parentWidget(), opened.window.get()); })
            .click(QStringLiteral("Discard"));
        opened.click(QStringLiteral("exec()"));
        QCOMPARE(
            opened.takeLog(),
            QStringList({QStringLiteral("[2] MessageDialogTemplate: executing dialog template: save-changes"),
                         QStringLiteral("pre-exec callback: go on"),
                         QStringLiteral("post-exec callback: go on"),
                         QStringLiteral("action of slot 1: Discard"),
                         QStringLiteral("exec() returned 2 (DestructiveRole)")}));
    }

    void aVetoEndsTheRunWithoutAnAction_data()
    {
        QTest::addColumn<QString>("veto");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("pre-exec") << QStringLiteral("Pre-exec callback vetoes")
                                  << QStringList({QStringLiteral("pre-exec callback: veto")});
        QTest::newRow("post-exec") << QStringLiteral("Post-exec callback vetoes")
                                   << QStringList({QStringLiteral("pre-exec callback: go on"),
                                                   QStringLiteral("post-exec callback: veto")});
    }

    void aVetoEndsTheRunWithoutAnAction()
    {
        QFETCH(const QString, veto);
        QFETCH(const QStringList, lines);
        const OpenedPage opened;
        opened.choose(QStringLiteral("save-changes"));
        opened.click(veto);
        opened.takeLog();
        DialogDriver driver;
        if (lines.size() > 1) // it gets to its loop
            driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        opened.click(QStringLiteral("exec()"));
        QCOMPARE(opened.takeLog().mid(1),
                 lines + QStringList({QStringLiteral("exec() returned -1 (InvalidRole)")}));
    }

    void aRunWithoutSlotsReturnsNoRole()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        opened.type(QStringLiteral("slot 0 text"), QString());
        opened.click(QStringLiteral("Replace"));
        opened.execAndClick(QStringLiteral("OK"));
        QCOMPARE(opened.takeLog().constLast(), QStringLiteral("exec() returned 9 (NRoles)"));
    }

    void aReplacedTemplateKeepsItsCallbacksAndNamesItsActionsAnew()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("export-failed"));
        opened.type(QStringLiteral("slot 1 text"), QStringLiteral("Ignore"));
        opened.click(QStringLiteral("Replace"));
        opened.takeLog();
        DialogDriver driver;
        driver.expect(QStringLiteral("export-failed"))
            .run([](QMessageBox& box) {
                QVERIFY(box.detailedText().contains(QStringLiteral("lighthouse.png")));
            })
            .click(QStringLiteral("Ignore"));
        opened.click(QStringLiteral("exec()"));
        const QStringList lines = opened.takeLog();
        QCOMPARE(lines.count(QStringLiteral("pre-exec callback: go on")), 1);
        QVERIFY(lines.contains(QStringLiteral("action of slot 1: Ignore")));
    }

    void anOpenedDialogRunsNoCallbackAndNoAction()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("save-changes"));
        opened.takeLog();
        DialogDriver driver;
        QPointer<QMessageBox> box;
        driver.expect(QStringLiteral("save-changes"))
            .run([&](QMessageBox& shown) {
                box = &shown;
                QCOMPARE(box->parentWidget(), opened.window.get());
            })
            .click(QStringLiteral("Save"));
        opened.click(QStringLiteral("createDialog()")); // returns at once
        QVERIFY(driver.wait());
        QCOMPARE(
            opened.takeLog(),
            QStringList({QStringLiteral("[2] MessageDialogTemplate: creating dialog from dialog template: "
                                        "save-changes"),
                         QStringLiteral("open() of \"save-changes\""),
                         QStringLiteral("clicked: Save")}));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!box);
    }

    void aPreprocessorWorksWhileItIsOn_data()
    {
        QTest::addColumn<QString>("preprocessor");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("translate") << QStringLiteral("1-translate") << QStringLiteral("Eine Datei löschen")
                                   << QStringLiteral("Sketch .svg löschen? Das ist endgültig.");
        QTest::newRow("prefix") << QStringLiteral("2-prefix") << QStringLiteral("Gallery: Delete a file")
                                << QStringLiteral("Delete Sketch .svg? It cannot be brought back.");
        QTest::newRow("escape") << QStringLiteral("3-escape") << QStringLiteral("Delete a file")
                                << QStringLiteral("Delete Sketch <b>.svg? It cannot be brought back.");
    }

    void aPreprocessorWorksWhileItIsOn()
    {
        QFETCH(const QString, preprocessor);
        QFETCH(const QString, title);
        QFETCH(const QString, text);
        const OpenedPage opened;
        const auto& t = registered(QStringLiteral("delete-file"));
        opened.clickPreprocessor(preprocessor);
        const std::unique_ptr<QMessageBox> on(t.createDialog());
        QCOMPARE(on->windowTitle(), title);
        QCOMPARE(shown(on->text()), text);
        opened.clickPreprocessor(preprocessor);
        const std::unique_ptr<QMessageBox> off(t.createDialog());
        QCOMPARE(off->windowTitle(), t.title);
        QCOMPARE(off->text(), t.text);
    }

    void thePreprocessorsWorkTogether()
    {
        const OpenedPage opened;
        opened.takeLog();
        for (const char* const each : {"3-escape", "2-prefix", "1-translate"})
            opened.clickPreprocessor(QLatin1String(each));
        QCOMPARE(opened.takeLog().constFirst(), QStringLiteral("add(\"3-escape\") returned true"));
        const std::unique_ptr<QMessageBox> box(registered(QStringLiteral("delete-file")).createDialog());
        QCOMPARE(box->windowTitle(), QStringLiteral("Gallery: Eine Datei löschen"));
        QCOMPARE(shown(box->text()), QStringLiteral("Sketch <b>.svg löschen? Das ist endgültig."));
        QVERIFY(buttonOf(*box, QStringLiteral("Löschen")));
    }

    void anEscapedTextIsShownAsItStands_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("tag") << QStringLiteral("a <b>.svg");
        QTest::newRow("ampersand alone") << QStringLiteral("Salt & pepper");
        QTest::newRow("quotation marks") << QStringLiteral("\"Harbour\"");
        QTest::newRow("entity") << QStringLiteral("&lt;");
    }

    void anEscapedTextIsShownAsItStands()
    {
        QFETCH(const QString, text);
        const OpenedPage opened;
        opened.clickPreprocessor(QStringLiteral("3-escape"));
        MessageDialogTemplate t;
        t.text = text;
        const std::unique_ptr<QMessageBox> box(t.createDialog());
        QCOMPARE(shown(box->text()), text);
    }

    void everyTextOfTheSamplesIsTranslated()
    {
        const OpenedPage opened;
        opened.clickPreprocessor(QStringLiteral("1-translate"));
        for (const auto& [id, t] : MessageDialogTemplate::getRegisteredTemplates()) {
            MessageDialogTemplate german = t;
            MessageDialogTemplatePreprocessors::apply(german);
            QVERIFY2(german.title != t.title && german.text != t.text, qPrintable(id));
            for (std::size_t i = 0; i < t.buttons.size() && !t.buttons[i].text.isEmpty(); ++i)
                QVERIFY2(german.buttons[i].text != t.buttons[i].text, qPrintable(t.buttons[i].text));
        }
    }

    void theThresholdSuppressesLinesBelowIt()
    {
        const OpenedPage opened;
        opened.choose(QStringLiteral("about"));
        opened.takeLog();
        auto* const threshold = opened.page->findChild<QSpinBox*>();

        threshold->setValue(3);
        opened.click(QStringLiteral("Replace"));
        QCOMPARE(opened.takeLog(), QStringList());
        opened.type(QStringLiteral("id"), QString());
        opened.click(QStringLiteral("Register"));
        QCOMPARE(opened.takeLog().size(), 1);

        threshold->setValue(4);
        opened.click(QStringLiteral("Register"));
        QCOMPARE(opened.takeLog(), QStringList());
    }

    void linesOfLevel3StandOut_data()
    {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("base");
        QTest::newRow("light") << QColor(Qt::black) << QColor(Qt::white);
        QTest::newRow("dark") << QColor(238, 238, 238) << QColor(35, 35, 35);
    }

    void linesOfLevel3StandOut()
    {
        QFETCH(const QColor, text);
        QFETCH(const QColor, base);
        LogView view{QString()};
        view.add(QStringLiteral("own"));
        view.addDiagnostic(2, QStringLiteral("did"));
        view.addDiagnostic(3, QStringLiteral("refused"));
        setColors(view, text, base); // lines that are there already follow it

        QCOMPARE(view.findChild<QPlainTextEdit*>()->toPlainText(),
                 QStringLiteral("own\n[2] did\n[3] refused"));
        const QColor own = formatOfLine(view, 0).foreground().color();
        const QColor second = formatOfLine(view, 1).foreground().color();
        const QColor third = formatOfLine(view, 2).foreground().color();
        QCOMPARE(own, text);
        QVERIFY(own != second && own != third && second != third);
        QVERIFY(formatOfLine(view, 2).fontWeight() > QFont::Normal);
        QVERIFY(formatOfLine(view, 1).fontWeight() <= QFont::Normal);
        for (const QColor& color : {own, second, third})
            QVERIFY2(contrast(color, base) >= 4.5, qPrintable(color.name()));
    }

    void aDestroyedPageLeavesTheProcessAsItWas()
    {
        int lines = 0;
        quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring&) { ++lines; };
        quorvel::SetLoggerLevel(1);
        {
            const OpenedPage opened;
            opened.type(QStringLiteral("id"), QStringLiteral("credits"));
            opened.click(QStringLiteral("Register"));
            opened.clickPreprocessor(QStringLiteral("1-translate"));
            opened.clickPreprocessor(QStringLiteral("3-escape"));
        }
        QCOMPARE(lines, 0);
        QCOMPARE(registeredIdentifiers(), QStringList());
        QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
        QCOMPARE(quorvel::GetLoggerLevel(), 1);
        MessageDialogTemplate::unregisterTemplate(QStringLiteral("nobody"));
        QCOMPARE(lines, 1);
        quorvel::GetLoggerDelegate() = nullptr;
        quorvel::SetLoggerLevel(0);
    }

    void aTemplateOfAnotherOwnerSurvivesThePage()
    {
        MessageDialogTemplate t;
        t.id = QStringLiteral("host");
        MessageDialogTemplate::registerTemplate(t);
        {
            const OpenedPage opened;
            QVERIFY(opened.identifiers().contains(t.id));
        }
        QCOMPARE(registeredIdentifiers(), QStringList({t.id}));
        MessageDialogTemplate::unregisterTemplate(t.id);
    }

    void closingTheGalleryInsideTheLoopIsSafe()
    {
        OpenedPage opened;
        opened.choose(QStringLiteral("save-changes"));
        whenModal([&](QMessageBox&) { opened.window.reset(); });
        opened.click(QStringLiteral("exec()"));
        QVERIFY(!opened.window);
        QCOMPARE(registeredIdentifiers(), QStringList());
    }

    void aTemplateThatOutlivesThePageCanBeRun()
    {
        MessageDialogTemplate t;
        {
            const OpenedPage opened;
            t = registered(QStringLiteral("save-changes"));
        }
        DialogDriver driver;
        driver.expect(QStringLiteral("save-changes")).click(QStringLiteral("Save"));
        QCOMPARE(t.exec(), QMessageBox::AcceptRole);
    }

    void thePictureShowsALineThatStandsOut()
    {
        const OpenedPage opened;
        opened.page->prepareForPicture();
        QCOMPARE(opened.list->currentItem()->text(), QStringLiteral("save-changes"));
        QVERIFY(opened.log->toPlainText().contains(QStringLiteral("[3] ")));
        QVERIFY(opened.button(QStringLiteral("Replace")));
    }

    void noTwoControlsHaveTheSameMnemonic()
    {
        const OpenedPage opened;
        const QList<QLabel*> labels = opened.page->findChildren<QLabel*>();
        const QList<QAbstractButton*> buttons = opened.page->findChildren<QAbstractButton*>();
        QStringList keys;
        for (const QLabel* label : labels)
            keys.append(QKeySequence::mnemonic(label->text()).toString());
        for (const QAbstractButton* button : buttons)
            keys.append(QKeySequence::mnemonic(button->text()).toString());
        keys.removeAll(QString());
        QVERIFY(keys.size() > 15);
        QCOMPARE(keys.removeDuplicates(), 0);
    }

    void theTabKeyReachesEveryControlOfThePageInReadingOrder()
    {
        const OpenedPage opened;
        QStringList order;
        for (QWidget* each = opened.list; order.size() < 100; each = each->nextInFocusChain()) {
            if (each == opened.list && !order.isEmpty())
                break;
            if (opened.page->isAncestorOf(each) && (each->focusPolicy() & Qt::TabFocus))
                order.append(each->objectName());
        }
        order.removeAll(QString());
        QCOMPARE(order.first(), QStringLiteral("id"));
        QCOMPARE(order.last(), QStringLiteral("log"));
        const QStringList inOrder = {QStringLiteral("id"),
                                     QStringLiteral("slot 0 text"),
                                     QStringLiteral("slot 0 role"),
                                     QStringLiteral("slot 3 role"),
                                     QStringLiteral("1-translate"),
                                     QStringLiteral("log")};
        QStringList found;
        for (const QString& each : qAsConst(order)) {
            if (inOrder.contains(each))
                found.append(each);
        }
        QCOMPARE(found, inOrder);
    }
};

QUILLET_TEST_MAIN(TestGalleryTemplates)
#include "tst_GalleryTemplates.moc"
