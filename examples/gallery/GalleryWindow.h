#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QMainWindow>

class GalleryPage;
class QListWidget;
class QStackedWidget;

/// The gallery's window: a list of pages and the page chosen in it.
class GalleryWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit GalleryWindow(QWidget* parent = nullptr);

    /// All pages, in the order of the list; the window owns them.
    const QVector<GalleryPage*>& pages() const;

    void showPage(GalleryPage* page);

private:
    void addPage(GalleryPage* page);

    QVector<GalleryPage*> m_pages;
    QListWidget* m_list;
    QStackedWidget* m_stack;
};
