#include "ConvertPage.h"

#include "ConvertedDocument.h"
#include "DocumentBox.h"
#include "VectorDocument.h"

#include <FindingText.h>
#include <Output.h>

#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int picture_size = 240;

QLabel* createPicture(const QString& name)
{
    auto* picture = new QLabel;
    picture->setObjectName(name);
    picture->setAlignment(Qt::AlignCenter);
    picture->setFixedHeight(picture_size + 2 * picture->frameWidth());
    picture->setMinimumWidth(picture_size);
    return picture;
}

QString filter()
{
    return QStringLiteral("SVG files (*.svg);;All files (*)");
}

} // namespace

ConvertPage::ConvertPage(QWidget* parent)
    : GalleryPage(parent),
      m_documents(new DocumentBox),
      m_original(createPicture(QStringLiteral("original"))),
      m_asItIs(createPicture(QStringLiteral("as-it-is"))),
      m_converted(createPicture(QStringLiteral("converted"))),
      m_findings(new QTreeWidget),
      m_report(new QLabel),
      m_save(new QPushButton(QStringLiteral("Save what was converted…")))
{
    m_report->setObjectName(QStringLiteral("report"));
    m_report->setTextFormat(Qt::PlainText);
    m_findings->setHeaderLabels({QStringLiteral("Found by"),
                                 QStringLiteral("Line"),
                                 QStringLiteral("Rule"),
                                 QStringLiteral("What"),
                                 QStringLiteral("What to do")});
    m_findings->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_findings->setRootIsDecorated(false);
    m_findings->setUniformRowHeights(true);
    m_findings->setAllColumnsShowFocus(true);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createDocumentRow());
    layout->addWidget(createPictures());
    layout->addWidget(m_report);
    layout->addWidget(m_findings, 1);

    m_documents->addSamples(designSamples());
    connect(m_documents,
            QOverload<int>::of(&DocumentBox::currentIndexChanged),
            this,
            &ConvertPage::showCurrentDocument);
    showCurrentDocument();
}

QString ConvertPage::name() const
{
    return QStringLiteral("convert");
}

QString ConvertPage::title() const
{
    return QStringLiteral("Converting SVG");
}

void ConvertPage::open(const QString& fileName)
{
    m_documents->choose(fileName);
    // The file may have changed since, so it is read again even where it was the current one.
    showCurrentDocument();
}

QWidget* ConvertPage::createDocumentRow()
{
    auto* openButton = new QPushButton(QStringLiteral("Open…"));
    connect(openButton, &QPushButton::clicked, this, &ConvertPage::chooseFile);
    connect(m_save, &QPushButton::clicked, this, &ConvertPage::save);

    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_documents, 1);
    layout->addWidget(openButton);
    layout->addWidget(m_save);
    return row;
}

QWidget* ConvertPage::createPictures()
{
    struct Column
    {
        QLabel* picture;
        QString title;
    };
    const Column columns[] = {{m_original, QStringLiteral("Qt's renderer, of the original")},
                              {m_asItIs, QStringLiteral("Quillet, of the original")},
                              {m_converted, QStringLiteral("Quillet, of what was converted")}};
    auto* pictures = new QWidget;
    auto* layout = new QGridLayout(pictures);
    layout->setContentsMargins(0, 0, 0, 0);
    int at = 0;
    for (const Column& column : columns) {
        layout->addWidget(new QLabel(column.title), 0, at, Qt::AlignHCenter);
        layout->addWidget(column.picture, 1, at++);
    }
    return pictures;
}

void ConvertPage::addFindings(const QString& command, const QVector<Finding>& findings)
{
    for (const Finding& each : findings) {
        if (each.weight != Finding::Note) {
            m_findings->addTopLevelItem(new QTreeWidgetItem(
                {command, QString::number(each.position.line), each.rule, each.message, each.advice}));
        }
    }
}

void ConvertPage::chooseFile()
{
    const QString fileName =
        QFileDialog::getOpenFileName(this, QStringLiteral("Open an SVG file"), QString(), filter());
    if (!fileName.isEmpty())
        open(fileName);
}

void ConvertPage::save()
{
    const QString fileName =
        QFileDialog::getSaveFileName(this, QStringLiteral("Save what was converted"), QString(), filter());
    if (fileName.isEmpty())
        return;
    const QString error = replaceFile(fileName, m_text.toUtf8());
    m_report->setText(error.isEmpty() ? QStringLiteral("Written: %1").arg(fileName)
                                      : QStringLiteral("%1: %2").arg(fileName, error));
}

void ConvertPage::showCurrentDocument()
{
    const ConvertedDocument document = convertDocument(m_documents->fileName(), picture_size);
    m_text = document.conversion.text;
    m_save->setEnabled(document.error.isEmpty());
    m_original->setPixmap(QPixmap::fromImage(document.original));
    m_asItIs->setPixmap(QPixmap::fromImage(document.asItIs));
    m_converted->setPixmap(QPixmap::fromImage(document.converted));

    m_findings->clear();
    addFindings(QStringLiteral("check"), document.check.findings);
    addFindings(QStringLiteral("convert"), document.conversion.losses);
    if (document.error.isEmpty()) {
        m_report->setText(QStringLiteral("The original is %1, with %2 of %3 shapes")
                              .arg(nameOf(document.check.verdict()))
                              .arg(document.check.shapes)
                              .arg(document.conversion.shapes));
    } else {
        m_report->setText(QStringLiteral("This cannot be converted: ") + document.error);
    }
}
