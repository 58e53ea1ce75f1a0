#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QMainWindow>

class GalleryPage;
class QListWidget;
class QStackedWidget;
class VectorPage;

/// The gallery's window: a list of pages and the page chosen in it.
class GalleryWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit GalleryWindow(QWidget* parent = nullptr);

    /// All pages, in the order of the list; the window owns them.
    const QVector<GalleryPage*>& pages() const;

    void showPage(GalleryPage* page);

    /// Shows the SVG file \a fileName on the page for such files, which says so if that fails.
    void openFile(const QString& fileName);

private:
    void addPage(GalleryPage* page);

    QVector<GalleryPage*> m_pages;
    QListWidget* m_list;
    QStackedWidget* m_stack;
    VectorPage* m_vectorPage;
};
