#include "ZQ/serial/ZQRS232.h"
#include "ZQ/core/ZQLock.h"

#include <cstring>
#include <initializer_list>
#include <cwchar>
#include <new>

namespace ZQ {

namespace {
const DWORD kQueueBytes = 4096;
const DWORD kPurgeAll = PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR; // 15
const unsigned long kThreadBufferBytes = 2048;
const DWORD kIdleSleepMs = 50;
// Long enough for a pass to finish (a 50 ms sleep, a write, a callback), short enough not to hang a shutdown
// on a callback that never returns.
const DWORD kThreadLeaveWaitMs = 5000;

void ClearErrors(HANDLE port, COMSTAT* status = nullptr) {
    DWORD errors = 0;
    COMSTAT ignored;
    ClearCommError(port, &errors, status ? status : &ignored);
}
} // namespace

ZQRS232::ZQRS232() : ZQRS232(nullptr) {}

ZQRS232::ZQRS232(_ZQResponseClass_tag* response)
    : m_port(nullptr), m_recvThread(nullptr), m_sendThread(nullptr), m_running(0),
      m_recvQueue(new (std::nothrow) ZQSQUEUE), m_sendQueue(new (std::nothrow) ZQSQUEUE), m_response(response),
      m_threadsToJoin{nullptr, nullptr} {
    memset(m_portName, 0, sizeof m_portName);
    memset(&m_readOverlapped, 0, sizeof m_readOverlapped);
    memset(&m_writeOverlapped, 0, sizeof m_writeOverlapped);
    InitializeCriticalSection(&m_lock);
}

ZQRS232::~ZQRS232() {
    // The lock goes first and the port after it, in this order on purpose; the wait keeps the threads from
    // outliving the queues and this object.
    DeleteCriticalSection(&m_lock);
    Close();
    WaitForThreadsToLeave();
    delete m_recvQueue;
    delete m_sendQueue;
}

void ZQRS232::WaitForThreadsToLeave() {
    DWORD self = GetCurrentThreadId();
    for (HANDLE& thread : m_threadsToJoin) {
        if (!thread)
            continue;
        // A callback that closes or reopens its own port cannot wait for itself.
        if (GetThreadId(thread) != self)
            WaitForSingleObject(thread, kThreadLeaveWaitMs);
        CloseHandle(thread);
        thread = nullptr;
    }
}

bool ZQRS232::Open(const wchar_t* port, unsigned long baud, unsigned char byteSize, unsigned char stopBits,
                   unsigned char parity) {
    if (!port || baud == 0)
        return false;
    // Whatever an earlier Open left (an unconfigurable port, or one still open) is closed first, and its
    // threads must be gone before running is set again.
    Close();
    WaitForThreadsToLeave();

    m_readOverlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!m_readOverlapped.hEvent)
        return false;
    m_writeOverlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!m_writeOverlapped.hEvent)
        return false;
    m_readOverlapped.Offset = m_readOverlapped.OffsetHigh = 0;
    m_writeOverlapped.Offset = m_writeOverlapped.OffsetHigh = 0;

    memset(m_portName, 0, sizeof m_portName);
    wcsncpy(m_portName, port, sizeof m_portName / sizeof m_portName[0] - 1);

    HANDLE handle = CreateFileW(m_portName, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OVERLAPPED, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    m_port = handle;

    SetCommMask(m_port, EV_RXCHAR);
    SetupComm(m_port, kQueueBytes, kQueueBytes);
    PurgeComm(m_port, kPurgeAll);

    // Reads return at once with what has arrived; writes get 19200 / baud ms a byte (none above 19200 baud).
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = 0;
    timeouts.ReadTotalTimeoutConstant = 0;
    timeouts.WriteTotalTimeoutMultiplier = 19200 / baud;
    timeouts.WriteTotalTimeoutConstant = 0;
    SetCommTimeouts(m_port, &timeouts);

    DCB dcb = {};
    dcb.DCBlength = sizeof dcb;
    GetCommState(m_port, &dcb);
    dcb.BaudRate = baud;
    dcb.ByteSize = byteSize;
    dcb.Parity = parity;
    dcb.StopBits = stopBits;
    if (!SetCommState(m_port, &dcb))
        return false;

    m_running = 1;
    m_recvThread = CreateThread(nullptr, 0, RecvThreadEntry, this, 0, nullptr);
    m_sendThread = m_recvThread ? CreateThread(nullptr, 0, SendThreadEntry, this, 0, nullptr) : nullptr;
    HANDLE process = GetCurrentProcess();
    HANDLE threads[2] = {m_recvThread, m_sendThread};
    for (int i = 0; i < 2; ++i) {
        if (threads[i] && !DuplicateHandle(process, threads[i], process, &m_threadsToJoin[i], 0, FALSE,
                                           DUPLICATE_SAME_ACCESS))
            m_threadsToJoin[i] = nullptr;
    }
    if (!m_recvThread || !m_sendThread) {
        Close();
        return false;
    }

    if (_ZQResponseClass_tag* response = GetResponse())
        response->OnClassInit(this);
    return true;
}

