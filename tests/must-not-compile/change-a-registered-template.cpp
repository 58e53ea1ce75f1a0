// Registered templates are only shown.
// error: .*(discards qualifiers|marked const)

#include <Quillet/MessageDialogTemplate.h>

void use()
{
#ifdef MUST_NOT_COMPILE
    Quillet::MessageDialogTemplate::getRegisteredTemplates().clear();
#else
    static_cast<void>(Quillet::MessageDialogTemplate::getRegisteredTemplates().empty());
#endif
}
