#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/threed/ZQ3DSpline.h"

namespace ZQ {

/// One named path: its total time, as the file gives it, and its TCB spline.
struct ZQ_API _ZQSplineChunk_tag {
    float time = 0.0f;
    _3D::ZQ3DSpline spline;
};

/// Reader of ".SPL" spline-path files into a ZQSpline's map. Normally reached through ZQSpline.
class ZQ_API ZQSplFile : public ZQHeapObject {
public:
    explicit ZQSplFile(ZQMapper* paths);
    ZQSplFile(const ZQSplFile& other);
    ZQSplFile& operator=(const ZQSplFile& other);
    virtual ~ZQSplFile();

    /// Reads the file when its two identification words are first and second and it holds paths;
    /// anything else (unreadable, other words, no paths) is ignored silently.
    void Entry(const wchar_t* file, WORD first, WORD second);

private:
    ZQMapper* m_paths;
    CRITICAL_SECTION m_lock;
};

/// Named motion paths loaded from ".SPL" files; the caller's two words say which kind or version of
/// file it accepts. Names are case-insensitive; the first path of a name wins. Owns its paths.
class ZQ_API ZQSpline : public ZQSplFile {
public:
    /// Loads file when it is not null.
    ZQSpline(const wchar_t* file, WORD first, WORD second);
    ZQSpline(const ZQSpline&) = delete;
    ZQSpline& operator=(const ZQSpline&) = delete;
    virtual ~ZQSpline();

    /// Reads the file when its upper-cased name contains ".SPL" anywhere; other names are ignored.
    void Entry(const wchar_t* file, WORD first, WORD second);
    /// The path of that name, or null (also for a null name).
    _ZQSplineChunk_tag* Trans(const wchar_t* name);
    /// The path's spline (ready from four keys on), or null.
    _3D::ZQ3DSpline* GetSpline(const wchar_t* name);
    /// The path's total time, or 0.0.
    float GetTime(const wchar_t* name);

private:
    CRITICAL_SECTION m_lock;
    ZQMapper m_paths;
};

} // namespace ZQ
