#include "ShapeList.h"

#include <Quillet/PainterPathContainer.h>

#include <QtCore/QSignalBlocker>
#include <QtGui/QPainter>
#include <QtWidgets/QHeaderView>

namespace {

enum Column { shape_column, elements_column, stroke_column, fill_column };

constexpr int swatch_size = 12;

QIcon swatch(const QColor& color)
{
    QPixmap pixmap(swatch_size, swatch_size);
    pixmap.fill(Qt::white);
    QPainter painter(&pixmap);
    painter.setPen(Qt::gray);
    painter.setBrush(color);
    painter.drawRect(0, 0, swatch_size - 1, swatch_size - 1);
    return {pixmap};
}

QString describe(const QColor& color)
{
    if (color.alpha() == 255)
        return color.name();
    return QStringLiteral("%1, %2 %").arg(color.name()).arg(qRound(color.alphaF() * 100));
}

void describeStroke(const QPen& pen, QTreeWidgetItem& item)
{
    if (!pen.color().isValid())
        return item.setText(stroke_column, QStringLiteral("no stroke"));
    item.setText(stroke_column, QStringLiteral("%1, %2 wide").arg(describe(pen.color())).arg(pen.widthF()));
    item.setIcon(stroke_column, swatch(pen.color()));
}

void describeFill(const QBrush& brush, QTreeWidgetItem& item)
{
    if (!brush.color().isValid())
        return item.setText(fill_column, QStringLiteral("no fill"));
    item.setText(fill_column, describe(brush.color()));
    item.setIcon(fill_column, swatch(brush.color()));
}

} // namespace

ShapeList::ShapeList(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderLabels({QStringLiteral("Shape"),
                     QStringLiteral("Elements"),
                     QStringLiteral("Stroke"),
                     QStringLiteral("Fill")});
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false); // it would cut the last column short where the list is narrow
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    connect(this, &QTreeWidget::itemSelectionChanged, this, &ShapeList::reportSelection);
}

void ShapeList::setPicture(const Quillet::PainterPathContainer& picture)
{
    QList<QTreeWidgetItem*> items;
    for (const auto& shape : picture.getPaths()) {
        auto* item = new QTreeWidgetItem;
        item->setText(shape_column, QString::number(items.size()));
        item->setText(elements_column, QString::number(shape->getPath().elementCount()));
        describeStroke(shape->getPen(), *item);
        describeFill(shape->getBrush(), *item);
        items.append(item);
    }
    const QSignalBlocker block(this);
    clear();
    addTopLevelItems(items);
}

void ShapeList::selectShape(int index)
{
    const QSignalBlocker block(this);
    QTreeWidgetItem* const item = topLevelItem(index); // null for -1
    setCurrentItem(item);
    if (item)
        scrollToItem(item);
    else
        clearSelection();
}

void ShapeList::reportSelection()
{
    const QList<QTreeWidgetItem*> selected = selectedItems();
    Q_EMIT shapeSelected(selected.isEmpty() ? -1 : indexOfTopLevelItem(selected.first()));
}
