#pragma once

#include <QuilletTesting/Failure.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

/// \file
/// Hands the test kit's failures to GoogleTest. It is the only header of the kit that needs GoogleTest.

namespace Quillet::Testing {

/// Makes every failure of the kit a non-fatal one of the running test. Call it once, in main(), before
/// RUN_ALL_TESTS(). A failure before that begins or after it has ended, which GoogleTest would forget, ends
/// the process.
inline void reportFailuresToGoogleTest()
{
    class Listener : public testing::EmptyTestEventListener
    {
    public:
        explicit Listener(std::shared_ptr<bool> isRunning) : m_isRunning(std::move(isRunning)) {}
        void OnTestProgramStart(const testing::UnitTest& /*all*/) override { *m_isRunning = true; }
        void OnTestProgramEnd(const testing::UnitTest& /*all*/) override { *m_isRunning = false; }

    private:
        std::shared_ptr<bool> m_isRunning;
    };
    const auto isRunning = std::make_shared<bool>(false);
    testing::UnitTest::GetInstance()->listeners().Append(new Listener(isRunning)); // which takes ownership

    setFailureHandler([isRunning](const QString& message, const SourceLocation& where) {
        if (!*isRunning) // GCOVR_EXCL_BR_LINE ends what counts, too
            qFatal("%s\n(GoogleTest runs no tests.)", qUtf8Printable(message)); // GCOVR_EXCL_LINE
        ADD_FAILURE_AT(where.file ? where.file : "unknown file", where.line) << message.toStdString();
    });
}

} // namespace Quillet::Testing
