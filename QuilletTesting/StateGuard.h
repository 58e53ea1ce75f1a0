#pragma once

#include <QuilletTesting/Failure.h>

#include <Quillet/MessageDialogTemplate.h>
#include <Quillet/MessageDialogTemplatePreprocessors.h>

#include <quorvel/Logger.h>

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstdint>
#include <map>
#include <type_traits>
#include <utility>

/// \file
/// Undoes what a test does to the process. The whole of it is in this header, to be compiled against the
/// logger that the program has: the stand-in, or one with the same three functions.

namespace Quillet::Testing {

/// Remembers the process's dialog templates, preprocessors, threshold and sink, and puts them back at its
/// end.
///
/// \snippet tst_DialogDriverSnippets.cpp guard
///
/// **Templates, threshold and sink** come back as they were. The templates are copied when the guard is made,
/// with the state of their callables; an entry that stays keeps its place in the registry. Nothing of that is
/// logged. No template from the registry may be running when the guard ends.
///
/// **Preprocessors** can be added and removed by name, but neither listed nor read: that is all the library's
/// interface has, and it limits what can be put back.
///
/// - One that addPreprocessor() has added is removed.
/// - One that the tested code adds is removed if the guard was given its name, by the constructor or by
///   watchPreprocessor().
/// - One of those names that was there before and has been removed cannot be put back, only added anew by
///   those who know it: that makes the test fail. So does a table that was empty and is not at the end, or
///   the other way round, whatever the names.
/// - What it cannot see: under a name that was not given, that one was added to or removed from a table
///   with others in it; and that one was replaced by another under the same name.
///
/// Of several guards the last one made ends first. GUI thread only.
class StateGuard
{
public:
    /// Remembers the state. \a preprocessors are the names to watch; failures are told at \a where.
    explicit StateGuard(const QStringList& preprocessors = {},
                        const SourceLocation& where = SourceLocation::current())
        : m_where(where),
          m_templates(MessageDialogTemplate::getRegisteredTemplates()),
          m_hadPreprocessors(!MessageDialogTemplatePreprocessors::isEmpty()),
          m_threshold(quorvel::GetLoggerLevel()),
          m_sink(quorvel::GetLoggerDelegate())
    {
        for (const QString& name : preprocessors)
            watchPreprocessor(name);
    }

    /// Puts everything back.
    ~StateGuard()
    {
        // What is done from here on is not the test's doing, and not for its log.
        quorvel::GetLoggerDelegate() = nullptr;
        restorePreprocessors();
        unregisterAllBut(m_templates);
        for (const auto& entry : m_templates)
            MessageDialogTemplate::registerTemplate(entry.second);
        quorvel::SetLoggerLevel(m_threshold);
        quorvel::GetLoggerDelegate() = std::move(m_sink);
    }

    Q_DISABLE_COPY(StateGuard)

    /// Unregisters all templates, takes the sink away and sets the threshold to 0, so that a test starts with
    /// nothing. Preprocessors stay: nobody can name them.
    void startEmpty()
    {
        quorvel::GetLoggerDelegate() = nullptr;
        quorvel::SetLoggerLevel(0);
        unregisterAllBut({});
    }

    /// Adds a preprocessor until the end of the guard.
    ///
    /// \return whether it was added, as MessageDialogTemplatePreprocessors::add(); a refusal fails the test,
    /// too.
    bool addPreprocessor(const QString& name,
                         const TemplatePreprocessor& fn,
                         const SourceLocation& where = SourceLocation::current())
    {
        watchPreprocessor(name);
        const bool isAdded = MessageDialogTemplatePreprocessors::add(name, fn);
        if (!isAdded)
            reportFailure(
                QStringLiteral("The preprocessor \"%1\" was not added: the name is taken or empty, or "
                               "the function is.")
                    .arg(name),
                where);
        return isAdded;
    }

    /// Watches over the preprocessor called \a name from now on; see the class.
    void watchPreprocessor(const QString& name)
    {
        if (!m_preprocessors.contains(name))
            m_preprocessors.insert(name, hasPreprocessor(name));
    }

private:
    // A name is taken if nothing can be added under it.
    static bool hasPreprocessor(const QString& name)
    {
        const auto none = [](MessageDialogTemplate&) {}; // GCOVR_EXCL_LINE it never runs
        if (!MessageDialogTemplatePreprocessors::add(name, none))
            return !name.isEmpty();
        MessageDialogTemplatePreprocessors::remove(name);
        return false;
    }

    static void unregisterAllBut(const std::map<QString, MessageDialogTemplate>& kept)
    {
        QStringList identifiers;
        for (const auto& entry : MessageDialogTemplate::getRegisteredTemplates())
            identifiers.append(entry.first);
        for (const QString& identifier : qAsConst(identifiers)) {
            if (kept.find(identifier) == kept.end())
                MessageDialogTemplate::unregisterTemplate(identifier);
        }
    }

    void restorePreprocessors() const
    {
        bool isLost = false;
        for (auto each = m_preprocessors.begin(); each != m_preprocessors.end(); ++each) {
            if (!each.value()) {
                MessageDialogTemplatePreprocessors::remove(each.key());
            } else if (!hasPreprocessor(each.key())) {
                isLost = true;
                reportFailure(
                    QStringLiteral("The preprocessor \"%1\" has been removed and cannot be put back.")
                        .arg(each.key()),
                    m_where);
            }
        }
        const bool hasPreprocessors = !MessageDialogTemplatePreprocessors::isEmpty();
        if (hasPreprocessors && !m_hadPreprocessors) {
            reportFailure(
                QStringLiteral("A preprocessor has been left behind. Give its name to the StateGuard, "
                               "which removes it then."),
                m_where);
        } else if (m_hadPreprocessors && !hasPreprocessors && !isLost) {
            reportFailure(QStringLiteral("All preprocessors have been removed and cannot be put back."),
                          m_where);
        }
    }

    SourceLocation m_where;
    std::map<QString, MessageDialogTemplate> m_templates;
    QMap<QString, bool> m_preprocessors; // and whether they were there before
    bool m_hadPreprocessors;
    std::int32_t m_threshold;
    std::decay_t<decltype(quorvel::GetLoggerDelegate())> m_sink;
};

} // namespace Quillet::Testing
