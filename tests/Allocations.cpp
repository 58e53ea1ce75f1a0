#include "Allocations.h"

#include <QtGui/QPixmapCache>
#include <QtTest/QTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#if defined(__GLIBC__)
#    include <dlfcn.h>
#    include <execinfo.h>
#    include <link.h>
#    include <malloc.h>
#endif

// A sanitizer has a malloc() of its own.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#    define REPLACE_MALLOC 1
#else
#    define REPLACE_MALLOC 0
#endif

namespace {

constexpr std::size_t never = static_cast<std::size_t>(-1);

thread_local std::size_t allocation_count = 0;

// Those of the kind that is to fail. No kind is looked for while none is to fail.
thread_local std::size_t matching_count = 0;
thread_local std::size_t failing_allocation = never;
thread_local Failing failing_kind = Failing::OperatorNew;
thread_local bool has_failed = false;

std::atomic<std::size_t> live_blocks = 0;
std::atomic<std::size_t> live_bytes = 0;

#if REPLACE_MALLOC

template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void* realMalloc(std::size_t size)
{
    static auto* const function = next<void*(std::size_t)>("malloc");
    return function(size);
}

void realFree(void* memory)
{
    static auto* const function = next<void(void*)>("free");
    function(memory);
}

#else

void* realMalloc(std::size_t size)
{
    return std::malloc(size);
}

void realFree(void* memory)
{
    std::free(memory);
}

#endif

std::size_t sizeOf(void* memory)
{
#if defined(__GLIBC__)
    return malloc_usable_size(memory);
#else
    static_cast<void>(memory);
    return 0;
#endif
}

void* taken(void* memory)
{
    if (memory) {
        ++live_blocks;
        live_bytes += sizeOf(memory);
    }
    return memory;
}

void* givenBack(void* memory)
{
    if (memory) {
        --live_blocks;
        live_bytes -= sizeOf(memory);
    }
    return memory;
}

#if defined(__GLIBC__)

enum class Owner { Library, Between, Other };

// Whose function this is. Does not allocate.
Owner ownerOf(const void* address)
{
    struct Search
    {
        ElfW(Addr) address;
        Owner owner;
    };
    Search search = {reinterpret_cast<ElfW(Addr)>(address), Owner::Other};
    dl_iterate_phdr(
        [](dl_phdr_info* object, std::size_t, void* data) {
            auto& sought = *static_cast<Search*>(data);
            const auto* const segments = object->dlpi_phdr;
            const bool holds = std::any_of(segments, segments + object->dlpi_phnum, [&](const auto& segment) {
                return segment.p_type == PT_LOAD
                       && sought.address - object->dlpi_addr - segment.p_vaddr < segment.p_memsz;
            });
            if (!holds)
                return 0;
            const auto isNamed = [&](const char* part) { return std::strstr(object->dlpi_name, part); };
            if (isNamed("/libQuillet."))
                sought.owner = Owner::Library;
            else if (object->dlpi_name[0] == '\0' // the program
                     || isNamed("/libstdc++.") || isNamed("/libc.") || isNamed("/libasan.")
                     || isNamed("/libQt5Core."))
                sought.owner = Owner::Between;
            return 1;
        },
        &search);
    return search.owner;
}

// Whether a function is a member of class QObject, constructors and connect() for example, by its mangled
// name.
bool isOfQObject(const char* name)
{
    constexpr const char* prefix = "_ZN7QObject";
    return std::strncmp(name, prefix, std::strlen(prefix)) == 0;
}

bool isForLibrary()
{
    std::array<void*, 48> frames = {};
    const auto end = frames.begin() + backtrace(frames.data(), int(frames.size()));
    const auto asker =
        std::find_if(frames.begin(), end, [](const void* frame) { return ownerOf(frame) != Owner::Between; });
    if (asker == end || ownerOf(*asker) != Owner::Library)
        return false;
    return std::none_of(frames.begin(), asker, [](const void* frame) {
        Dl_info symbol = {};
        return dladdr(frame, &symbol) != 0 && symbol.dli_sname && isOfQObject(symbol.dli_sname);
    });
}

#else

bool isForLibrary()
{
    return false;
}

#endif

bool matches(bool isNew)
{
    return failing_kind == Failing::OperatorNew ? isNew : isForLibrary();
}

bool isToFail(bool isNew)
{
    if (failing_allocation == never || has_failed || !matches(isNew))
        return false;
    has_failed = matching_count++ == failing_allocation;
    return has_failed;
}

} // namespace

