#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// One chunk of bytes in a ZQSQUEUE, or a spare node in its pool.
class ZQ_API ZQSNODE : public ZQHeapObject {
public:
    /// A zero-filled buffer of capacity bytes (none when it cannot be had), length 0.
    explicit ZQSNODE(int capacity);
    virtual ~ZQSNODE();
    ZQSNODE(const ZQSNODE&) = delete;
    ZQSNODE& operator=(const ZQSNODE&) = delete;

    unsigned char* data;
    int length;
    int capacity;
    ZQSNODE* next;
};

/// Thread-safe first-in-first-out queue of byte chunks of up to 2180 bytes each. Its nodes come from a
/// pool of 30 made up front; a push with no spare node makes one more, and nodes go back to the pool,
/// never to the heap, until the queue is destroyed: the pool only grows.
class ZQ_API ZQSQUEUE : public ZQHeapObject {
public:
    enum { kChunkCapacity = 2180, kInitialNodes = 30 };

    ZQSQUEUE();
    virtual ~ZQSQUEUE();
    ZQSQUEUE(const ZQSQUEUE&) = delete;
    ZQSQUEUE& operator=(const ZQSQUEUE&) = delete;

    /// Appends count bytes as one chunk; returns count, or -1 when count exceeds 2180 (or is negative, or no
    /// node can be had) and nothing is queued.
    int push(const unsigned char* data, int count);
    /// Moves the oldest chunk into dest (room for 2180 bytes) and returns its length; 0 when empty.
    int pop(unsigned char* dest);
    /// Chunks waiting.
    unsigned int size();
    bool empty();
    /// Nodes made so far, queued and spare: 30 at first, one more for every chunk the pool lacked.
    int GetNodeCount();

private:
    ZQSNODE* TakeSpareNode();

    int m_nodeCount;
    int m_chunkCapacity;
    unsigned int m_queued;
    ZQSNODE** m_head;
    ZQSNODE** m_tail;
    ZQSNODE* m_freeHead;
    ZQSNODE* m_freeTail;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
