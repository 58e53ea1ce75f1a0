#include <Quillet/MessageDialog.h>
#include <Quillet/MessageDialogTemplate.h>
#include <lumo/AffineTransform.h>

#include <QtWidgets/QApplication>

#ifdef HOST_TARGETS
#    include <quorvel/Logger.h>

static_assert(lumo::AffineTransform<double>::belongs_to_the_host, "Quillet offers the host's transform");
#endif

// Whether a line of Quillet's reaches the sink that the program installs.
static bool isHeard()
{
#ifdef HOST_TARGETS
    bool heard = false;
    quorvel::GetLoggerDelegate() = [&](std::int32_t, const std::wstring&) { heard = true; };
    Quillet::MessageDialogTemplate::unregisterTemplate(QStringLiteral("any"));
    quorvel::GetLoggerDelegate() = nullptr;
    return heard;
#else
    return true;
#endif
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Quillet::MessageDialog dialog(QStringLiteral("Embedded"), QMessageBox::Warning);
    dialog.show();
    return dialog.iconPixmap().isNull() || !isHeard() ? 1 : 0;
}
