#pragma once

#include <QtWidgets/QComboBox>

struct VectorSample;

/// Documents to choose from.
class DocumentBox : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void addSamples(const QVector<VectorSample>& samples);

    /// Makes the file \a fileName the current one, without a signal. It is added unless it is there already.
    void choose(const QString& fileName);

    /// The file name of the current document.
    QString fileName() const;
};
