// The list of shapes is only shown.
// error: .*(discards qualifiers|marked const)

#include <Quillet/PainterPathContainer.h>

void use(Quillet::PainterPathContainer& container)
{
#ifdef MUST_NOT_COMPILE
    container.getPaths().clear();
#else
    static_cast<void>(container.getPaths().empty());
#endif
}
