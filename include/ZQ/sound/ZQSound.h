#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQVector.h"
#include "ZQ/sound/ZQMp3File.h"
#include "ZQ/sound/ZQWaveFile.h"

namespace ZQ {

/// The sound board: named wave effects in static DirectSound buffers and one MP3 piece decoded
/// whole. Names are case-insensitive. Register from one thread; once registered, sounds may be
/// looked up, played, tested and stopped from several threads at once.
class ZQ_API ZQSound : private ZQMp3File {
public:
    /// Allocated by the library, as every class destroyed through a virtual destructor.
    using ZQMp3File::operator new;
    using ZQMp3File::operator delete;

    /// Opens the default device and sets window and level as given. Without a device every
    /// operation does nothing; when only the level fails no MP3 can be registered.
    ZQSound(HWND window, unsigned long level);
    /// Releases every registered buffer and the device.
    virtual ~ZQSound();
    ZQSound(const ZQSound& other) = default;
    ZQSound& operator=(const ZQSound& other) = default;

    /// Registers file (found by the media search) under name: ".WAV" as a static buffer, ".MP3"
    /// decoded into the board's one stream (a later MP3 replaces the decoding, not the earlier
    /// buffer). Any other extension registers the name pointer itself, which is no buffer: Trans
    /// returns it, and Play, isPlay and Stop treat the name as unknown. The name is read as
    /// format text: "%%" is registered as "%", any other conversion as written. A file that cannot be
    /// read or played (a format no device takes, an MP3 without a 22,050 Hz 16-bit stereo output)
    /// registers nothing. A repeated name adds an entry that lookups never reach.
    void Entry(const wchar_t* name, const wchar_t* file);
    /// The buffer registered under name (for a file of another kind, the name pointer it was
    /// registered with), or null.
    IDirectSoundBuffer* Trans(const wchar_t* name);
    /// Plays from the current position (rewind: from the start if it is playing); flags as the
    /// buffer's Play (DSBPLAY_LOOPING). False for an unknown name, a name registered without a sound,
    /// or no device.
    bool Play(const wchar_t* name, bool rewind, unsigned long priority, unsigned long flags);
    /// True while the buffer plays.
    bool isPlay(const wchar_t* name);
    /// Stops every buffer and sets it back to its start.
    void Stop();
    /// Stops one buffer and sets it back to its start.
    void Stop(const wchar_t* name);

protected:
    /// A static buffer filled from a wave file, or null.
    IDirectSoundBuffer* Create(const wchar_t* file, unsigned long flags, GUID algorithm);
    /// Fills the buffer from the start of the wave's data; the rest is silence (or the data again
    /// with repeat).
    HRESULT FillBufferWithSound(IDirectSoundBuffer* buffer, ZQWaveFile* wave, bool repeat);
    /// Restores a lost buffer (contents not refilled); S_FALSE when it was not lost.
    HRESULT RestoreBuffer(IDirectSoundBuffer* buffer, bool* restored);

private:
    /// False for a value registered as a name rather than a buffer.
    bool IsBuffer(void* value) const;
    /// The buffer registered under name, or null for an unknown name or one registered without a sound.
    IDirectSoundBuffer* SoundBuffer(const wchar_t* name);

    IDirectSound8* m_device;
    ZQMapper m_sounds; ///< upper-cased name to IDirectSoundBuffer*
    ZQVector m_names;  ///< the values registered that are names, not buffers
};

} // namespace ZQ
