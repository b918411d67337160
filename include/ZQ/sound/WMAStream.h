#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

#include <objidl.h>

namespace ZQ {

/// A read-only IStream over a disk file, handed to the media reader. Starts with one reference;
/// the last Release deletes it. Write, SetSize, CopyTo, Commit, Revert, the region locks and Clone
/// answer E_NOTIMPL; Read, Seek and Stat answer E_UNEXPECTED while no file is open.
class ZQ_API WMAStream : public IStream, public ZQHeapObject {
public:
    WMAStream();
    /// Opens the file for shared reading; E_FAIL when it is not a disk file (device, pipe), else the
    /// open's own error as an HRESULT.
    HRESULT Open(const wchar_t* path);

    /// IUnknown, ISequentialStream and IStream give this object; any other interface E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE Read(void* dest, ULONG count, ULONG* got) override;
    HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG count, ULONG* written) override;
    /// Origins 0, 1, 2 (begin, current, end); moves by the low 32 bits of the distance only.
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) override;
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override;
    HRESULT STDMETHODCALLTYPE CopyTo(IStream* to, ULARGE_INTEGER count, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override;
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Revert() override;
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD type) override;
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER count, DWORD type) override;
    /// Needs the no-name flag (1); size and type (stream) only.
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Clone(IStream** copy) override;

protected:
    /// Closes the file; only Release deletes.
    virtual ~WMAStream();

private:
    WMAStream(const WMAStream&) = delete;
    WMAStream& operator=(const WMAStream&) = delete;

    LONG m_references;
    HANDLE m_file;
};

} // namespace ZQ
