// A part of a host application that is loaded late and brings Quillet into the process with it.

#include <Quillet/MessageDialog.h>
#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <QtCore/QCoreApplication>

#include <memory>

extern "C" Q_DECL_EXPORT void titleOf(int icon, QString* title)
{
    *title = Quillet::MessageDialog(QString(), static_cast<QMessageBox::Icon>(icon)).windowTitle();
}

// Shows a box, so that everything that a show leaves behind in Qt has been left behind.
extern "C" Q_DECL_EXPORT void showAWarning()
{
    Quillet::MessageDialog dialog(QString(), QMessageBox::Warning);
    dialog.show();
    QCoreApplication::processEvents();
}

// Leaves a template and a preprocessor behind, with callables whose code stands in this module. Returns how
// many templates were registered before, or -1 if there already was a preprocessor.
extern "C" Q_DECL_EXPORT int leaveATemplateBehind()
{
    using Quillet::MessageDialogTemplate;
    using Quillet::MessageDialogTemplatePreprocessors;

    if (!MessageDialogTemplatePreprocessors::isEmpty())
        return -1;
    const int before = static_cast<int>(MessageDialogTemplate::getRegisteredTemplates().size());

    const auto token = std::make_shared<QString>(QStringLiteral("held by callables"));
    MessageDialogTemplate t;
    t.id = QStringLiteral("left-behind");
    t.buttons[0] = {QStringLiteral("OK"), QMessageBox::AcceptRole, true, true, [token] { token->clear(); }};
    MessageDialogTemplate::registerTemplate(t);
    MessageDialogTemplatePreprocessors::add(QStringLiteral("left-behind"),
                                            [token](MessageDialogTemplate& each) { each.text = *token; });
    delete MessageDialogTemplate::getRegisteredTemplates().begin()->second.createDialog();
    return before;
}
