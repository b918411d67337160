#pragma once
#include "ZQ/core/ZQConfig.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace ZQ {

/// Memory from the process heap, taken by the library (null when none is left).
ZQ_API void* ZQAllocate(size_t bytes);
/// Frees memory from ZQAllocate; null is ignored.
ZQ_API void ZQFree(void* memory);

/// Base of the exported classes that are destroyed through a virtual destructor. The destructor that
/// frees an object is the library's, so the object is allocated by the library too, whatever runtime
/// the host is built with: a Debug host's heap and the library's never mix. Arrays, placement and
/// nothrow forms go the same way.
class ZQ_API ZQHeapObject {
public:
    static void* operator new(size_t bytes) { return Allocate(bytes); }
    static void* operator new[](size_t bytes) { return Allocate(bytes); }
    static void* operator new(size_t bytes, const std::nothrow_t&) noexcept { return ZQAllocate(bytes); }
    static void* operator new[](size_t bytes, const std::nothrow_t&) noexcept { return ZQAllocate(bytes); }
    static void* operator new(size_t, void* where) noexcept { return where; }
    static void operator delete(void* memory) noexcept { ZQFree(memory); }
    static void operator delete[](void* memory) noexcept { ZQFree(memory); }
    static void operator delete(void* memory, const std::nothrow_t&) noexcept { ZQFree(memory); }
    static void operator delete[](void* memory, const std::nothrow_t&) noexcept { ZQFree(memory); }
    static void operator delete(void*, void*) noexcept {}

private:
    // Out of memory as the caller's own new would be: an exception where the caller has them.
    static void* Allocate(size_t bytes) {
        if (void* memory = ZQAllocate(bytes))
            return memory;
#if defined(__cpp_exceptions) || defined(_CPPUNWIND)
        throw std::bad_alloc();
#else
        std::abort();
#endif
    }
};

} // namespace ZQ
