#pragma once

#include <cstddef>

/// \file
/// Counts, and makes fail, what a test program and the libraries in its process get from operator new. The
/// programs that compile Allocations.cpp replace that operator. Each thread counts for itself.

/// How often this thread has called operator new so far.
std::size_t allocations();

/// Makes one call of operator new in this thread throw std::bad_alloc.
class FailingAllocation
{
public:
    /// \param index which of the calls from now on fails; 0 is the next one.
    explicit FailingAllocation(std::size_t index);
    /// Lets all calls succeed again.
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};
