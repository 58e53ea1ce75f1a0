// There is one table of preprocessors, and no objects of it.
// error: use of deleted function|call to deleted constructor

#include <Quillet/MessageDialogTemplatePreprocessors.h>

bool use()
{
#ifdef MUST_NOT_COMPILE
    return Quillet::MessageDialogTemplatePreprocessors().isEmpty();
#else
    return Quillet::MessageDialogTemplatePreprocessors::isEmpty();
#endif
}
