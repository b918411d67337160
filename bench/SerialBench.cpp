// Serial throughput and receive latency over a pty pair: ZQRS232 on the first port, the device's end of the
// cable on the second (plain blocking I/O).
//   serial_bench PORT DEVICE_PORT [MEGABYTES]
#include "BenchSupport.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

const double kLineBytesPerSecond = 115200.0 / 10; // 8 data bits, a start and a stop bit

HANDLE OpenDevice(const wchar_t* name) {
    HANDLE handle = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    COMMTIMEOUTS timeouts = {100, 0, 5000, 0, 0};
    SetCommTimeouts(handle, &timeouts);
    PurgeComm(handle, PURGE_RXCLEAR | PURGE_TXCLEAR);
    return handle;
}

size_t DeviceRead(HANDLE device, size_t size) {
    std::vector<unsigned char> bytes(65536);
    size_t have = 0;
    while (have < size) {
        DWORD got = 0;
        if (!ReadFile(device, bytes.data(), static_cast<DWORD>(std::min(size - have, bytes.size())), &got, nullptr) ||
            !got)
            break;
        have += got;
    }
    return have;
}

void DeviceWrite(HANDLE device, const unsigned char* data, size_t size) {
    while (size) {
        DWORD wrote = 0;
        if (!WriteFile(device, data, static_cast<DWORD>(std::min<size_t>(size, 4096)), &wrote, nullptr))
            return;
        data += wrote;
        size -= wrote;
    }
}

void Report(const char* what, size_t bytes, size_t expected, double seconds) {
    double rate = bytes / seconds;
    std::printf("%-28s %8zu bytes in %6.2f s: %8.0f bytes/s, %5.1f x the line rate%s\n", what, bytes, seconds, rate,
                rate / kLineBytesPerSecond, bytes == expected ? "" : "  (INCOMPLETE)");
}

double Percentile(std::vector<double> values, double fraction) {
    std::sort(values.begin(), values.end());
    return values[static_cast<size_t>(fraction * (values.size() - 1))];
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 3) {
        std::printf("usage: serial_bench PORT DEVICE_PORT [MEGABYTES]\n");
        return 2;
    }
    const size_t size = (argc > 3 ? static_cast<size_t>(_wtoi(argv[3])) : 1) << 20;
    HANDLE device = OpenDevice(argv[2]);
    ZQ::ZQRS232 port;
    if (device == INVALID_HANDLE_VALUE || !port.Open(argv[1], 115200, 8, ONESTOPBIT, NOPARITY)) {
        std::printf("cannot open %ls and %ls\n", argv[1], argv[2]);
        return 1;
    }
    std::vector<unsigned char> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7);
    std::printf("line rate at 115,200 baud (8N1): %.0f bytes/s\n", kLineBytesPerSecond);

    // Sending: every chunk queued at once, timed until the device has read the last byte.
    double start = bench::Now();
    for (size_t at = 0; at < size; at += 2048)
        port.send(bytes.data() + at, static_cast<int>(std::min<size_t>(2048, size - at)));
    size_t deviceGot = DeviceRead(device, size);
    Report("send (port to device)", deviceGot, size, bench::Now() - start);

    // Receiving: the device writes as fast as the line takes it; timed until recv has returned the last byte.
    unsigned char chunk[ZQ::ZQSQUEUE::kChunkCapacity];
    size_t got = 0;
    int chunks = 0;
    start = bench::Now();
    std::thread writer([&] { DeviceWrite(device, bytes.data(), size); });
    double lastByte = start;
    while (got < size && bench::Now() - lastByte < 5) {
        int length = port.recv(chunk);
        if (length == 0) {
            Sleep(1);
            continue;
        }
        got += length;
        ++chunks;
        lastByte = bench::Now();
    }
    writer.join();
    Report("recv (device to port)", got, size, lastByte - start);
    std::printf("%-28s %d chunks, %.0f bytes a chunk on average\n", "", chunks, chunks ? double(got) / chunks : 0.0);

    // Receive latency: one byte at a time from the device, at irregular intervals; the time from the device's
    // write until recv returns the byte to a caller polling every millisecond.
    std::vector<double> latencies;
    for (int i = 0; i < 100; ++i) {
        Sleep(10 + (i * 37) % 60);
        unsigned char byte = static_cast<unsigned char>(i);
        double sent = bench::Now();
        DeviceWrite(device, &byte, 1);
        while (port.recv(chunk) == 0 && bench::Now() - sent < 2)
            Sleep(1);
        latencies.push_back((bench::Now() - sent) * 1000);
    }
    std::printf("receive latency of one byte over 100 tries: median %.1f ms, 90th percentile %.1f ms, max %.1f ms\n",
                Percentile(latencies, 0.5), Percentile(latencies, 0.9), Percentile(latencies, 1.0));
    std::printf("(one byte takes %.2f ms on a real line at 115,200 baud)\n", 1000 / kLineBytesPerSecond);
    port.Close();
    Sleep(200);

    // The platform alone: how long WaitCommEvent takes to report a byte, and how often it returns without one.
    HANDLE raw = CreateFileW(argv[1], GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OVERLAPPED, nullptr);
    SetCommMask(raw, EV_RXCHAR);
    latencies.clear();
    int emptyWakes = 0;
    for (int i = 0; i < 50; ++i) {
        std::atomic<double> sent{0};
        std::thread writer([&] {
            Sleep(10 + (i * 37) % 60);
            unsigned char byte = static_cast<unsigned char>(i);
            sent = bench::Now();
            DeviceWrite(device, &byte, 1);
        });
        DWORD mask = 0;
        while (WaitCommEvent(raw, &mask, nullptr) && !(mask & EV_RXCHAR))
            ++emptyWakes;
        latencies.push_back((bench::Now() - sent) * 1000);
        writer.join();
        PurgeComm(raw, PURGE_RXCLEAR);
    }
    std::printf("WaitCommEvent alone, 50 tries: median %.1f ms, 90th percentile %.1f ms, max %.1f ms; "
                "%d returns without a byte\n",
                Percentile(latencies, 0.5), Percentile(latencies, 0.9), Percentile(latencies, 1.0), emptyWakes);
    CloseHandle(raw);
    CloseHandle(device);
    return 0;
}
