// The serial port against a real line: COM7 and COM8 are the two ends of a pty pair (cmake/serial-line.sh).
// The tests drive ZQRS232 on COM7 and play the device on COM8.
#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

using ZQ::ZQRS232;
using ZQ::ZQSQUEUE;

namespace {

const wchar_t* const kPort = L"COM7";
const wchar_t* const kPeerPort = L"COM8";
const int kChunk = ZQSQUEUE::kChunkCapacity;

std::vector<unsigned char> Pattern(size_t size, unsigned seed) {
    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + (i >> 11) + seed); // every byte value, XON and XOFF too
    return bytes;
}

// The device's end of the cable: plain blocking I/O whose reads give up after 2 s of silence.
class Peer {
public:
    Peer() {
        handle = CreateFileW(kPeerPort, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        COMMTIMEOUTS timeouts = {100, 0, 2000, 0, 0};
        SetCommTimeouts(handle, &timeouts);
        PurgeComm(handle, PURGE_RXCLEAR | PURGE_TXCLEAR); // whatever an earlier test left on the line
    }
    ~Peer() { CloseHandle(handle); }
    bool Ready() const { return handle != INVALID_HANDLE_VALUE; }
    bool Write(const unsigned char* data, size_t size) {
        while (size) {
            DWORD wrote = 0;
            if (!WriteFile(handle, data, static_cast<DWORD>(size < 4096 ? size : 4096), &wrote, nullptr))
                return false;
            data += wrote;
            size -= wrote;
        }
        return true;
    }
    // Reads until size bytes came or the line stayed silent for 2 s.
    std::vector<unsigned char> Read(size_t size) {
        std::vector<unsigned char> bytes(size);
        size_t have = 0;
        while (have < size) {
            DWORD got = 0;
            if (!ReadFile(handle, bytes.data() + have, static_cast<DWORD>(size - have), &got, nullptr) || !got)
                break;
            have += got;
        }
        bytes.resize(have);
        return bytes;
    }
    HANDLE handle;
};

// Takes chunks from recv until size bytes came or timeoutMs passed; records each chunk's length.
std::vector<unsigned char> Receive(ZQRS232& port, size_t size, std::vector<int>* chunkLengths, int timeoutMs) {
    std::vector<unsigned char> bytes;
    unsigned char chunk[kChunk];
    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (bytes.size() < size && std::chrono::steady_clock::now() < deadline) {
        int length = port.recv(chunk);
        if (length == 0) {
            Sleep(1);
            continue;
        }
        if (chunkLengths)
            chunkLengths->push_back(length);
        bytes.insert(bytes.end(), chunk, chunk + length);
    }
    return bytes;
}

bool Open(ZQRS232& port, const wchar_t* name = kPort) {
    return port.Open(name, 115200, 8, ONESTOPBIT, NOPARITY);
}

} // namespace

TEST(ZQSQUEUE, ChunksComeOutInOrderAndThePoolOnlyGrows) {
    ZQSQUEUE queue;
    EXPECT_EQ(ZQSQUEUE::kInitialNodes, queue.GetNodeCount());
    unsigned char out[kChunk];
    EXPECT_EQ(0, queue.pop(out));

    struct {
        int count;
        int result;
    } const sizes[] = {{kChunk + 1, -1}, {kChunk, kChunk}, {1, 1}, {2048, 2048}};
    std::vector<unsigned char> bytes = Pattern(kChunk + 1, 3);
    for (const auto& size : sizes)
        EXPECT_EQ(size.result, queue.push(bytes.data(), size.count)) << size.count;
    EXPECT_EQ(3u, queue.size()); // the oversized chunk queued nothing
    for (int expected : {kChunk, 1, 2048}) {
        ASSERT_EQ(expected, queue.pop(out));
        EXPECT_EQ(0, memcmp(out, bytes.data(), expected));
    }

    // 40 chunks waiting at once need 10 nodes more; they stay when the queue empties.
    for (int i = 0; i < 40; ++i)
        ASSERT_EQ(1, queue.push(reinterpret_cast<unsigned char*>(&i), 1));
    EXPECT_EQ(40, queue.GetNodeCount());
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(1, queue.pop(out));
        EXPECT_EQ(i, out[0]);
    }
    EXPECT_TRUE(queue.empty());
    EXPECT_EQ(40, queue.GetNodeCount());
    for (int i = 0; i < 40; ++i)
        queue.push(bytes.data(), 10);
    EXPECT_EQ(40, queue.GetNodeCount());
}

namespace {

// Counts the three notifications and remembers the threads they came on.
class Recorder : public ZQ::_ZQResponseClass_tag {
public:
    void OnClassInit(void* sender) override {
        initSender = sender;
        initThread = GetCurrentThreadId();
        ++inits;
    }
    void OnClassSend(void* sender) override { Pass(sender, sendThread, sendPasses); }
    void OnClassRecv(void* sender) override { Pass(sender, recvThread, recvPasses); }
    void Pass(void* sender, std::atomic<DWORD>& thread, std::atomic<int>& passes) {
        if (sender == expected)
            thread = GetCurrentThreadId();
        ++passes;
    }
    void* expected = nullptr;
    void* initSender = nullptr;
    DWORD initThread = 0;
    std::atomic<DWORD> sendThread{0}, recvThread{0};
    std::atomic<int> inits{0}, sendPasses{0}, recvPasses{0};
};

bool WaitFor(const std::atomic<int>& counter, int atLeast) {
    for (int i = 0; i < 200 && counter < atLeast; ++i)
        Sleep(10);
    return counter >= atLeast;
}

} // namespace

