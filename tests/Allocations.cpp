#include "Allocations.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t never = static_cast<std::size_t>(-1);

thread_local std::size_t allocation_count = 0;
thread_local std::size_t failing_allocation = never;

} // namespace

void* operator new(std::size_t size)
{
    if (allocation_count++ == failing_allocation)
        throw std::bad_alloc();
    void* const memory = std::malloc(size > 0 ? size : 1);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

std::size_t allocations()
{
    return allocation_count;
}

FailingAllocation::FailingAllocation(std::size_t index)
{
    failing_allocation = allocation_count + index;
}

FailingAllocation::~FailingAllocation()
{
    failing_allocation = never;
}
