// What a MessageDialog costs beside a QMessageBox that is given the same two style sheets and the same
// picture by hand. The ratio of the two rows is the figure to look at.

#include <Quillet/MessageDialog.h>

#include <QtCore/QFile>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <benchmark/benchmark.h>

namespace {

const QString text = QStringLiteral("Save the changes to Harbour.svg?");
constexpr QMessageBox::StandardButtons buttons =
    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel;

QString content(const char* resource)
{
    QFile file(QString::fromLatin1(resource));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

void styleByHand(QMessageBox& box)
{
    box.setStyleSheet(content(":/QSS/MessageBox.qss"));
    box.button(QMessageBox::Save)->setStyleSheet(content(":/QSS/PrimaryButton.qss"));
    const QList<QAbstractButton*> all = box.buttons();
    for (QAbstractButton* button : all)
        button->setMinimumWidth(button->sizeHint().width());
    box.setIconPixmap(QPixmap(QStringLiteral(":/Icons/Question.svg")));
}

void showAndHide(QMessageBox& box)
{
    box.show();
    QCoreApplication::processEvents();
    box.hide();
}

void firstShow_MessageDialog(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        Quillet::MessageDialog box(text, QMessageBox::Question);
        box.setStandardButtons(buttons);
        showAndHide(box);
    }
}

void firstShow_styledByHand(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        QMessageBox box(QMessageBox::Question, QStringLiteral("Question"), text, buttons);
        box.show();
        styleByHand(box);
        QCoreApplication::processEvents();
        box.hide();
    }
}

void laterShow_MessageDialog(benchmark::State& state)
{
    Quillet::MessageDialog box(text, QMessageBox::Question);
    box.setStandardButtons(buttons);
    showAndHide(box);
    for ([[maybe_unused]] auto _ : state)
        showAndHide(box);
}

void laterShow_styledByHand(benchmark::State& state)
{
    QMessageBox box(QMessageBox::Question, QStringLiteral("Question"), text, buttons);
    box.show();
    styleByHand(box);
    QCoreApplication::processEvents();
    box.hide();
    for ([[maybe_unused]] auto _ : state)
        showAndHide(box);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);

    benchmark::RegisterBenchmark("first show, MessageDialog", firstShow_MessageDialog);
    benchmark::RegisterBenchmark("first show, styled by hand", firstShow_styledByHand);
    benchmark::RegisterBenchmark("later show, MessageDialog", laterShow_MessageDialog);
    benchmark::RegisterBenchmark("later show, styled by hand", laterShow_styledByHand);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
}
