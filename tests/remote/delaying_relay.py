"""A way to a port of this machine that takes its time."""
import collections
import selectors
import socket
import threading
import time


class DelayingRelay:
    """Passes on whatever connects to `port`; every byte arrives `seconds` later, in either direction."""

    def __init__(self, target_port, seconds):
        self._target, self._seconds = target_port, seconds
        self._listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        self.port = self._listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self._listener.close()

    def _accept(self):
        while True:
            try:
                near, _ = self._listener.accept()
            except OSError:
                return
            threading.Thread(target=self._connect, args=(near,), daemon=True).start()

    def _connect(self, near):
        with near, socket.create_connection(("127.0.0.1", self._target)) as far:
            ways = [threading.Thread(target=self._pass_on, args=way, daemon=True) for way in ((near, far), (far, near))]
            for end in (near, far):
                end.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            for way in ways:
                way.start()
            for way in ways:
                way.join()

    def _pass_on(self, source, target):
        """One direction. Reading goes on while bytes wait for their time, as on a long line."""
        waiting, ended = collections.deque(), False
        selector = selectors.DefaultSelector()
        selector.register(source, selectors.EVENT_READ)
        try:
            while waiting or not ended:
                left = max(waiting[0][0] - time.monotonic(), 0) if waiting else None
                if not ended and selector.select(left):
                    data = source.recv(262144)
                    ended = not data
                    waiting.append((time.monotonic() + self._seconds, data))
                elif ended and left:
                    time.sleep(left)
                while waiting and waiting[0][0] <= time.monotonic():
                    data = waiting.popleft()[1]
                    if data:
                        target.sendall(data)
                    else:
                        target.shutdown(socket.SHUT_WR)
        except OSError:
            for end in (source, target):
                try:
                    end.shutdown(socket.SHUT_RDWR)
                except OSError:
                    pass
        finally:
            selector.close()
