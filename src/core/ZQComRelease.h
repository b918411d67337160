// Releasing a COM pointer the library holds.
#pragma once

namespace ZQ {

/// Releases object's reference, if it holds one, and forgets it.
template <typename T> void ZQSafeRelease(T*& object) {
    if (object)
        object->Release();
    object = nullptr;
}

} // namespace ZQ
