// Accessors that read or write one member inside the class's lock member (a ZQCriticalSection m_lock).
#pragma once
#include "ZQ/core/ZQCriticalSection.h"

/// Class::Set<name>(type) and Class::Get<name>() of member.
#define ZQ_LOCKED_ACCESSORS(Class, type, name, member)                                                                \
    void Class::Set##name(type value) {                                                                               \
        m_lock.Write(member, value);                                                                                  \
    }                                                                                                                 \
    type Class::Get##name() {                                                                                         \
        return m_lock.Read(member);                                                                                   \
    }
