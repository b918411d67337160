#include "ZQ/serial/ZQSQueue.h"
#include "ZQ/core/ZQLock.h"

#include <cstring>
#include <initializer_list>
#include <new>

namespace ZQ {

ZQSNODE::ZQSNODE(int capacity)
    : data(new (std::nothrow) unsigned char[capacity]()), length(0), capacity(data ? capacity : 0), next(nullptr) {}

ZQSNODE::~ZQSNODE() {
    delete[] data;
}

ZQSQUEUE::ZQSQUEUE()
    : m_nodeCount(0), m_chunkCapacity(kChunkCapacity), m_queued(0), m_head(new (std::nothrow) ZQSNODE*(nullptr)),
      m_tail(new (std::nothrow) ZQSNODE*(nullptr)), m_freeHead(nullptr), m_freeTail(nullptr) {
    InitializeCriticalSection(&m_lock);
    for (int i = 0; i < kInitialNodes; ++i) {
        ZQSNODE* node = new (std::nothrow) ZQSNODE(m_chunkCapacity);
        if (!node)
            break;
        if (m_freeTail)
            m_freeTail->next = node;
        else
            m_freeHead = node;
        m_freeTail = node;
        ++m_nodeCount;
    }
}

ZQSQUEUE::~ZQSQUEUE() {
    for (ZQSNODE* list : {m_freeHead, m_head ? *m_head : nullptr}) {
        while (list) {
            ZQSNODE* next = list->next;
            delete list;
            list = next;
        }
    }
    delete m_head;
    delete m_tail;
    DeleteCriticalSection(&m_lock);
}

ZQSNODE* ZQSQUEUE::TakeSpareNode() {
    ZQSNODE* node = m_freeHead;
    if (node) {
        m_freeHead = node->next;
        if (!m_freeHead)
            m_freeTail = nullptr;
        node->next = nullptr;
        return node;
    }
    node = new (std::nothrow) ZQSNODE(m_chunkCapacity);
    if (node && !node->data) {
        delete node;
        return nullptr;
    }
    if (node)
        ++m_nodeCount;
    return node;
}

int ZQSQUEUE::push(const unsigned char* data, int count) {
    if (count > m_chunkCapacity || count < 0)
        return -1;
    ZQLock lock(&m_lock);
    if (!m_head || !m_tail)
        return -1;
    ZQSNODE* node = TakeSpareNode();
    if (!node)
        return -1;
    if (count > 0)
        memcpy(node->data, data, count);
    node->length = count;
    if (*m_head)
        (*m_tail)->next = node;
    else
        *m_head = node;
    *m_tail = node;
    ++m_queued;
    return count;
}

int ZQSQUEUE::pop(unsigned char* dest) {
    ZQLock lock(&m_lock);
    if (!m_head || !*m_head) {
        if (m_tail)
            *m_tail = nullptr;
        return 0;
    }
    ZQSNODE* node = *m_head;
    *m_head = node->next;
    if (!*m_head)
        *m_tail = nullptr;
    int length = node->length;
    memcpy(dest, node->data, length);
    memset(node->data, 0, node->capacity);
    node->length = 0;
    node->next = nullptr;
    if (m_freeTail)
        m_freeTail->next = node;
    else
        m_freeHead = node;
    m_freeTail = node;
    --m_queued;
    return length;
}

unsigned int ZQSQUEUE::size() {
    ZQLock lock(&m_lock);
    return m_queued;
}

bool ZQSQUEUE::empty() {
    return size() == 0;
}

int ZQSQUEUE::GetNodeCount() {
    ZQLock lock(&m_lock);
    return m_nodeCount;
}

} // namespace ZQ
