#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

/// A picture that the gallery can write, under its file name without a suffix.
struct Picture
{
    QString name;
    QImage image;
};

/// One page of the gallery: one capability of the library to try out.
class GalleryPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Short lower-case name, used for the file name of the page's picture.
    virtual QString name() const = 0;

    /// The page's entry in the list of pages.
    virtual QString title() const = 0;

    /// Brings the page into a state worth a picture, by what its user can do.
    virtual void prepareForPicture() {}

    /// The pictures of what the page shows, besides the one of the page itself.
    virtual QVector<Picture> pictures() { return {}; }
};
