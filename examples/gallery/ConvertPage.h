#pragma once

#include "GalleryPage.h"

class DocumentBox;
class QLabel;
class QPushButton;
class QTreeWidget;
struct Finding;

/// Shows a drawing program's SVG file as Qt's renderer draws it, as the library does, and as the library does
/// after it has been converted, and lists what the check found.
class ConvertPage : public GalleryPage
{
    Q_OBJECT

public:
    explicit ConvertPage(QWidget* parent = nullptr);

    QString name() const override;
    QString title() const override;

    /// Shows the file \a fileName, which stays among the documents to choose.
    void open(const QString& fileName);

private:
    QWidget* createDocumentRow();
    QWidget* createPictures();
    void addFindings(const QString& command, const QVector<Finding>& findings);
    void chooseFile();
    void save();
    void showCurrentDocument();

    DocumentBox* m_documents;
    QLabel* m_original;
    QLabel* m_asItIs;
    QLabel* m_converted;
    QTreeWidget* m_findings;
    QLabel* m_report;
    QPushButton* m_save;
    QString m_text; // of the conversion
};
