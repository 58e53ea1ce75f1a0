#pragma once

#include "TestCase.h"

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>
#include <quorvel/Logger.h>

#include <QtCore/QVector>

/// Base of the test classes that use dialog templates. A case finds an empty registry, no preprocessor, no
/// sink and a threshold of 0. What it registers and how it logs is undone for it; it fails when it leaves a
/// preprocessor behind.
class TemplateTestCase : public TestCase
{
    Q_OBJECT

protected Q_SLOTS:
    void cleanup();
};

/// A line as the host's sink got it.
struct LogLine
{
    std::int32_t level;
    QString text;

    bool operator==(const LogLine& other) const { return level == other.level && text == other.text; }
};

/// How a failed comparison shows a line.
char* toString(const LogLine& line);

/// Installs a sink that collects the lines for the rest of a case; it must outlive every use of the library
/// in that case.
class LogCapture
{
public:
    explicit LogCapture(std::int32_t threshold = 0);

    const QVector<LogLine>& lines() const { return m_lines; }

private:
    QVector<LogLine> m_lines;
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
