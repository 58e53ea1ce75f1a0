// Who appends a shape gives it away, and says so.
// error: cannot bind rvalue reference|rvalue reference .* cannot bind to lvalue

#include <Quillet/PainterPathContainer.h>

#include <utility>

void use(Quillet::PainterPathContainer& container, std::unique_ptr<Quillet::PainterPath>& shape)
{
#ifdef MUST_NOT_COMPILE
    container.appendPath(shape);
#else
    container.appendPath(std::move(shape));
#endif
}
