#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <Quillet/MessageDialogTemplate.h>

#include <map>

using Quillet::TemplatePreprocessor;

namespace {

// Built while the library is loaded, before any client can call in.
// clazy:excludeall=non-pod-global-static
std::map<QString, TemplatePreprocessor> preprocessors;

} // namespace

namespace Quillet {

bool MessageDialogTemplatePreprocessors::add(const QString& name, const TemplatePreprocessor& fn)
{
    if (name.isEmpty() || !fn)
        return false;
    return preprocessors.try_emplace(name, fn).second;
}

bool MessageDialogTemplatePreprocessors::remove(const QString& name)
{
    return preprocessors.erase(name) != 0;
}

void MessageDialogTemplatePreprocessors::apply(MessageDialogTemplate& t)
{
    for (const auto& [name, preprocessor] : preprocessors)
        preprocessor(t);
}

bool MessageDialogTemplatePreprocessors::isEmpty()
{
    return preprocessors.empty();
}

} // namespace Quillet
