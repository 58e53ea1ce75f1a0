#pragma once

#include <cstddef>
#include <functional>
#include <new>

/// \file
/// Counts, makes fail and adds up what a test program and the libraries in its process allocate. The
/// programs that compile Allocations.cpp replace operator new and, where they can, malloc() and its kin. What
/// is counted and made to fail is counted for each thread alone.

/// How often this thread has called operator new so far.
std::size_t allocations();

/// Which allocations are made to fail.
enum class Failing {
    /// Each call of operator new, whoever makes it.
    OperatorNew,

    /// Each call of operator new and of malloc() that the library makes, by itself, by a callable that the
    /// test gave it, or by way of the standard library and of QtCore, whose strings, containers, files and
    /// guarded pointers it uses. The stack tells: the first function on it that is of none of these must be
    /// of libQuillet.
    ///
    /// Allocations of other modules are left alone, because Qt 5 does not bear their failure: of its
    /// libraries only QtCore is compiled with exceptions. In the others an exception passes without running
    /// a destructor, and a malloc() that fails is not noticed. Nor is it by QObject, so that is left alone,
    /// too.
    Library,
};

/// Makes one allocation of this thread fail: operator new throws std::bad_alloc, malloc() returns null.
class FailingAllocation
{
public:
    /// \param index which of the allocations of this kind from now on fails; 0 is the next one.
    explicit FailingAllocation(std::size_t index, Failing kind = Failing::OperatorNew);
    /// Lets all calls succeed again.
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether there have been as many, so that one has failed.
    static bool hasFailed();
};

/// How an operation with a failing allocation ended.
enum class Outcome {
    Succeeded, ///< there were not as many allocations
    Threw,     ///< std::bad_alloc
    Coped,     ///< the failure was taken for something else, such as a file that cannot be read
};

/// Calls \a operation with its n-th allocation of the kind \a kind failing.
template <typename Operation>
Outcome withFailingAllocation(std::size_t n, Failing kind, const Operation& operation)
{
    const FailingAllocation failing(n, kind);
    try {
        operation();
    } catch (const std::bad_alloc&) {
        return Outcome::Threw;
    }
    return FailingAllocation::hasFailed() ? Outcome::Coped : Outcome::Succeeded;
}

/// What the whole process holds at a moment.
struct Heap
{
    std::size_t blocks = 0;
    /// As large as malloc() made them, which varies a little: what it cuts off a free block may be too small
    /// to be one of its own.
    std::size_t bytes = 0;
};

/// What is allocated now: all of it where malloc() is replaced, too, and otherwise what came from operator
/// new.
Heap heap();

/// Keeps pixmaps out of Qt's cache, which gives them back half a minute later, in the middle of a comparison
/// where the machine is slow. To be called before the first window is shown.
void cacheNoPixmaps();

/// Whether malloc() is replaced. It is not in a sanitized build, whose own it is, nor beside another C
/// library than glibc.
bool countsMalloc();

/// What became of an operation whose allocations failed one after the other.
struct FailureCount
{
    int threw = 0;
    int coped = 0;
    int leaks = 0; ///< failures after which the process held more than before
};

/// Calls \a attempt with 0, 1, 2 ... until it answers Outcome::Succeeded; its argument goes to
/// withFailingAllocation(). What an attempt makes must be gone when it returns. Says how many have failed.
FailureCount failEach(const std::function<Outcome(std::size_t n)>& attempt);
