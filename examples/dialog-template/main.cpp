#include <Quillet/MessageDialogTemplate.h>

#include <QtWidgets/QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Quillet::MessageDialogTemplate t;
    t.id = QStringLiteral("delete-layer");
    t.icon = QMessageBox::Warning;
    t.title = QStringLiteral("Delete layer");
    t.text = QStringLiteral("The layer contains 3 locked shapes.");
    t.buttons[0] = {
        QStringLiteral("&Delete"), QMessageBox::DestructiveRole, false, false, [] { /* delete it */ }};
    t.buttons[1] = {QStringLiteral("Cancel"), QMessageBox::RejectRole, true, true, {}};
    Quillet::MessageDialogTemplate::registerTemplate(t);

    const auto& templates = Quillet::MessageDialogTemplate::getRegisteredTemplates();
    return templates.at(QStringLiteral("delete-layer")).exec() == QMessageBox::DestructiveRole ? 0 : 1;
}
