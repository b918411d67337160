#include "ZQ/twod/ZQAnimateFile.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQMediaSearch.h"
#include "ZQ/twod/ZQAnimate.h"
#include "src/core/ZQFileBytes.h"
#include "src/core/ZQOutOfMemory.h"
#include "src/formats/ZQAnimationFile.h"
#include "src/formats/ZQNameText.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace ZQ {

namespace {

enum class Kind { Am, Ta };

std::wstring Wide(const std::u16string& text) {
    return std::wstring(text.begin(), text.end());
}

// A scene name is read as format text with no arguments, the safe way (src/formats/ZQNameText.h).
ZQString SceneName(const formats::AnimationScene& scene, bool wide) {
    return wide ? ZQString(L"%ls", formats::NameFromFormatText(Wide(scene.wideName)).c_str())
                : ZQString("%s", formats::NameFromFormatText(scene.narrowName).c_str());
}

// Colour from packed A8R8G8B8.
D3DXCOLOR Colour(uint32_t argb) {
    return D3DXCOLOR(static_cast<float>(argb >> 16 & 0xFF) / 255.0f, static_cast<float>(argb >> 8 & 0xFF) / 255.0f,
                     static_cast<float>(argb & 0xFF) / 255.0f, static_cast<float>(argb >> 24) / 255.0f);
}

_ZQAnimateFrame_tag* MakeFrame(ZQSprite* sprite, const formats::AnimationFrame& from, bool wide) {
    _ZQAnimateFrame_tag* frame = new _ZQAnimateFrame_tag(sprite);
    frame->anchor = D3DXVECTOR3(static_cast<float>(from.anchor[0]), static_cast<float>(from.anchor[1]), 0.0f);
    frame->endAnchor = D3DXVECTOR3(static_cast<float>(from.endAnchor[0]), static_cast<float>(from.endAnchor[1]), 0.0f);
    frame->duration = from.duration;
    frame->placement = ZQRect(from.placement[0], from.placement[1], from.placement[2], from.placement[3]);
    frame->color = Colour(from.colour);
    if (wide)
        frame->chunk = Wide(from.wideChunk).c_str();
    else
        frame->chunk = from.narrowChunk.c_str();
    return frame;
}

void Load(ZQSprite* sprite, ZQMapper* scenes, const wchar_t* file, Kind kind) {
    if (!file || !scenes)
        return;
    wchar_t path[256];
    ZQFindDXSDKMediaFileCch(path, 256, file);
    std::vector<uint8_t> bytes;
    HANDLE open = INVALID_HANDLE_VALUE;
    if (!ZQReadFileBytes(path, bytes, &open)) {
        ZQReportUnreadFile(L"ZQAnimate::Entry", file, path);
        return;
    }
    formats::AnimationFile parsed;
    const formats::ParseResult result = kind == Kind::Am ? formats::ParseAm(bytes.data(), bytes.size(), parsed)
                                                         : formats::ParseTa(bytes.data(), bytes.size(), parsed);
    if (result != formats::ParseResult::Ok) {
        ZQMessage(L"%ls File Error", file);
        // An ".AM" file with a wrong magic stays open, as it always has; a ".TA" file is closed.
        if (kind == Kind::Ta)
            CloseHandle(open);
        return;
    }
    CloseHandle(open);
    const bool wide = formats::IsWide(parsed.layout);
    // Each scene is registered at once, then given its frames.
    for (const formats::AnimationScene& from : parsed.scenes) {
        ZQAnimateScene* scene = new ZQAnimateScene(sprite, D3DXVECTOR3(0.0f, 0.0f, 0.0f));
        ZQString name = SceneName(from, wide);
        scenes->insert(name, scene);
        ZQVector& frames = scene->GetFrames();
        for (const formats::AnimationFrame& frame : from.frames) {
            _ZQAnimateFrame_tag* made = MakeFrame(sprite, frame, wide);
            const unsigned int before = frames.size();
            frames.push_back(made);
            if (frames.size() == before) { // the list is at its ceiling
                delete made;
                break;
            }
        }
    }
}

void LoadQuietly(ZQSprite* sprite, ZQMapper* scenes, const wchar_t* file, Kind kind) {
    // Out of memory while reading: the file is dropped as far as it got.
    ZQSurvivesOutOfMemory([&] { Load(sprite, scenes, file, kind); });
}

} // namespace

// The two readers differ only in the kind of file they hand to the shared loader.
#define ZQ_DEFINE_ANIMATION_READER(Class, FileKind)                                                                  \
    Class::Class(ZQSprite* sprite, ZQMapper* scenes) : m_sprite(sprite), m_scenes(scenes) {                         \
        InitializeCriticalSection(&m_lock);                                                                          \
    }                                                                                                                \
    Class::Class(const Class& other) : m_sprite(other.m_sprite), m_scenes(other.m_scenes) {                         \
        std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);                                                          \
    }                                                                                                                \
    Class& Class::operator=(const Class& other) {                                                                    \
        m_sprite = other.m_sprite;                                                                                   \
        m_scenes = other.m_scenes;                                                                                   \
        std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);                                                          \
        return *this;                                                                                                \
    }                                                                                                                \
    Class::~Class() {                                                                                                \
        DeleteCriticalSection(&m_lock);                                                                              \
    }                                                                                                                \
    void Class::Entry(const wchar_t* file) {                                                                         \
        ZQLock lock(&m_lock);                                                                                        \
        LoadQuietly(m_sprite, m_scenes, file, FileKind);                                                             \
    }

ZQ_DEFINE_ANIMATION_READER(ZQAmFile, Kind::Am)
ZQ_DEFINE_ANIMATION_READER(ZQTaFile, Kind::Ta)

#undef ZQ_DEFINE_ANIMATION_READER

} // namespace ZQ
