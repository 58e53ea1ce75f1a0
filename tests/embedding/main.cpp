#include <Quillet/MessageDialog.h>
#include <lumo/AffineTransform.h>

#include <QtWidgets/QApplication>

#ifdef HOST_TARGETS
static_assert(lumo::AffineTransform<double>::belongs_to_the_host, "Quillet offers the host's transform");
#endif

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Quillet::MessageDialog dialog(QStringLiteral("Embedded"), QMessageBox::Warning);
    dialog.show();
    return dialog.iconPixmap().isNull() ? 1 : 0;
}
