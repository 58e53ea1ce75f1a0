#pragma once

#include <Quillet/Export.h>

#include <QtCore/QString>

#include <functional>

/// \file
/// Named hooks that adjust templates.

namespace Quillet {

struct MessageDialogTemplate;

/// Adjusts a template before a dialog is built from it; may change any of its members.
///
/// While it runs it must neither add nor remove preprocessors.
using TemplatePreprocessor = std::function<void(MessageDialogTemplate&)>;

/// Named hooks that adjust every dialog built from a template: to translate or escape its texts, say.
///
/// \snippet tst_DialogTemplateSnippets.cpp escape
///
/// MessageDialogTemplate::createDialog() and MessageDialogTemplate::exec() apply them to a copy; templates
/// that are stored or held by the caller never change. There is one table in the process, used from the GUI
/// thread only.
class QUILLET_EXPORT MessageDialogTemplatePreprocessors
{
public:
    MessageDialogTemplatePreprocessors() = delete;

    /// Stores a copy of \a fn under \a name, until it is removed or the library leaves the process.
    ///
    /// \return whether it was stored: not under an empty name, not an empty \a fn, and not under a name that
    ///         is taken. A taken name keeps its preprocessor; remove() it first to replace it.
    static bool add(const QString& name, const TemplatePreprocessor& fn);

    /// Removes the preprocessor called \a name and destroys it.
    ///
    /// \return whether there was one.
    static bool remove(const QString& name);

    /// Hands \a t to every preprocessor in turn, in the order of the code units of their names ("Z" before
    /// "a"); each sees what those before it changed. An exception thrown by one passes through, and those
    /// after it do not run.
    static void apply(MessageDialogTemplate& t);

    /// Whether there is no preprocessor.
    static bool isEmpty();
};

} // namespace Quillet
