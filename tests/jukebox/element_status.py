"""What a changer's elements hold, asked by a small iSCSI client that shares nothing with the programs under test."""
import socket
import struct


class Initiator:
    """One session without authentication (RFC 7143) with one logical unit."""

    def __init__(self, address):
        portal, target, lun = address.removeprefix("iscsi://").split("/")
        host, port = portal.rsplit(":", 1)
        self.lun = int(lun)
        self.socket = socket.create_connection((host, int(port)), timeout=10)
        self.task = 0
        self.command_number = 1
        self.status_number = 0
        keys = {
            "InitiatorName": "iqn.2026-11.example:independent", "TargetName": target, "SessionType": "Normal",
            "AuthMethod": "None", "HeaderDigest": "None", "DataDigest": "None", "InitialR2T": "Yes",
            "ImmediateData": "Yes", "MaxRecvDataSegmentLength": "262144", "DefaultTime2Wait": "0",
            "DefaultTime2Retain": "0", "ErrorRecoveryLevel": "0", "MaxConnections": "1",
        }
        text = b"".join(f"{key}={value}\0".encode() for key, value in keys.items())
        stage = 0x04 | 0x03  # from the operational stage to the full feature phase
        head = struct.pack(">BBBB", 0x43, 0x80 | stage, 0, 0) + struct.pack(">I", len(text))
        head += bytes([0x80, 0, 0, 0, 0, 1]) + struct.pack(">H", 0) + struct.pack(">I", 0)
        head += struct.pack(">HH", 0, 0) + struct.pack(">II", self.command_number, 0)
        self._send(head.ljust(48, b"\0"), text)
        answer, _ = self._receive()
        if answer[0] != 0x23 or answer[36] != 0:
            raise RuntimeError(f"login failed: {answer.hex()}")
        self.status_number = struct.unpack(">I", answer[24:28])[0]

    def close(self):
        self.socket.close()

    def _send(self, head, data=b""):
        head = head[:4] + struct.pack(">I", len(data)) + head[8:]
        self.socket.sendall(head + data + b"\0" * (-len(data) % 4))

    def _read(self, length):
        data = b""
        while len(data) < length:
            part = self.socket.recv(length - len(data))
            if not part:
                raise RuntimeError("the target closed the connection")
            data += part
        return data

    def _receive(self):
        head = self._read(48)
        length = int.from_bytes(head[5:8], "big")
        data = self._read(length + -length % 4)[:length]
        return head, data

    def command(self, cdb, expected):
        """The data that the command answers; a unit attention is passed over once."""
        for _ in range(3):
            self.task += 1
            head = bytes([0x01, 0x80 | 0x40 | 0x01, 0, 0]) + bytes(4) + bytes([0, self.lun]) + bytes(6)
            head += struct.pack(">IIII", self.task, expected, self.command_number, self.status_number + 1)
            self._send(head + bytes(cdb).ljust(16, b"\0"))
            self.command_number += 1
            data, status = b"", None
            while status is None:
                answer, part = self._receive()
                if answer[0] & 0x3F == 0x25:
                    data += part
                    if answer[1] & 0x01:
                        status = answer[3]
                elif answer[0] & 0x3F == 0x21:
                    status = answer[3]
                if status is not None:
                    self.status_number = struct.unpack(">I", answer[24:28])[0]
            if status == 0:
                return data
        raise RuntimeError(f"the command ended with status {status}")


def elements(address):
    """A dictionary from the address of each full element to its barcode."""
    initiator = Initiator(address)
    held = {}
    try:
        for kind in (1, 2, 3, 4):
            room = 60000
            cdb = bytes([0xB8, 0x10 | kind, 0, 0, 0xFF, 0xFF, 0]) + room.to_bytes(3, "big") + bytes(2)
            answer = initiator.command(cdb, room)
            if len(answer) < 16:
                continue
            size = int.from_bytes(answer[10:12], "big")
            for start in range(16, len(answer), size):
                descriptor = answer[start:start + size].ljust(size, b"\0")
                if descriptor[2] & 1:
                    held[int.from_bytes(descriptor[0:2], "big")] = descriptor[12:44].decode().strip()
    finally:
        initiator.close()
    return held
