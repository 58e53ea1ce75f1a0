#pragma once

#include <QtCore/QString>

#include <functional>

/// \file
/// How the test kit tells a test framework what went wrong.

/// \namespace Quillet::Testing
/// The test kit: answers message boxes, captures the log, undoes what a test did to the process.

namespace Quillet::Testing {

/// A line of a test's source.
struct SourceLocation
{
    /// The file, as the compiler was given it; null where it is not known.
    const char* file = nullptr;

    /// The line, from 1 on.
    int line = 0;

    /// The line that calls this function or, where this is a default argument, the function that has it.
    /// Give it to what std::make_unique() makes: otherwise that function's own line is the one.
#if defined(__has_builtin)
#    if __has_builtin(__builtin_LINE)
#        define QUILLET_TESTING_KNOWS_LINES
#    endif
#elif defined(__GNUC__) || (defined(_MSC_VER) && _MSC_VER >= 1926)
#    define QUILLET_TESTING_KNOWS_LINES
#endif
#ifdef QUILLET_TESTING_KNOWS_LINES
    static SourceLocation current(const char* file = __builtin_FILE(), int line = __builtin_LINE())
    {
        return {file, line};
    }
#else
    static SourceLocation current()
    {
        return {};
    }
#endif
};

/// Makes the running test fail with \a message, at \a where, and returns. It must not throw: it is called
/// from inside event loops.
using FailureHandler = std::function<void(const QString& message, const SourceLocation& where)>;

/// Replaces what the kit does with failures, for the whole process.
///
/// Without a handler, or with an empty one, a failure goes to QTest::qFail() while a function of a QtTest
/// class runs. Everywhere else it ends the process by qFatal(): a failure that nobody is told of would pass.
/// GoogleTest has a handler in `<QuilletTesting/GoogleTest.h>`.
///
/// \return the handler before; empty for the built-in one.
FailureHandler setFailureHandler(const FailureHandler& handler);

/// Makes the running test fail, by way of the handler.
void reportFailure(const QString& message, const SourceLocation& where = SourceLocation::current());

} // namespace Quillet::Testing
