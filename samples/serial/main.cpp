// A ticket machine taking coins from a coin acceptor on a serial port.
//   serial_sample MACHINE_PORT [ACCEPTOR_PORT]
// The machine polls the acceptor with 'P' every 200 ms; the acceptor answers each poll with one byte,
// 0 for no coin or the value of the coin it took. Given a second port (the other end of the cable), the
// sample plays the acceptor there too. It stops once 3.00 has been paid, or after 10 s.
#include <ZQVelisto.h>

#include <atomic>
#include <cstdio>

namespace {

const unsigned char kPoll = 'P';

// The machine's side: polls from the sender thread, counts credit on the receiver thread.
class Machine : public ZQ::_ZQResponseClass_tag {
public:
    void OnClassInit(void*) override { std::printf("machine: port open, polling\n"); }
    void OnClassSend(void* sender) override {
        DWORD now = GetTickCount();
        if (now - m_lastPoll < 200)
            return;
        m_lastPoll = now;
        unsigned char poll = kPoll;
        static_cast<ZQ::ZQRS232*>(sender)->send(&poll, 1);
    }
    void OnClassRecv(void* sender) override {
        unsigned char chunk[ZQ::ZQSQUEUE::kChunkCapacity];
        while (int length = static_cast<ZQ::ZQRS232*>(sender)->recv(chunk)) {
            for (int i = 0; i < length; ++i) {
                if (chunk[i] == 0)
                    continue;
                credit += chunk[i];
                std::printf("machine: coin of %d.%02d, credit %d.%02d\n", chunk[i] / 100, chunk[i] % 100,
                            credit / 100, credit % 100);
            }
        }
    }
    std::atomic<int> credit{0};

private:
    DWORD m_lastPoll = 0;
};

// The acceptor's side: answers every poll with the next coin of a fixed sequence.
class Acceptor : public ZQ::_ZQResponseClass_tag {
public:
    void OnClassRecv(void* sender) override {
        static const unsigned char coins[] = {0, 50, 0, 0, 100, 0, 20, 0, 100, 0, 50, 0};
        auto* port = static_cast<ZQ::ZQRS232*>(sender);
        unsigned char chunk[ZQ::ZQSQUEUE::kChunkCapacity];
        while (int length = port->recv(chunk)) {
            for (int i = 0; i < length; ++i) {
                if (chunk[i] != kPoll)
                    continue;
                unsigned char answer = coins[m_next++ % sizeof coins];
                port->send(&answer, 1);
            }
        }
    }

private:
    unsigned m_next = 0;
};

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 2) {
        std::printf("usage: serial_sample MACHINE_PORT [ACCEPTOR_PORT]   (for example COM7 COM8)\n");
        return 2;
    }
    Acceptor acceptor;
    ZQ::ZQRS232 acceptorPort(&acceptor);
    if (argc > 2 && !acceptorPort.Open(argv[2], 9600, 8, ONESTOPBIT, NOPARITY)) {
        std::printf("cannot open %ls for the acceptor\n", argv[2]);
        return 1;
    }
    Machine machine;
    ZQ::ZQRS232 machinePort(&machine);
    if (!machinePort.Open(argv[1], 9600, 8, ONESTOPBIT, NOPARITY)) {
        std::printf("cannot open %ls\n", argv[1]);
        return 1;
    }
    for (int waited = 0; machine.credit < 300 && waited < 10000; waited += 50)
        Sleep(50);
    machinePort.Close();
    acceptorPort.Close();
    std::printf("machine: %s, credit %d.%02d\n", machine.credit >= 300 ? "paid" : "gave up waiting",
                machine.credit / 100, machine.credit % 100);
    return machine.credit >= 300 ? 0 : 1;
}
