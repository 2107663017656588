#include "embedded/attached/transport/sg_transport.h"

#include <fcntl.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

// Host and driver codes of the kernel's SCSI layer, which no public header names.
constexpr unsigned kHostOk = 0x00;
constexpr unsigned kHostTimeOut = 0x03;
constexpr unsigned kDriverCodes = 0x0F;
constexpr unsigned kDriverTimeOut = 0x06;
constexpr unsigned kDriverSense = 0x08;

Error SystemError(const std::string& path, int number) {
    const std::string device = Printable(path);
    switch (number) {
        case ENOENT:
            return {ErrorKind::NotFound, device + " does not exist", {}};
        case EACCES:
        case EPERM:
            return {ErrorKind::NotPermitted,
                    device + " may not be opened by this user; ask an administrator for the right",
                    {}};
        case ENODEV:
        case ENXIO:
            return {ErrorKind::Lost, device + " is gone; check its power and its cable", {}};
        case EBUSY:
            return {ErrorKind::Refused, device + " is used by another program; end it and try again", {}};
        default:
            return {ErrorKind::Refused, device + " cannot be used: " + std::strerror(number), {}};
    }
}

class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() {
        if (m_number >= 0) close(m_number);
    }

    int Get() const { return m_number; }

  private:
    int m_number = -1;
};

Result<FileDescriptor> Open(const std::string& path) {
    FileDescriptor file(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (file.Get() < 0) return SystemError(path, errno);
    int version = 0;
    constexpr int kOldestVersion = 30000;
    if (ioctl(file.Get(), SG_GET_VERSION_NUM, &version) != 0 || version < kOldestVersion) {
        return Error{ErrorKind::NotFound, Printable(path) + " is no SCSI device", {}};
    }
    return file;
}

class SgTransport : public Transport {
  public:
    SgTransport(std::string path, FileDescriptor file) : m_path(std::move(path)), m_file(std::move(file)) {}

    Result<Completion> Send(const Command& command) override {
        std::ranges::fill(command.dataIn, uint8_t{0});
        std::array<uint8_t, 252> sense{};
        std::array<uint8_t, 16> cdb{};
        std::ranges::copy(command.cdb.first(std::min(command.cdb.size(), cdb.size())), cdb.begin());
        // The kernel does not write to what it sends, but its header has one pointer for both directions.
        auto* const data =
            command.dataIn.empty() ? const_cast<uint8_t*>(command.dataOut.data()) : command.dataIn.data();
        sg_io_hdr header{};
        header.interface_id = 'S';
        header.dxfer_direction = SG_DXFER_NONE;
        if (!command.dataIn.empty()) header.dxfer_direction = SG_DXFER_FROM_DEV;
        if (!command.dataOut.empty()) header.dxfer_direction = SG_DXFER_TO_DEV;
        header.cmd_len = static_cast<unsigned char>(command.cdb.size());
        header.cmdp = cdb.data();
        header.mx_sb_len = static_cast<unsigned char>(sense.size());
        header.sbp = sense.data();
        header.dxfer_len = static_cast<unsigned>(std::max(command.dataIn.size(), command.dataOut.size()));
        header.dxferp = data;
        constexpr int64_t kLongest = std::numeric_limits<int>::max();
        header.timeout = static_cast<unsigned>(std::clamp<int64_t>(command.timeLimit.count(), 1, kLongest));
        int result = 0;
        do {
            result = ioctl(m_file.Get(), SG_IO, &header);
        } while (result != 0 && errno == EINTR);
        if (result != 0) return NoteLoss(SystemError(m_path, errno));
        auto completion = InterpretSgResult(m_path, header);
        if (!completion) return NoteLoss(completion.GetError());
        return completion;
    }

    bool IsConnected() const override { return m_isConnected; }

    Result<Nothing> Reconnect() override {
        auto file = Open(m_path);
        if (!file) return file.GetError();
        m_file = std::move(*file);
        m_isConnected = true;
        return Nothing();
    }

    std::string GetAddress() const override { return m_path; }

  private:
    Error NoteLoss(Error error) {
        if (error.kind == ErrorKind::Lost) m_isConnected = false;
        return error;
    }

    std::string m_path;
    FileDescriptor m_file;
    bool m_isConnected = true;
};

}  // namespace

Result<Completion> InterpretSgResult(const std::string& path, const sg_io_hdr& result) {
    const unsigned driver = result.driver_status & kDriverCodes;
    if (result.host_status == kHostTimeOut || driver == kDriverTimeOut) {
        return Error{ErrorKind::TimedOut,
                     Printable(path) + " did not answer in time; check its power and its cable",
                     {}};
    }
    if (result.host_status != kHostOk || (driver != 0 && driver != kDriverSense)) {
        return Error{ErrorKind::Lost,
                     Printable(path) + " cannot be reached (host status " + HexText(result.host_status, 2) +
                         ", driver status " + HexText(result.driver_status, 2) +
                         "); check its power and its cable",
                     {}};
    }
    Completion completion;
    completion.status = result.status;
    completion.sense.assign(result.sbp, result.sbp + result.sb_len_wr);
    const int64_t transferred = int64_t{result.dxfer_len} - std::max(result.resid, 0);
    completion.transferred = static_cast<size_t>(std::max<int64_t>(transferred, 0));
    return completion;
}

Result<std::unique_ptr<Transport>> OpenSgTransport(const std::string& path) {
    auto file = Open(path);
    if (!file) return file.GetError();
    return std::unique_ptr<Transport>(std::make_unique<SgTransport>(path, std::move(*file)));
}

}  // namespace embedded::attached
