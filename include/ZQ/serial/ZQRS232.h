#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/serial/ZQResponseClass.h"
#include "ZQ/serial/ZQSQueue.h"

namespace ZQ {

/// A serial port with a receiver and a sender thread. The application queues chunks with send and takes
/// received chunks with recv; the threads move them between the queues and the line and call the response
/// object (see _ZQResponseClass_tag for which callbacks, on which thread).
/// A copy shares the handles, queues and response of the original: keep and destroy only one of them.
class ZQ_API ZQRS232 : public ZQHeapObject {
public:
    ZQRS232();
    explicit ZQRS232(_ZQResponseClass_tag* response);
    /// Deletes the lock, closes the port, waits (up to 5 s) for both threads to leave, deletes the queues.
    virtual ~ZQRS232();

    /// Opens port (used as given: "COM3", or "\\\\.\\COM12" above COM9) for overlapped I/O with the baud rate,
    /// byte size, stop bits (0 one, 1 one and a half, 2 two) and parity (0 none, 1 odd, 2 even, 3 mark,
    /// 4 space) given, the port's other settings kept; starts both threads and calls OnClassInit.
    /// False when the port does not exist or cannot be configured (a port that could not be configured
    /// stays open until Close). Open first closes what an earlier Open left and waits for its threads.
    bool Open(const wchar_t* port, unsigned long baud, unsigned char byteSize, unsigned char stopBits,
              unsigned char parity);
    /// Stops the threads at the end of their current pass (does not wait for them), discards what the port
    /// buffers and closes it. Chunks in the queues stay.
    void Close();
    /// Queues count bytes for the sender as one chunk; returns count, or -1 when count exceeds 2180.
    /// The sender writes each chunk whole with one write.
    int send(unsigned char* data, int count);
    /// Takes the oldest received chunk into dest, which must hold 2180 bytes; returns its length, 0 when none.
    int recv(unsigned char* dest);
    void SetResponse(_ZQResponseClass_tag* response);
    _ZQResponseClass_tag* GetResponse();

protected:
    /// One overlapped read of what is waiting, at most count bytes; returns the bytes read (0 on errors).
    unsigned long Read(unsigned char* dest, unsigned long count);
    /// One overlapped write; returns the bytes written (0 when not running or on errors).
    unsigned long Write(unsigned char* data, unsigned long count);

    static DWORD WINAPI pRecv(ZQRS232* self);
    static DWORD WINAPI pSend(ZQRS232* self);

private:
    static DWORD WINAPI RecvThreadEntry(void* self);
    static DWORD WINAPI SendThreadEntry(void* self);
    void WaitForThreadsToLeave();

    wchar_t m_portName[32];
    HANDLE m_port;
    HANDLE m_recvThread;
    HANDLE m_sendThread;
    OVERLAPPED m_readOverlapped;
    OVERLAPPED m_writeOverlapped;
    volatile LONG m_running;
    ZQSQUEUE* m_recvQueue;
    ZQSQUEUE* m_sendQueue;
    _ZQResponseClass_tag* m_response;
    CRITICAL_SECTION m_lock;
    // Own handles of the threads of the last Open: Close gives up the public ones without waiting.
    HANDLE m_threadsToJoin[2];
};

} // namespace ZQ
