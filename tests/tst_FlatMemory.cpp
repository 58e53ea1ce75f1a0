#include "Allocations.h"
#include "TemplateTestCase.h"

#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QPushButton>

using Quillet::MessageDialog;
using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;

namespace {

// Takes care of what Qt has put off.
void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

void accept(QWidget& parent)
{
    QTimer::singleShot(0, &parent, [&parent] { parent.findChild<MessageDialog*>()->accept(); });
}

// Makes \a cycle run until Qt has filled its caches, and then often. The process must then hold exactly as
// many blocks as before, and of the same size but for the few bytes by which malloc() rounds.
template <typename Cycle>
void compareHeap(int count, const Cycle& cycle)
{
    const int cycles = rounds(count);
    const auto run = [&cycle](int times) {
        for (int i = 0; i < times; ++i) {
            cycle(i);
            if (i % 20 == 19)
                settle();
        }
    };
    run(200);
    const Heap before = heap();
    run(cycles);
    const Heap after = heap();
    qInfo("%d cycles: %zu blocks and %zu bytes before, %zu and %zu after",
          cycles,
          before.blocks,
          before.bytes,
          after.blocks,
          after.bytes);
    QCOMPARE(after.blocks, before.blocks);
    QVERIFY(after.bytes <= before.bytes + 1024);
}

} // namespace

class TestFlatMemory : public TemplateTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { cacheNoPixmaps(); }

    void whatIsLostIsSeen()
    {
        // Otherwise the cases below would compare in vain.
        const Heap before = heap();
        const auto lost = std::make_unique<int>(1);
        QCOMPARE(heap().blocks, before.blocks + 1);
        QVERIFY(!countsMalloc() || heap().bytes > before.bytes);
    }

    void restylesOfAShownBox()
    {
        MessageDialog dialog(QStringLiteral("text"), QMessageBox::Warning);
        QPushButton* const buttons[] = {dialog.addButton(QMessageBox::Ok),
                                        dialog.addButton(QMessageBox::Cancel)};
        constexpr QMessageBox::Icon icons[] = {
            QMessageBox::Critical, QMessageBox::Information, QMessageBox::Question, QMessageBox::Warning};
        dialog.show();
        compareHeap(4000, [&](int i) {
            dialog.setDefaultButton(buttons[i % 2]);
            dialog.setIcon(icons[i % 4]);
            dialog.updateStyle();
        });
    }

    void showsOfOneBox()
    {
        MessageDialog dialog(QStringLiteral("text"), QMessageBox::Warning);
        dialog.addButton(QMessageBox::Ok);
        compareHeap(2000, [&](int) {
            dialog.show();
            dialog.hide();
        });
    }

    void boxesThatAreRunAndDeleted()
    {
        QWidget parent;
        compareHeap(1000, [&](int) {
            accept(parent);
            MessageDialog dialog(QStringLiteral("text"), QMessageBox::Question, &parent);
            dialog.addButton(QMessageBox::Yes);
            dialog.setCallbacks([](MessageDialog&) { return true; }, [](MessageDialog&) { return true; });
            dialog.exec();
        });
    }

    void templatesThatAreRun()
    {
        QStringList journal;
        const MessageDialogTemplate t = saveChanges(journal);
        const LogCapture log(4);
        const ScopedPreprocessor preprocessor(QStringLiteral("title"), [](MessageDialogTemplate& copy) {
            copy.title += QStringLiteral(" (adjusted)");
        });
        QWidget parent;
        compareHeap(1000, [&](int) {
            delete t.createDialog(&parent);
            accept(parent);
            t.exec(&parent);
        });
    }

    void registrationsReplacementsAndRemovals()
    {
        QStringList journal;
        MessageDialogTemplate t = saveChanges(journal);
        quorvel::GetLoggerDelegate() = [](std::int32_t, const std::wstring&) {};
        compareHeap(10000, [&](int i) {
            t.id = QString::number(i % 7);
            MessageDialogTemplate::registerTemplate(t);
            MessageDialogTemplate::registerTemplate(t);
            if (i % 2 == 0)
                MessageDialogTemplate::unregisterTemplate(t.id);
            MessageDialogTemplate::unregisterTemplate(QStringLiteral("unknown"));
            if (i % 100 == 99) {
                while (!MessageDialogTemplate::getRegisteredTemplates().empty()) {
                    MessageDialogTemplate::unregisterTemplate(
                        QString(MessageDialogTemplate::getRegisteredTemplates().begin()->first));
                }
            }
        });
    }

    void preprocessorsAddedAndRemoved()
    {
        const std::array<void*, 16> ballast = {};
        const auto preprocessor = [ballast](MessageDialogTemplate& t) {
            t.parent = static_cast<QWidget*>(ballast[0]);
        };
        compareHeap(20000, [&](int i) {
            const QString name = QString::number(i % 7);
            MessageDialogTemplatePreprocessors::add(name, preprocessor);
            MessageDialogTemplatePreprocessors::add(name, preprocessor);
            MessageDialogTemplatePreprocessors::remove(name);
        });
    }

    void documentsThatAreReadDrawnAndHit()
    {
        const QString accepted = QStringLiteral(
            "<svg fill='red'><g stroke='blue'><path d='M0 0L50 50A5 5 0 0 1 70 70z'/></g></svg>");
        const QString rejected = QStringLiteral("<svg><path d='M0 0L5 5'/><path d='M0 0X5'/></svg>");
        QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
        compareHeap(3000, [&](int) {
            Quillet::PainterPathContainer container;
            Quillet::parseSvg(accepted, container);
            Quillet::parseSvg(rejected, container);
            Quillet::parseSvg(QStringLiteral("<svg"), container);
            QPainter painter(&image);
            container.draw(painter);
            container.setTransform(
                lumo::AffineTransform<double>(Eigen::Matrix4d(Eigen::Matrix4d::Identity() * 2)));
            container.draw(painter);
            container.contains(QPointF(1, 1));
        });
    }
};

// An X server's events are allocated whenever they come, so this measures beside a platform without one.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    TestFlatMemory test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_FlatMemory.moc"
