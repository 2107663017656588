"""A headless Chromium that a test drives over its debugging pipe."""
import base64
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

PROGRAMS = ("chromium", "chromium-browser", "google-chrome")
LONGEST_WAIT = 60


def find_program():
    """The path of the browser, or nothing."""
    return next(filter(None, map(shutil.which, PROGRAMS)), None)


class Browser:
    """Messages are JSON texts that end with NUL: the browser reads them from its descriptor 3 and writes to 4."""

    def __init__(self, program):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        from_test, self.out = os.pipe()
        self.into, to_test = os.pipe()
        # The network is out of reach: whatever the page asked for would fail.
        options = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
                   "--disable-background-networking", "--disable-component-update", "--disable-sync", "--hide-scrollbars",
                   "--font-render-hinting=none", "--remote-debugging-pipe", f"--user-data-dir={self.profile.name}", "about:blank"]
        command = f'exec "$@" 3<&{from_test} 4>&{to_test}'
        self.process = subprocess.Popen(["bash", "-c", command, "bash", program, *options], pass_fds=(from_test, to_test),
                                        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(from_test)
        os.close(to_test)
        os.set_blocking(self.into, False)
        self.numbers = itertools.count(1)
        self.pending = b""
        self.events = []
        self.session = None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.out)
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        os.close(self.into)
        self.profile.cleanup()

    def read_message(self):
        end = time.monotonic() + LONGEST_WAIT
        while b"\0" not in self.pending:
            try:
                block = os.read(self.into, 1 << 20)
                if not block:
                    raise RuntimeError("the browser has ended")
                self.pending += block
            except BlockingIOError:
                if time.monotonic() > end:
                    raise RuntimeError("the browser does not answer") from None
                time.sleep(0.005)
        message, _, self.pending = self.pending.partition(b"\0")
        return json.loads(message)

    def call(self, method, **parameters):
        number = next(self.numbers)
        message = {"id": number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        left = json.dumps(message).encode() + b"\0"
        while left:
            left = left[os.write(self.out, left):]
        while True:
            answer = self.read_message()
            if answer.get("id") == number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def open(self, path, width=1280, height=800):
        """Loads a file and waits until its script has run."""
        self.events.clear()
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.call("Page.navigate", url=pathlib.Path(path).resolve().as_uri())
        while not any(event.get("method") == "Page.loadEventFired" for event in self.events):
            self.events.append(self.read_message())

    def run(self, script):
        """The value of an expression in the page."""
        result = self.call("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{script}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def wait_for(self, script, seconds=30):
        """The value of the expression as soon as it is something, such as a number above zero."""
        deadline = time.monotonic() + seconds
        while not (value := self.run(script)):
            if time.monotonic() > deadline:
                raise TimeoutError(script)
            time.sleep(0.02)
        return value

    def complaints(self):
        """Errors of scripts and messages of the console since the page was opened, in words."""
        self.run("0")
        names = ("Runtime.exceptionThrown", "Runtime.consoleAPICalled", "Log.entryAdded")
        return [json.dumps(event["params"]) for event in self.events if event.get("method") in names]

    def requests(self):
        """The addresses that the page asked for since it was opened."""
        self.run("0")
        return [event["params"]["request"]["url"] for event in self.events if event.get("method") == "Network.requestWillBeSent"]

    def prefer(self, colours="light", medium="screen"):
        self.call("Emulation.setEmulatedMedia", media=medium, features=[{"name": "prefers-color-scheme", "value": colours}])

    def press(self, key):
        codes = {"Enter": 13, "Escape": 27, "Tab": 9, "End": 35, "Home": 36, "ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39,
                 "ArrowDown": 40, " ": 32}
        event = {"key": key, "code": key, "windowsVirtualKeyCode": codes[key]}
        if key in ("Enter", " "):
            event["text"] = {"Enter": "\r"}.get(key, key)
        self.call("Input.dispatchKeyEvent", type="keyDown", **event)
        self.call("Input.dispatchKeyEvent", type="keyUp", **event)

    def click(self, selector):
        """Presses the mouse on the middle of the first element that the selector finds."""
        # What comes into view is laid out then, which may move the element.
        x, y = self.run(f"""(async () => {{
            const element = document.querySelector({json.dumps(selector)});
            const frame = () => new Promise(requestAnimationFrame);
            let box, before;
            do {{
                before = box;
                element.scrollIntoView({{block: "center"}});
                await frame();
                await frame();
                box = element.getBoundingClientRect();
            }} while (before === undefined || before.x !== box.x || before.y !== box.y);
            return [box.x + box.width / 2, box.y + box.height / 2];
        }})()""")
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def picture(self):
        """What the window shows, as a PNG file."""
        return base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"])

    def paper(self):
        """The page as it is printed, as a PDF file."""
        return base64.b64decode(self.call("Page.printToPDF", printBackground=False)["data"])
