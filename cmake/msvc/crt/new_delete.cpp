// The global allocation functions over the C runtime's heap. Without exceptions a failed plain new
// ends the program, as an uncaught bad_alloc would.
#include <cstdlib>
#include <new>

namespace {
void* Allocate(std::size_t size) {
    void* block = std::malloc(size ? size : 1);
    if (!block)
        std::abort();
    return block;
}
void* AllocateAligned(std::size_t size, std::align_val_t alignment) {
    void* block = _aligned_malloc(size ? size : 1, static_cast<std::size_t>(alignment));
    if (!block)
        std::abort();
    return block;
}
} // namespace

namespace std {
const nothrow_t nothrow{};
}

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size ? size : 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size ? size : 1); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

void* operator new(std::size_t size, std::align_val_t alignment) { return AllocateAligned(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return AllocateAligned(size, alignment); }
void operator delete(void* block, std::align_val_t) noexcept { _aligned_free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { _aligned_free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { _aligned_free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { _aligned_free(block); }