void* operator new(std::size_t size)
{
    ++allocation_count;
    if (isToFail(true))
        throw std::bad_alloc();
    void* const memory = taken(realMalloc(size > 0 ? size : 1));
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept
{
    realFree(givenBack(memory));
}

void operator delete(void* memory, std::size_t) noexcept
{
    realFree(givenBack(memory));
}

#if REPLACE_MALLOC

namespace {

// For malloc() and its kin, called directly by them.
template <typename Allocate>
void* allocateOrFail(const Allocate& allocate)
{
    if (isToFail(false)) {
        errno = ENOMEM;
        return nullptr;
    }
    return taken(allocate());
}

} // namespace

// Their parameters are named as glibc names them.
#    define REPLACEMENT extern "C" __attribute__((visibility("default")))

REPLACEMENT void* malloc(std::size_t size) noexcept
{
    return allocateOrFail([&] { return realMalloc(size); });
}

REPLACEMENT void free(void* ptr) noexcept
{
    realFree(givenBack(ptr));
}

REPLACEMENT void* calloc(std::size_t nmemb, std::size_t size) noexcept
{
    static auto* const function = next<void*(std::size_t, std::size_t)>("calloc");
    return allocateOrFail([&] { return function(nmemb, size); });
}

REPLACEMENT void* realloc(void* ptr, std::size_t size) noexcept
{
    static auto* const function = next<void*(void*, std::size_t)>("realloc");
    return allocateOrFail([&] {
        givenBack(ptr);
        void* const moved = function(ptr, size);
        if (!moved && size > 0)
            taken(ptr);
        return moved;
    });
}

REPLACEMENT void* memalign(std::size_t alignment, std::size_t size) noexcept
{
    static auto* const function = next<void*(std::size_t, std::size_t)>("memalign");
    return allocateOrFail([&] { return function(alignment, size); });
}

REPLACEMENT void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    return memalign(alignment, size);
}

REPLACEMENT int posix_memalign(void** memptr, std::size_t alignment, std::size_t size) noexcept
{
    *memptr = memalign(alignment, size);
    return *memptr ? 0 : ENOMEM;
}

#endif

std::size_t allocations()
{
    return allocation_count;
}

FailingAllocation::FailingAllocation(std::size_t index, Failing kind)
{
#if defined(__GLIBC__)
    std::array<void*, 1> frames = {};
    backtrace(frames.data(), 1); // the first call allocates
#endif
    matching_count = 0;
    has_failed = false;
    failing_kind = kind;
    failing_allocation = index;
}

FailingAllocation::~FailingAllocation()
{
    failing_allocation = never;
}

bool FailingAllocation::hasFailed()
{
    return has_failed;
}

Heap heap()
{
    return {live_blocks, live_bytes};
}

void cacheNoPixmaps()
{
    QPixmapCache::setCacheLimit(0);
}

bool countsMalloc()
{
    return REPLACE_MALLOC != 0;
}

FailureCount failEach(const std::function<Outcome(std::size_t n)>& attempt)
{
    cacheNoPixmaps();
    FailureCount count;
    // The first round fills what the process makes once and keeps, such as caches of Qt.
    for (const bool counts : {false, true}) {
        count = {};
        for (std::size_t n = 0;; ++n) {
            const std::size_t before = heap().blocks;
            const Outcome outcome = attempt(n);
            const std::size_t after = heap().blocks;
            if (counts && after != before) {
                ++count.leaks;
                qInfo("failing allocation %zu: %zu blocks before, %zu after", n, before, after);
            }
            if (outcome == Outcome::Succeeded)
                break;
            ++(outcome == Outcome::Threw ? count.threw : count.coped);
        }
    }
    qInfo("%d allocations failed in turn", count.threw + count.coped);
    return count;
}
