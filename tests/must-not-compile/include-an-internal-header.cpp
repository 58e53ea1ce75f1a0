// What is for use inside the library is not installed.
// error: Quillet/SvgPathParser.h'?:? (No such file|file not found)

#include <Quillet/SvgFileParser.h>
#ifdef MUST_NOT_COMPILE
#    include <Quillet/SvgPathParser.h>
#endif
