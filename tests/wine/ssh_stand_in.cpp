// Stands for ssh.exe: passes its standard input and output on to a port of this machine, whose number is in
// SSH_STAND_IN_PORT.
#include <fcntl.h>
#include <io.h>
#include <winsock2.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int kFailed = 255;
constexpr unsigned kBufferSize = 16384;

void PassInputOn(SOCKET connection) {
    std::array<char, kBufferSize> buffer{};
    while (true) {
        const int count = _read(0, buffer.data(), kBufferSize);
        if (count <= 0) break;
        for (int sent = 0; sent < count;) {
            const int more = send(connection, buffer.data() + sent, count - sent, 0);
            if (more <= 0) return;
            sent += more;
        }
    }
    (void)shutdown(connection, SD_SEND);
}

void WriteWhatComes(SOCKET connection) {
    std::array<char, kBufferSize> buffer{};
    while (true) {
        const int count = recv(connection, buffer.data(), static_cast<int>(kBufferSize), 0);
        if (count <= 0) return;
        for (int written = 0; written < count;) {
            const int more = _write(1, buffer.data() + written, static_cast<unsigned>(count - written));
            if (more <= 0) return;
            written += more;
        }
    }
}

}  // namespace

int main() {
    const char* const port = std::getenv("SSH_STAND_IN_PORT");
    WSADATA sockets{};
    if (port == nullptr || WSAStartup(MAKEWORD(2, 2), &sockets) != 0) return kFailed;
    (void)_setmode(0, _O_BINARY);
    (void)_setmode(1, _O_BINARY);
    const SOCKET connection = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(std::strtoul(port, nullptr, 10)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        (void)std::fprintf(stderr, "ssh: connect to host far port %s: Connection refused\n", port);
        return kFailed;
    }
    // The input may stay open for longer than the connection.
    std::thread(PassInputOn, connection).detach();
    WriteWhatComes(connection);
    std::_Exit(0);
}
