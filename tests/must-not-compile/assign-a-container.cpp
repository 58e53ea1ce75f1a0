// A container of shapes cannot be assigned.
// error: use of deleted function|selected deleted operator

#include <Quillet/PainterPathContainer.h>

void use(Quillet::PainterPathContainer& one, const Quillet::PainterPathContainer& other)
{
#ifdef MUST_NOT_COMPILE
    one = other;
#else
    one.setTransform(other.getPaths().front()->getTransform());
#endif
}
