#include "DocumentBox.h"

#include "VectorDocument.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSignalBlocker>

void DocumentBox::addSamples(const QVector<VectorSample>& samples)
{
    for (const VectorSample& sample : samples)
        addItem(sample.title, sample.fileName);
}

void DocumentBox::choose(const QString& fileName)
{
    int index = findData(fileName);
    if (index < 0) {
        index = count();
        addItem(QFileInfo(fileName).fileName(), fileName);
    }
    const QSignalBlocker block(this);
    setCurrentIndex(index);
}

QString DocumentBox::fileName() const
{
    return currentData().toString();
}
