#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

// The process heap: one heap, whichever C runtime the host and the library were built with.
void* ZQAllocate(size_t bytes) {
    return HeapAlloc(GetProcessHeap(), 0, bytes ? bytes : 1);
}

void ZQFree(void* memory) {
    if (memory)
        HeapFree(GetProcessHeap(), 0, memory);
}

} // namespace ZQ