void ZQRS232::Close() {
    m_running = 0;
    if (m_port) {
        SetCommMask(m_port, 0);
        PurgeComm(m_port, kPurgeAll);
    }
    // The events too when the port never opened, so that a failed Open leaks nothing.
    for (HANDLE* handle : {&m_readOverlapped.hEvent, &m_writeOverlapped.hEvent, &m_port, &m_recvThread,
                           &m_sendThread}) {
        if (*handle)
            CloseHandle(*handle);
        *handle = nullptr;
    }
}

int ZQRS232::send(unsigned char* data, int count) {
    if (!m_sendQueue || count > ZQSQUEUE::kChunkCapacity)
        return -1;
    return m_sendQueue->push(data, count);
}

int ZQRS232::recv(unsigned char* dest) {
    return m_recvQueue ? m_recvQueue->pop(dest) : 0;
}

void ZQRS232::SetResponse(_ZQResponseClass_tag* response) {
    ZQLock lock(&m_lock);
    m_response = response;
}

_ZQResponseClass_tag* ZQRS232::GetResponse() {
    ZQLock lock(&m_lock);
    return m_response;
}

unsigned long ZQRS232::Read(unsigned char* dest, unsigned long count) {
    COMSTAT status = {};
    ClearErrors(m_port, &status);
    if (status.cbInQue == 0)
        return 0;
    DWORD done = 0;
    if (!ReadFile(m_port, dest, count, &done, &m_readOverlapped)) {
        if (GetLastError() != ERROR_IO_PENDING) {
            ClearErrors(m_port);
            return 0;
        }
        while (!GetOverlappedResult(m_port, &m_readOverlapped, &done, TRUE)) {
            if (GetLastError() != ERROR_IO_INCOMPLETE) {
                ClearErrors(m_port);
                break;
            }
        }
    }
    return done;
}

unsigned long ZQRS232::Write(unsigned char* data, unsigned long count) {
    if (!m_running)
        return 0;
    DWORD done = 0;
    if (WriteFile(m_port, data, count, &done, &m_writeOverlapped))
        return done;
    if (GetLastError() == ERROR_IO_PENDING) {
        for (;;) {
            if (GetOverlappedResult(m_port, &m_writeOverlapped, &done, TRUE))
                return done;
            if (GetLastError() != ERROR_IO_INCOMPLETE)
                break;
        }
    }
    ClearErrors(m_port);
    return done;
}

DWORD WINAPI ZQRS232::RecvThreadEntry(void* self) {
    return pRecv(static_cast<ZQRS232*>(self));
}

DWORD WINAPI ZQRS232::SendThreadEntry(void* self) {
    return pSend(static_cast<ZQRS232*>(self));
}

DWORD WINAPI ZQRS232::pRecv(ZQRS232* self) {
    unsigned char buffer[kThreadBufferBytes];
    if (!self->m_running)
        return 0;
    do {
        DWORD mask = 0;
        // Returns on received bytes, or with an empty mask when Close clears the mask.
        WaitCommEvent(self->m_port, &mask, nullptr);
        if (mask & EV_RXCHAR) {
            while (unsigned long count = self->Read(buffer, sizeof buffer))
                self->m_recvQueue->push(buffer, static_cast<int>(count));
        } else {
            Sleep(kIdleSleepMs);
        }
        if (_ZQResponseClass_tag* response = self->GetResponse())
            response->OnClassRecv(self);
    } while (self->m_running);
    return 0;
}

DWORD WINAPI ZQRS232::pSend(ZQRS232* self) {
    // Room for a whole chunk, so that one of more than 2048 bytes is written whole rather than overrun.
    unsigned char buffer[ZQSQUEUE::kChunkCapacity];
    if (!self->m_running)
        return 0;
    do {
        if (_ZQResponseClass_tag* response = self->GetResponse())
            response->OnClassSend(self);
        int length = self->m_sendQueue->pop(buffer);
        if (length < 1)
            Sleep(kIdleSleepMs);
        else
            self->Write(buffer, static_cast<unsigned long>(length));
    } while (self->m_running);
    return 0;
}

} // namespace ZQ
