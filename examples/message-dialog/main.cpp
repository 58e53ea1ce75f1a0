#include <Quillet/MessageDialog.h>

#include <QtWidgets/QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Quillet::MessageDialog dialog(QStringLiteral("Save the changes to Harbour.svg?"), QMessageBox::Question);
    dialog.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    return dialog.exec() == QMessageBox::Save ? 0 : 1;
}
