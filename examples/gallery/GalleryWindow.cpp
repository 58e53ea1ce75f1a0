#include "GalleryWindow.h"

#include "ConvertPage.h"
#include "DialogsPage.h"
#include "TemplatesPage.h"
#include "VectorPage.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QStackedWidget>

GalleryWindow::GalleryWindow(QWidget* parent)
    : QMainWindow(parent), m_list(new QListWidget), m_stack(new QStackedWidget), m_vectorPage(new VectorPage)
{
    setWindowTitle(QStringLiteral("Quillet gallery"));

    m_list->setFixedWidth(150);
    auto* panel = new QWidget;
    auto* layout = new QHBoxLayout(panel);
    layout->addWidget(m_list);
    layout->addWidget(m_stack, 1);
    setCentralWidget(panel);

    connect(m_list, &QListWidget::currentRowChanged, m_stack, &QStackedWidget::setCurrentIndex);
    addPage(new DialogsPage);
    addPage(new TemplatesPage);
    addPage(m_vectorPage);
    addPage(new ConvertPage);
    showPage(m_pages.first());
    resize(1100, 640);
}

const QVector<GalleryPage*>& GalleryWindow::pages() const
{
    return m_pages;
}

void GalleryWindow::showPage(GalleryPage* page)
{
    m_list->setCurrentRow(m_pages.indexOf(page));
}

void GalleryWindow::openFile(const QString& fileName)
{
    showPage(m_vectorPage);
    m_vectorPage->open(fileName);
}

void GalleryWindow::addPage(GalleryPage* page)
{
    m_pages.append(page);
    m_list->addItem(page->title());
    m_stack->addWidget(page);
}
