#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

class ZQSprite;

/// Reader of ".AM" animation files ("AMv2": single-byte names; "QXR_AM": UTF-16 names). Every scene
/// becomes a ZQAnimateScene registered in the map given at construction (a ZQAnimate's), every frame a
/// frame of it. Normally reached through ZQAnimate::Entry.
class ZQ_API ZQAmFile : public ZQHeapObject {
public:
    ZQAmFile(ZQSprite* sprite, ZQMapper* scenes);
    /// Copies the pointers and the lock's bytes as they are (shallow).
    ZQAmFile(const ZQAmFile& other);
    ZQAmFile& operator=(const ZQAmFile& other);
    virtual ~ZQAmFile();

    /// Reads the file under this reader's lock. An unreadable file is ignored; a wrong magic is dropped
    /// and the file is left open (kept so on purpose); a scene count below 1 registers nothing.
    void Entry(const wchar_t* file);

private:
    ZQSprite* m_sprite;
    ZQMapper* m_scenes;
    CRITICAL_SECTION m_lock;
};

/// Reader of ".TA" animation files ("TETA", UTF-16 names); as ZQAmFile, but a wrong magic closes the file.
class ZQ_API ZQTaFile : public ZQHeapObject {
public:
    ZQTaFile(ZQSprite* sprite, ZQMapper* scenes);
    ZQTaFile(const ZQTaFile& other);
    ZQTaFile& operator=(const ZQTaFile& other);
    virtual ~ZQTaFile();

    void Entry(const wchar_t* file);

private:
    ZQSprite* m_sprite;
    ZQMapper* m_scenes;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