TEST(ZQRS232, NotifiesOnOpenAndOnEveryPassOfBothThreadsUntilClose) {
    Recorder recorder;
    ZQRS232 port(&recorder);
    recorder.expected = &port;
    EXPECT_EQ(&recorder, port.GetResponse());
    ASSERT_TRUE(Open(port));
    EXPECT_EQ(1, recorder.inits);
    EXPECT_EQ(&port, recorder.initSender);
    EXPECT_EQ(GetCurrentThreadId(), recorder.initThread);

    // Idle threads pass every 50 ms or so.
    ASSERT_TRUE(WaitFor(recorder.sendPasses, 3));
    ASSERT_TRUE(WaitFor(recorder.recvPasses, 2));
    DWORD sendThread = recorder.sendThread, recvThread = recorder.recvThread;
    EXPECT_EQ(std::set<DWORD>({0, GetCurrentThreadId(), sendThread, recvThread}).size(), 4u)
        << "two threads of their own";

    HANDLE threads[2] = {OpenThread(SYNCHRONIZE, FALSE, sendThread), OpenThread(SYNCHRONIZE, FALSE, recvThread)};
    port.Close();
    EXPECT_EQ(WAIT_OBJECT_0, WaitForMultipleObjects(2, threads, TRUE, 3000)) << "both threads end after Close";
    for (HANDLE thread : threads)
        CloseHandle(thread);

    // Reopened, new threads call the response set since.
    Recorder second;
    second.expected = &port;
    port.SetResponse(&second);
    ASSERT_TRUE(Open(port));
    EXPECT_EQ(1, second.inits);
    EXPECT_TRUE(WaitFor(second.sendPasses, 1));
    EXPECT_TRUE(WaitFor(second.recvPasses, 1));
    port.SetResponse(nullptr);
    EXPECT_EQ(1, recorder.inits);
}

TEST(ZQRS232, AClosedPortQueuesWhatItIsSentAndTheLineCarriesItOnceOpen) {
    Peer peer;
    ASSERT_TRUE(peer.Ready());
    ZQRS232 port;
    unsigned char in[kChunk];
    EXPECT_EQ(0, port.recv(in));
    // The sender writes what was queued once it runs, each chunk whole; a chunk too large is refused.
    std::vector<unsigned char> out = Pattern(kChunk + 100, 1);
    EXPECT_EQ(-1, port.send(out.data(), kChunk + 1));
    ASSERT_EQ(100, port.send(out.data(), 100));
    ASSERT_EQ(kChunk, port.send(out.data() + 100, kChunk));
    EXPECT_FALSE(Open(port, L"COM9"));
    EXPECT_FALSE(Open(port, L"Z:\\no\\such\\device"));
    ASSERT_TRUE(Open(port));
    EXPECT_EQ(out, peer.Read(out.size()));

    // A burst larger than 2048 bytes arrives as several chunks, one per recv, none above 2048.
    std::vector<unsigned char> burst = Pattern(5000, 2);
    ASSERT_TRUE(peer.Write(burst.data(), burst.size()));
    std::vector<int> chunkLengths;
    EXPECT_EQ(burst, Receive(port, burst.size(), &chunkLengths, 5000));
    ASSERT_GE(chunkLengths.size(), 3u);
    EXPECT_LE(*std::max_element(chunkLengths.begin(), chunkLengths.end()), 2048);
    EXPECT_EQ(0, port.recv(in));
}

// Both ways at once, every byte arriving once and in order: a megabyte in chunks of 2048 bytes, and 50,000
// small chunks (1 to 13 bytes) that the sender writes one by one while the device answers in writes as small.
TEST(ZQRS232, BothWaysAtOnceEveryByteArrivesInOrder) {
    struct Case {
        const char* name;
        int chunks;
        int (*length)(int chunk);
    } const cases[] = {
        {"a megabyte in 2048-byte chunks", 512, [](int) { return 2048; }},
        {"50,000 small chunks", 50000, [](int chunk) { return 1 + chunk % 13; }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Peer peer;
        ASSERT_TRUE(peer.Ready());
        ZQRS232 port;
        ASSERT_TRUE(Open(port));
        size_t size = 0;
        for (int i = 0; i < c.chunks; ++i)
            size += static_cast<size_t>(c.length(i));
        std::vector<unsigned char> toDevice = Pattern(size, 3), fromDevice = Pattern(size, 11);
        std::vector<unsigned char> deviceGot;
        std::thread deviceReads([&] { deviceGot = peer.Read(size); });
        std::thread deviceWrites([&] {
            size_t at = 0;
            for (int i = 0; i < c.chunks; at += static_cast<size_t>(c.length(i++)))
                peer.Write(fromDevice.data() + at, static_cast<size_t>(c.length(i)));
        });
        size_t at = 0;
        int refused = 0;
        for (int i = 0; i < c.chunks; at += static_cast<size_t>(c.length(i++)))
            refused += port.send(toDevice.data() + at, c.length(i)) != c.length(i);
        std::vector<unsigned char> got = Receive(port, size, nullptr, 120000);
        deviceWrites.join();
        deviceReads.join();
        EXPECT_EQ(refused, 0);
        EXPECT_TRUE(got == fromDevice) << "device to port lost or reordered bytes: " << got.size() << " of " << size;
        EXPECT_TRUE(deviceGot == toDevice) << "port to device lost or reordered bytes: " << deviceGot.size();
    }
}
