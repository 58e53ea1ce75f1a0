#pragma once

#include <QuilletTesting/Failure.h>

#include <gtest/gtest.h>

/// \file
/// Hands the test kit's failures to GoogleTest. It is the only header of the kit that needs GoogleTest.

namespace Quillet::Testing {

/// Makes every failure of the kit a non-fatal one of the running test. Call it once, in main(). What fails
/// when RUN_ALL_TESTS() has returned is only printed: end every driver and guard before.
inline void reportFailuresToGoogleTest()
{
    setFailureHandler([](const QString& message, const SourceLocation& where) {
        ADD_FAILURE_AT(where.file ? where.file : "unknown file", where.line) << message.toStdString();
    });
}

} // namespace Quillet::Testing
