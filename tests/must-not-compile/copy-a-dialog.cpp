// A dialog cannot be copied.
// error: use of deleted function|call to implicitly-deleted copy constructor

#include <Quillet/MessageDialog.h>

void use(const Quillet::MessageDialog& dialog)
{
#ifdef MUST_NOT_COMPILE
    const Quillet::MessageDialog copy(dialog);
#else
    const Quillet::MessageDialog& copy(dialog);
#endif
    static_cast<void>(copy);
}
