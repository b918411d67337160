#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/core/ZQVector.h"
#include "ZQ/twod/ZQAnimateFile.h"

namespace ZQ {

class ZQSprite;

/// One frame of an animation: which chunk, where, how long, in which colour, and how far the scene
/// moves when the frame ends. Made by the file readers and owned by its scene.
struct ZQ_API _ZQAnimateFrame_tag {
    explicit _ZQAnimateFrame_tag(ZQSprite* sprite = nullptr);
    ZQSprite* sprite;       ///< the drawer (not owned)
    D3DXVECTOR3 anchor;     ///< pixel point of the frame placed at the scene's position
    D3DXVECTOR3 endAnchor;  ///< where that point is when the frame ends: anchor != endAnchor moves the scene
    ZQString chunk;         ///< name of the texture chunk drawn (an unknown name draws nothing)
    D3DXCOLOR color;        ///< tint and alpha
    ZQRect placement;       ///< destination relative to the scene's drawing position, in pixels
    float duration;         ///< seconds the frame is shown
};

/// One named animation: a list of frames advanced and drawn by OnFrameRender. Created stopped with
/// loops 0, so it reports finished until a player sets loops and playing. Copies are memberwise:
/// the frame list is shared, not duplicated.
class ZQ_API ZQAnimateScene {
public:
    /// OnFrameRender's results.
    enum Status { Running = 0, Finished = 1, NoFrames = 4, Hidden = 5 };

    ZQAnimateScene(ZQSprite* sprite, const D3DXVECTOR3& position);
    ZQAnimateScene(const ZQAnimateScene& other) = default;
    ZQAnimateScene& operator=(const ZQAnimateScene& other) = default;
    /// Deletes the frames unless they are borrowed.
    ~ZQAnimateScene();

    /// Adds elapsed seconds and draws the current frame; a frame whose time is over is drawn once more,
    /// moves the scene by its anchors and hands over to the next. At most one frame advances a call,
    /// so a long pause is caught up over the following calls. Returns 0 running (or stopped: nothing
    /// drawn), 1 finished (loops exhausted: also on the call that ends the last pass), 4 no frames,
    /// 5 hidden.
    int OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

    /// The frame list (owned unless borrowed); appending a _ZQAnimateFrame_tag* gives the scene to own it.
    ZQVector& GetFrames() { return m_frames; }
    _ZQAnimateFrame_tag* GetFrame(int index) const;
    ZQSprite* GetSprite() const { return m_sprite; }
    /// Non-null: the frame list belongs to another scene (the one given) and is not deleted here.
    const void* GetBorrowed() const { return m_borrowed; }
    void SetBorrowed(const void* owner) { m_borrowed = owner; }
    /// Borrows source's frame list (copies its pointers) and marks it borrowed.
    void Borrow(const ZQAnimateScene& source);

    /// Where the last frame was drawn from: position + offset - anchor * scale.
    const D3DXVECTOR3& GetDrawPosition() const { return m_drawPosition; }
    void SetDrawPosition(const D3DXVECTOR3& pos) { m_drawPosition = pos; }
    const D3DXVECTOR3& GetPosition() const { return m_position; }
    void SetPosition(const D3DXVECTOR3& pos) { m_position = pos; }
    const D3DXVECTOR3& GetOffset() const { return m_offset; }
    void SetOffset(const D3DXVECTOR3& offset) { m_offset = offset; }
    /// Seconds spent in the current frame.
    float GetTime() const { return m_time; }
    void SetTime(float time) { m_time = time; }
    float GetScale() const { return m_scale; }
    void SetScale(float scale) { m_scale = scale; }
    float GetAngle() const { return m_angle; }
    void SetAngle(float angle) { m_angle = angle; }
    bool GetPlaying() const { return m_playing; }
    void SetPlaying(bool playing) { m_playing = playing; }
    bool GetVisible() const { return m_visible; }
    void SetVisible(bool visible) { m_visible = visible; }
    int GetCurrentFrame() const { return m_currentFrame; }
    void SetCurrentFrame(int index) { m_currentFrame = index; }
    /// Remaining passes: 0 finished, negative endless.
    int GetLoops() const { return m_loops; }
    void SetLoops(int loops) { m_loops = loops; }

private:
    void Draw(const _ZQAnimateFrame_tag& frame);

    ZQSprite* m_sprite;
    ZQVector m_frames;
    const void* m_borrowed = nullptr;
    D3DXVECTOR3 m_drawPosition;
    D3DXVECTOR3 m_position;
    D3DXVECTOR3 m_offset;
    float m_time = 0.0f;
    float m_scale = 1.0f;
    float m_angle = 0.0f;
    bool m_playing = false;
    bool m_visible = true;
    int m_currentFrame = 0;
    int m_loops = 0;
};

/// A set of named animations drawn with one sprite, filled from ".AM" and ".TA" files. Names are
/// case-insensitive; the first scene registered under a name wins. Owns its scenes.
class ZQ_API ZQAnimate : public ZQAmFile, public ZQTaFile {
public:
    explicit ZQAnimate(ZQSprite* sprite);
    ZQAnimate(const ZQAnimate&) = delete;
    ZQAnimate& operator=(const ZQAnimate&) = delete;
    /// Deletes every scene and its frames.
    virtual ~ZQAnimate();

    /// Reads a file chosen by the upper-cased name: containing ".AM" (tested first), else ".TA";
    /// any other name is ignored.
    void Entry(const wchar_t* file);
    /// The scene of that name, or null. Takes no lock: register scenes before players look them up.
    ZQAnimateScene* Trans(const wchar_t* name);
    /// The sprite, read under the lock.
    ZQSprite* GetSprite();

private:
    ZQSprite* m_sprite;
    CRITICAL_SECTION m_lock;
    ZQMapper m_scenes;
};

} // namespace ZQ
