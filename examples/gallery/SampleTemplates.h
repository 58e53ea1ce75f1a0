#pragma once

#include <Quillet/MessageDialogTemplate.h>

#include <QtCore/QVector>

/// The templates that come with the gallery, without actions.
QVector<Quillet::MessageDialogTemplate> sampleTemplates();

/// The German for one of the samples' texts; any other text as it is.
QString inGerman(const QString& text);
