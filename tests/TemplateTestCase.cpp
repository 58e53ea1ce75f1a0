#include "TemplateTestCase.h"

using Quillet::MessageDialogTemplate;
using Quillet::MessageDialogTemplatePreprocessors;
using Quillet::TemplatePreprocessor;

void TemplateTestCase::init()
{
    m_guard = std::make_unique<Quillet::Testing::StateGuard>();
    m_guard->startEmpty();
    TestCase::init();
}

void TemplateTestCase::cleanup()
{
    m_guard.reset();
    TestCase::cleanup();
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
