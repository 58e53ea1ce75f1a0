// A part of a host application that is loaded late and brings Quillet into the process with it.

#include <Quillet/MessageDialog.h>

#include <QtCore/QCoreApplication>

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
