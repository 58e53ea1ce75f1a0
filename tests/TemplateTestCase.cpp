#include "TemplateTestCase.h"

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::TemplatePreprocessor;

void TemplateTestCase::cleanup()
{
    quorvel::GetLoggerDelegate() = nullptr;
    quorvel::SetLoggerLevel(0);
    const auto& templates = MessageDialogTemplate::getRegisteredTemplates();
    while (!templates.empty())
        MessageDialogTemplate::unregisterTemplate(QString(templates.begin()->first));

    QVERIFY(MessageDialogTemplatePreprocessors::isEmpty());
    TestCase::cleanup();
}

char* toString(const LogLine& line)
{
    return QTest::toString(QStringLiteral("level %1: %2").arg(line.level).arg(line.text));
}

LogCapture::LogCapture(std::int32_t threshold)
{
    quorvel::SetLoggerLevel(threshold);
    quorvel::GetLoggerDelegate() = [this](std::int32_t level, const std::wstring& text) {
        m_lines.append({level, QString::fromStdWString(text)});
    };
}

ScopedPreprocessor::ScopedPreprocessor(const QString& name, const TemplatePreprocessor& fn) : m_name(name)
{
    if (!MessageDialogTemplatePreprocessors::add(name, fn))
        qCritical("ScopedPreprocessor: not added");
}

ScopedPreprocessor::~ScopedPreprocessor()
{
    MessageDialogTemplatePreprocessors::remove(m_name);
}

MessageDialogTemplate saveChanges(QStringList& journal)
{
    const auto note = [&journal](const QString& text) { return [&journal, text] { journal.append(text); }; };

    MessageDialogTemplate t;
    t.id = QStringLiteral("save-changes");
    t.icon = QMessageBox::Question;
    t.title = QStringLiteral("Unsaved changes");
    t.text = QStringLiteral("Save the changes?");
    t.buttons[0] = {
        QStringLiteral("&Save"), QMessageBox::AcceptRole, true, false, note(QStringLiteral("Save"))};
    t.buttons[1] = {QStringLiteral("&Discard"),
                    QMessageBox::DestructiveRole,
                    false,
                    false,
                    note(QStringLiteral("Discard"))};
    t.buttons[3] = {
        QStringLiteral("Cancel"), QMessageBox::RejectRole, false, true, note(QStringLiteral("Cancel"))};
    return t;
}
