#pragma once

#include <QtWidgets/QTreeWidget>

namespace Quillet {
class PainterPathContainer;
}

/// Lists the shapes of a picture, one to a row, with what they are made of.
class ShapeList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ShapeList(QWidget* parent = nullptr);

    void setPicture(const Quillet::PainterPathContainer& picture);

    /// Selects a shape by its place in the picture, or none (-1). Does not emit shapeSelected().
    void selectShape(int index);

Q_SIGNALS:
    /// The user selected a shape, or none (-1).
    void shapeSelected(int index);

private:
    void reportSelection();
};
