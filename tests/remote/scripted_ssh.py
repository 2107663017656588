#!/usr/bin/python3
"""Stands for ssh: scripted_ssh.py SCRIPT FOLDER PROGRAMS FARMS [ssh's words]. SCRIPT says what the other side does."""
import os
import pathlib
import subprocess
import sys
import threading
import time

SCRIPT, FOLDER, PROGRAMS, FARMS = sys.argv[1:5]
GREETING = bytes.fromhex("a368666561747572657381656168656164666b7276636d648201016772656c6561736565312e302e30")


def frame(body):
    return len(body).to_bytes(4, "big") + body


def serve():
    return subprocess.Popen([f"{PROGRAMS}/krvadm", "serve"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            env=dict(os.environ, KRVSIM_HOME=FARMS))


def read_frame(stream):
    head = stream.read(4)
    return head + stream.read(int.from_bytes(head, "big")) if len(head) == 4 else b""


def say(data):
    sys.stdout.buffer.write(data)
    sys.stdout.buffer.flush()


def lose(when):
    """Passes messages on until a change comes: then the connection is lost before or after it was made."""
    pathlib.Path(FOLDER, "lost").touch()
    server = serve()
    say(read_frame(server.stdout))
    for first in (True, *[False] * 1000):
        message = read_frame(sys.stdin.buffer)
        if not message:
            return
        is_change = b"fchange" in message
        if is_change and when == "before":
            server.kill()
            break
        server.stdin.write(message)
        server.stdin.flush()
        if first:
            continue  # the greeting has no answer
        answer = read_frame(server.stdout)
        if is_change and when == "never":
            # The change was made, but what was read ahead is no map.
            say(frame(b"\xa3\x65ahead\x80\x61n\x02\x66result\x80"))
            continue
        if is_change:
            server.stdin.close()
            server.wait()
            break
        say(answer)
    print("client_loop: the line was cut", file=sys.stderr)
    sys.exit(255)


def main():
    if SCRIPT in ("lose-before", "lose-after", "lose-for-good"):
        if pathlib.Path(FOLDER, "lost").exists():
            if SCRIPT == "lose-for-good":
                print("ssh: connect to host far port 22: No route to host", file=sys.stderr)
                sys.exit(255)
            server = serve()
            relay = threading.Thread(target=lambda: [say(read_frame(server.stdout)) for _ in range(2)], daemon=True)
            relay.start()
            for _ in range(2):
                server.stdin.write(read_frame(sys.stdin.buffer))
                server.stdin.flush()
            relay.join()
            server.stdin.close()
            server.wait()
            sys.exit(0)
        lose("before" if SCRIPT == "lose-before" else "after")
    elif SCRIPT == "nonsense-ahead":
        lose("never")
    elif SCRIPT == "newer":
        say(frame(GREETING.replace(b"\x82\x01\x01", b"\x82\x02\x03").replace(b"1.0.0", b"9.1.2")))
    elif SCRIPT == "older":
        say(frame(GREETING.replace(b"\x82\x01\x01", b"\x82\x00\x00").replace(b"1.0.0", b"0.9.9")))
    elif SCRIPT == "both":
        server = serve()
        say(frame(GREETING.replace(b"\x82\x01\x01", b"\x82\x01\x03").replace(b"1.0.0", b"9.1.2")))
        read_frame(server.stdout)
        threading.Thread(target=lambda: [say(read_frame(server.stdout)) for _ in range(1000)], daemon=True).start()
        while message := read_frame(sys.stdin.buffer):
            server.stdin.write(message)
            server.stdin.flush()
        server.stdin.close()
        server.wait()
        time.sleep(0.2)
    elif SCRIPT == "noise":
        say(b"Welcome to archive!\nHave a nice day.\n")
    elif SCRIPT == "silence":
        time.sleep(60)
    elif SCRIPT == "deaf":
        say(frame(GREETING))
        time.sleep(60)
    elif SCRIPT == "bomb":
        say(frame(GREETING) + frame(b"\x81" * 1000000))
        time.sleep(1)


main()
