// A container of shapes cannot be copied.
// error: use of deleted function|call to deleted constructor

#include <Quillet/PainterPathContainer.h>

void use(const Quillet::PainterPathContainer& container)
{
#ifdef MUST_NOT_COMPILE
    const Quillet::PainterPathContainer copy(container);
#else
    const Quillet::PainterPathContainer& copy(container);
#endif
    static_cast<void>(copy);
}
