// How Qt's types are logged is the library's own business.
// error: Quillet/LogQtTypes.h'?:? (No such file|file not found)

#include <Quillet/MessageDialogTemplate.h>
#ifdef MUST_NOT_COMPILE
#    include <Quillet/LogQtTypes.h>
#endif
