#include "ZQ/twod/ZQSpline.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"
#include "src/core/ZQFileBytes.h"
#include "src/core/ZQOutOfMemory.h"
#include "src/formats/ZQAnimationFile.h"
#include "src/formats/ZQNameText.h"

#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace ZQ {

namespace {

void LoadSplines(ZQMapper* paths, const wchar_t* file, WORD first, WORD second) {
    std::vector<uint8_t> bytes;
    if (!file || !paths || !ZQReadMediaFileBytes(file, bytes, L"ZQSpline::Entry"))
        return;
    formats::SplineFile parsed;
    formats::ParseSpline(bytes.data(), bytes.size(), parsed);
    if (parsed.first != first || parsed.second != second) {
        ZQMessage(L"ZQSpline::Entry: %ls: its header words are %u and %u, not the %u and %u asked for", file,
                  parsed.first, parsed.second, first, second);
        return;
    }
    if (parsed.declaredPaths <= 0) {
        ZQMessage(L"ZQSpline::Entry: %ls: no path in it (truncated?)", file);
        return;
    }
    for (const formats::SplinePath& from : parsed.paths) {
        _ZQSplineChunk_tag* chunk = new _ZQSplineChunk_tag;
        chunk->time = from.time;
        for (const formats::SplineKey& key : from.keys)
            chunk->spline.push_back(_3D::_ZQ3DTcbSpline_tag(
                D3DXVECTOR3(key.position[0], key.position[1], key.position[2]), key.time, key.tension,
                key.continuity, key.bias));
        // Read as format text with no arguments, the safe way (src/formats/ZQNameText.h).
        const std::wstring wide(from.name.begin(), from.name.end());
        ZQString name(L"%ls", formats::NameFromFormatText(wide).c_str());
        paths->insert(name, chunk);
    }
}

} // namespace

ZQSplFile::ZQSplFile(ZQMapper* paths) : m_paths(paths) {
    InitializeCriticalSection(&m_lock);
}

ZQSplFile::ZQSplFile(const ZQSplFile& other) : m_paths(other.m_paths) {
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
}

ZQSplFile& ZQSplFile::operator=(const ZQSplFile& other) {
    m_paths = other.m_paths;
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
    return *this;
}

ZQSplFile::~ZQSplFile() {
    DeleteCriticalSection(&m_lock);
}

void ZQSplFile::Entry(const wchar_t* file, WORD first, WORD second) {
    ZQLock lock(&m_lock);
    // Out of memory while reading: the paths read so far stay.
    ZQSurvivesOutOfMemory([&] { LoadSplines(m_paths, file, first, second); });
}

ZQSpline::ZQSpline(const wchar_t* file, WORD first, WORD second) : ZQSplFile(&m_paths) {
    InitializeCriticalSection(&m_lock);
    if (file)
        Entry(file, first, second);
}

ZQSpline::~ZQSpline() {
    {
        ZQLock lock(&m_lock);
        for (ZQMapper::iterator it = m_paths.begin(); it != m_paths.end(); ++it)
            delete static_cast<_ZQSplineChunk_tag*>(it->value);
        m_paths.clear();
    }
    DeleteCriticalSection(&m_lock);
}

void ZQSpline::Entry(const wchar_t* file, WORD first, WORD second) {
    ZQLock lock(&m_lock);
    if (!file)
        return;
    ZQString upper;
    upper = file;
    upper.upper();
    // A substring test: "path.spl.old" is read.
    if (std::wcsstr(static_cast<const wchar_t*>(upper), L".SPL"))
        ZQSplFile::Entry(file, first, second);
}

_ZQSplineChunk_tag* ZQSpline::Trans(const wchar_t* name) {
    ZQLock lock(&m_lock);
    if (!name)
        return nullptr;
    return static_cast<_ZQSplineChunk_tag*>(m_paths.find_name(name));
}

_3D::ZQ3DSpline* ZQSpline::GetSpline(const wchar_t* name) {
    ZQLock lock(&m_lock);
    _ZQSplineChunk_tag* chunk = Trans(name);
    return chunk ? &chunk->spline : nullptr;
}

float ZQSpline::GetTime(const wchar_t* name) {
    ZQLock lock(&m_lock);
    _ZQSplineChunk_tag* chunk = Trans(name);
    return chunk ? chunk->time : 0.0f;
}

} // namespace ZQ
