#include "VectorPage.h"

#include "DocumentBox.h"
#include "ShapeList.h"
#include "VectorCanvas.h"
#include "VectorDocument.h"

#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QDragEnterEvent>
#include <QtGui/QDropEvent>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>

#include <utility>

namespace {

constexpr int picture_size = 256;
constexpr int shape_list_width = 390;
constexpr double zoom_step = 1.25;

/// The file that \a data holds, if it is one file of this machine; else empty.
QString localFile(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

QToolButton* createButton(const QString& text, const QString& toolTip, Qt::Key key)
{
    auto* button = new QToolButton;
    button->setText(text);
    button->setShortcut(QKeySequence(key));
    button->setToolTip(QStringLiteral("%1 (key %2)").arg(toolTip, button->shortcut().toString()));
    return button;
}

} // namespace

VectorPage::VectorPage(QWidget* parent)
    : GalleryPage(parent),
      m_documents(new DocumentBox),
      m_canvas(new VectorCanvas),
      m_rotation(new QSlider(Qt::Horizontal)),
      m_angle(new QLabel),
      m_shapes(new ShapeList),
      m_report(new QLabel)
{
    m_report->setObjectName(QStringLiteral("report"));
    m_report->setTextFormat(Qt::PlainText);
    m_report->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_report->setWordWrap(true);
    m_shapes->setMinimumWidth(shape_list_width);

    auto* layout = new QGridLayout(this);
    layout->addLayout(createDocumentRow(), 0, 0);
    layout->addLayout(createViewRow(), 0, 1);
    layout->addWidget(m_canvas, 1, 0);
    layout->addWidget(m_shapes, 1, 1);
    layout->addWidget(m_report, 2, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(1, 1);

    setAcceptDrops(true);
    addDocuments();
    connectParts();
    showCurrentDocument();
}

QString VectorPage::name() const
{
    return QStringLiteral("vector");
}

QString VectorPage::title() const
{
    return QStringLiteral("Vector paths");
}

QVector<Picture> VectorPage::pictures()
{
    QVector<Picture> result;
    for (const VectorSample& sample : vectorSamples()) {
        const VectorDocument document = readVectorDocument(sample.fileName);
        result.append({QStringLiteral("vector-") + sample.name, drawing(document, picture_size)});
    }
    return result;
}

void VectorPage::open(const QString& fileName)
{
    m_documents->choose(fileName);
    // The file may have changed since, so it is read again even where it was the current one.
    showCurrentDocument();
}

void VectorPage::dragEnterEvent(QDragEnterEvent* event)
{
    if (!localFile(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void VectorPage::dropEvent(QDropEvent* event)
{
    open(localFile(*event->mimeData()));
    event->acceptProposedAction();
}

QLayout* VectorPage::createDocumentRow()
{
    auto* openButton = new QToolButton;
    openButton->setText(QStringLiteral("Open…"));
    openButton->setToolTip(QStringLiteral("Opens an SVG file. It can be dropped onto the page as well."));
    connect(openButton, &QToolButton::clicked, this, &VectorPage::chooseFile);

    auto* row = new QHBoxLayout;
    row->addWidget(m_documents, 1);
    row->addWidget(openButton);
    return row;
}

QLayout* VectorPage::createViewRow()
{
    auto* smaller = createButton(QStringLiteral("−"), QStringLiteral("Zoom out"), Qt::Key_Minus);
    auto* larger = createButton(QStringLiteral("+"), QStringLiteral("Zoom in"), Qt::Key_Plus);
    auto* fit = createButton(QStringLiteral("Fit"), QStringLiteral("Show the whole picture"), Qt::Key_0);
    connect(smaller, &QToolButton::clicked, m_canvas, [this] { m_canvas->zoom(1 / zoom_step); });
    connect(larger, &QToolButton::clicked, m_canvas, [this] { m_canvas->zoom(zoom_step); });
    connect(fit, &QToolButton::clicked, m_canvas, &VectorCanvas::fit);

    m_rotation->setRange(-180, 180);
    m_rotation->setPageStep(15);
    m_rotation->setToolTip(QStringLiteral("Rotation"));
    m_angle->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_angle->setMinimumWidth(m_angle->fontMetrics().boundingRect(QStringLiteral("−180° ")).width());

    auto* row = new QHBoxLayout;
    row->addWidget(smaller);
    row->addWidget(larger);
    row->addWidget(fit);
    row->addWidget(m_rotation, 1);
    row->addWidget(m_angle);
    return row;
}

void VectorPage::connectParts()
{
    connect(m_documents,
            QOverload<int>::of(&DocumentBox::currentIndexChanged),
            this,
            &VectorPage::showCurrentDocument);
    connect(m_rotation, &QSlider::valueChanged, this, &VectorPage::setRotation);
    connect(m_canvas, &VectorCanvas::shapeHovered, this, &VectorPage::setCurrentShape);
    connect(m_shapes, &ShapeList::shapeSelected, m_canvas, &VectorCanvas::setLitShape);
}

void VectorPage::addDocuments()
{
    m_documents->addSamples(vectorSamples());
    m_documents->insertSeparator(m_documents->count());
    m_documents->addSamples(dialogIcons());
    m_documents->insertSeparator(m_documents->count());
}

void VectorPage::chooseFile()
{
    const QString fileName = QFileDialog::getOpenFileName(this,
                                                          QStringLiteral("Open an SVG file"),
                                                          QString(),
                                                          QStringLiteral("SVG files (*.svg);;All files (*)"));
    if (!fileName.isEmpty())
        open(fileName);
}

void VectorPage::showCurrentDocument()
{
    VectorDocument document = readVectorDocument(m_documents->fileName());
    m_report->setText(document.report);
    m_report->setStyleSheet(document.accepted ? QString() : QStringLiteral("color: #b00020"));
    m_shapes->setPicture(*document.picture);
    m_canvas->setPicture(std::move(document.picture));
    m_rotation->setValue(0);
    setRotation(0);
}

void VectorPage::setRotation(int degrees)
{
    m_angle->setText(QStringLiteral("%1°").arg(degrees));
    m_canvas->setRotation(degrees);
}

void VectorPage::setCurrentShape(int index)
{
    m_canvas->setLitShape(index);
    m_shapes->selectShape(index);
}
