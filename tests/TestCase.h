#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <functional>

/// Base of all test classes. A case fails that leaves a top-level widget behind, that makes Qt write a
/// warning it did not announce, or that announced one which never came. What Qt's offscreen and X platforms
/// say about their windows does not count.
class TestCase : public QObject
{
    Q_OBJECT

protected:
    /// Announces a message that the rest of this case makes Qt write; the exact text, once.
    void expectMessage(const QString& text);

protected Q_SLOTS:
    void init();
    void cleanup();
};

/// Hands the message box whose modal loop runs next to \a answer, from inside that loop. An \a answer that
/// does not end the loop is the test's own fault; CTest's time-out ends it.
void whenModal(std::function<void(QMessageBox&)> answer);

/// The button of \a box that shows \a text, mnemonics left out; null if there is none.
QAbstractButton* buttonOf(const QMessageBox& box, const QString& text);

/// How often to repeat what a test repeats \a count times: as often, or less often by the divisor that
/// QUILLET_TEST_ROUNDS_DIVISOR names, for a run under a tool that slows it down; at least once.
int rounds(int count);

/// Chooses the offscreen platform, unless QT_QPA_PLATFORM names another. Call it before QApplication is made.
void prepareTestEnvironment();

/// The main function of a test program, and of one that needs no windows.
#define QUILLET_TEST_MAIN(TestClass)                                                                         \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        prepareTestEnvironment();                                                                            \
        QApplication application(argc, argv);                                                                \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }

#define QUILLET_GUILESS_TEST_MAIN(TestClass)                                                                 \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        QCoreApplication application(argc, argv);                                                            \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
