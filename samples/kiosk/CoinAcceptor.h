// The kiosk's coin acceptor on a serial port: every byte the acceptor sends is one coin.
#pragma once
#include <ZQVelisto.h>

class CoinAcceptor : public ZQ::_ZQResponseClass_tag {
public:
    CoinAcceptor() : m_port(this) {}
    ~CoinAcceptor() { m_port.Close(); }
    CoinAcceptor(const CoinAcceptor&) = delete;
    CoinAcceptor& operator=(const CoinAcceptor&) = delete;

    /// False when the port is not there: the kiosk then runs without coins.
    bool Open(const wchar_t* port) { return m_port.Open(port, 9600, 8, ONESTOPBIT, NOPARITY); }
    /// Coins counted so far; read from any thread.
    long Coins() { return InterlockedCompareExchange(&m_coins, 0, 0); }

    /// On the port's receiver thread.
    void OnClassRecv(void* sender) override {
        unsigned char chunk[ZQ::ZQSQUEUE::kChunkCapacity];
        while (int length = static_cast<ZQ::ZQRS232*>(sender)->recv(chunk))
            InterlockedExchangeAdd(&m_coins, length);
    }

private:
    ZQ::ZQRS232 m_port;
    volatile LONG m_coins = 0;
};
