// A widget is not taken for a dialog.
// error: invalid initialization|no matching function for call to 'take'

#include <Quillet/MessageDialog.h>

void take(const Quillet::MessageDialog& dialog);

void use(QWidget* widget)
{
#ifdef MUST_NOT_COMPILE
    take(widget);
#else
    take(Quillet::MessageDialog(widget));
#endif
}
