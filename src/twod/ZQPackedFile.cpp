#include "ZQ/twod/ZQPackedFile.h"
#include "ZQ/core/ZQLock.h"
#include "src/formats/ZQPackedTexture.h"
#include "src/twod/ZQPackedLoader.h"

#include <cstring>

namespace ZQ {

// The two readers differ only in the format they hand to the shared loader.
#define ZQ_DEFINE_PACKED_READER(Class, Format)                                                                        \
    Class::Class(IDirect3DDevice9* device, ZQMapper* chunks) : m_device(device), m_chunks(chunks) {                   \
        InitializeCriticalSection(&m_lock);                                                                           \
    }                                                                                                                 \
    Class::Class(const Class& other) : m_device(other.m_device), m_chunks(other.m_chunks) {                           \
        std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);                                                           \
    }                                                                                                                 \
    Class& Class::operator=(const Class& other) {                                                                     \
        m_device = other.m_device;                                                                                    \
        m_chunks = other.m_chunks;                                                                                    \
        std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);                                                           \
        return *this;                                                                                                 \
    }                                                                                                                 \
    Class::~Class() {                                                                                                 \
        m_device = nullptr;                                                                                           \
        m_chunks = nullptr;                                                                                           \
        DeleteCriticalSection(&m_lock);                                                                               \
    }                                                                                                                 \
    IDirect3DDevice9* Class::Getd3dDevice() {                                                                         \
        ZQLock lock(&m_lock);                                                                                         \
        return m_device;                                                                                              \
    }                                                                                                                 \
    void Class::Entry(const wchar_t* file) {                                                                          \
        ZQLoadPackedFile(m_device, m_chunks, file, Format, false);                                                    \
    }                                                                                                                 \
    void Class::Entry(const wchar_t* file, bool split) {                                                              \
        ZQLoadPackedFile(m_device, m_chunks, file, Format, split);                                                    \
    }                                                                                                                 \
    long Class::log2(unsigned long value) {                                                                           \
        return formats::PackedLog2(value);                                                                            \
    }

ZQ_DEFINE_PACKED_READER(ZQOmFile, ZQPackedFormat::Om)
ZQ_DEFINE_PACKED_READER(ZQTeFile, ZQPackedFormat::Te)

#undef ZQ_DEFINE_PACKED_READER

} // namespace ZQ
