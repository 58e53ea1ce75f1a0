#pragma once

#include "TestCase.h"

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>
#include <QuilletTesting/LogCapture.h>
#include <QuilletTesting/StateGuard.h>
#include <quorvel/Logger.h>

#include <QtCore/QVector>

#include <memory>

using Quillet::Testing::LogCapture;
using Quillet::Testing::LogLine;

/// Base of the test classes that use dialog templates. A case finds an empty registry, no preprocessor, no
/// sink and a threshold of 0. What it registers and how it logs is undone for it; it fails when it leaves a
/// preprocessor behind.
class TemplateTestCase : public TestCase
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<Quillet::Testing::StateGuard> m_guard;
};

/// Adds a preprocessor for as long as it lives.
class ScopedPreprocessor
{
public:
    ScopedPreprocessor(const QString& name, const Quillet::TemplatePreprocessor& fn);
    ~ScopedPreprocessor();
    Q_DISABLE_COPY(ScopedPreprocessor)

private:
    QString m_name;
};

/// A template with an identifier, three buttons and a slot left empty between them: Save, the default
/// button; Discard; Cancel, the escape button. Each action appends its button's text to \a journal.
Quillet::MessageDialogTemplate saveChanges(QStringList& journal);
