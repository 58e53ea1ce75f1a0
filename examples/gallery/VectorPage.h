#pragma once

#include "GalleryPage.h"

class DocumentBox;
class QLabel;
class QLayout;
class QSlider;
class ShapeList;
class VectorCanvas;

/// Reads an SVG file, shows it on a canvas to move, zoom and rotate, and lists its shapes.
class VectorPage : public GalleryPage
{
    Q_OBJECT

public:
    explicit VectorPage(QWidget* parent = nullptr);

    QString name() const override;
    QString title() const override;

    /// The drawings that come with the gallery.
    QVector<Picture> pictures() override;

    /// Shows the file \a fileName, or says on the page why not. The file stays among the documents to choose.
    void open(const QString& fileName);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QLayout* createDocumentRow();
    QLayout* createViewRow();
    void connectParts();
    void addDocuments();
    void chooseFile();
    void showCurrentDocument();
    void setRotation(int degrees);

    /// Lights up a shape on the canvas and in the list; -1 for none.
    void setCurrentShape(int index);

    DocumentBox* m_documents;
    VectorCanvas* m_canvas;
    QSlider* m_rotation;
    QLabel* m_angle;
    ShapeList* m_shapes;
    QLabel* m_report;
};
