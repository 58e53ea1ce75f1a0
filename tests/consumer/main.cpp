#include <Quillet/MessageDialog.h>
#include <Quillet/PainterPathContainer.h>
#include <Quillet/SvgFileParser.h>
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
    if (dialog.iconPixmap().isNull())
        qFatal("The dialog has no icon");

    Quillet::PainterPathContainer picture;
    if (!Quillet::parseSvg(QStringLiteral("<svg><path d='M 0,0 H 9 V 9 Z'/></svg>"), picture))
        qFatal("The document is rejected");
    picture.setTransform(lumo::AffineTransform<double>());
    if (!picture.contains(QPointF(8, 1)))
        qFatal("The shape is not where it should be");
    return 0;
}
