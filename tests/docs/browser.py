"""A headless Chromium for tests, by the DevTools protocol over pipes."""
import json
import os
import shutil
import subprocess

NAMES = ("chromium", "chromium-browser", "google-chrome")


def path_of_browser():
    return next(filter(None, map(shutil.which, NAMES)), None)


class Browser:
    """One page. What it writes to its console, and what it would load from elsewhere, is in complaints."""

    def __init__(self, folder):
        # The browser reads commands from its descriptor 3 and writes answers to 4. Not every sh duplicates descriptors
        # of two digits.
        ours, theirs = os.pipe(), os.pipe()
        command = [path_of_browser(), "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                   "--no-first-run", "--remote-debugging-pipe", "--user-data-dir=" + os.path.join(folder, "profile")]
        self.process = subprocess.Popen(
            ["bash", "-c", f'exec 3<&{ours[0]} 4>&{theirs[1]}; exec "$@"', "bash", *command],
            pass_fds=(ours[0], theirs[1]), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(ours[0])
        os.close(theirs[1])
        self.to, self.back = os.fdopen(ours[1], "wb", 0), os.fdopen(theirs[0], "rb", 0)
        self.number, self.rest, self.events, self.session = 0, b"", [], None
        self.complaints = []
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")

    def _next(self):
        while b"\0" not in self.rest:
            piece = self.back.read(0x10000)
            if not piece:
                raise EOFError("the browser has ended")
            self.rest += piece
        message, self.rest = self.rest.split(b"\0", 1)
        message = json.loads(message)
        method, params = message.get("method", ""), message.get("params", {})
        if method in ("Runtime.exceptionThrown", "Log.entryAdded", "Runtime.consoleAPICalled"):
            self.complaints.append(json.dumps(params)[:500])
        elif method == "Network.requestWillBeSent" and not params["request"]["url"].startswith(("file:", "data:")):
            self.complaints.append("loads " + params["request"]["url"])
        return message

    def call(self, method, **params):
        self.number += 1
        message = {"id": self.number, "method": method, "params": params}
        if self.session:
            message["sessionId"] = self.session
        self.to.write(json.dumps(message).encode() + b"\0")
        while True:
            answer = self._next()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer.get("method"))

    def open(self, path, width, height, scheme="light"):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1,
                  mobile=width < 600)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.events.clear()
        self.call("Page.navigate", url="about:blank")
        self.call("Page.navigate", url=path)
        self.wait("document.readyState === 'complete' && location.protocol === 'file:'")

    def run(self, expression):
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(expression + ": " + json.dumps(answer["exceptionDetails"])[:300])
        return answer["result"].get("value")

    def wait(self, expression):
        """Asks until it is true: each asking is a turn of the page, and the browser's own events come between."""
        for _ in range(2000):
            if self.run(f"new Promise(done => setTimeout(() => done(Boolean({expression})), 0))"):
                return
        raise RuntimeError("never true: " + expression)

    def key(self, key, code=0):
        text = {"text": key} if len(key) == 1 else {"text": "\r"} if key == "Enter" else {}
        self.call("Input.dispatchKeyEvent", type="keyDown", key=key, windowsVirtualKeyCode=code or ord(key[0]), **text)
        self.call("Input.dispatchKeyEvent", type="keyUp", key=key, windowsVirtualKeyCode=code or ord(key[0]))

    def type(self, text):
        for character in text:
            self.key(character)

    def point_at(self, selector):
        box = self.run(f"(e => {{ e.scrollIntoView({{block: 'center'}}); const b = e.getBoundingClientRect(); "
                       f"return [b.x + b.width / 2, b.y + b.height / 2]; }})(document.querySelector({selector!r}))")
        self.call("Input.dispatchMouseEvent", type="mouseMoved", x=box[0], y=box[1])

    def close(self):
        try:
            self.session = None
            self.call("Browser.close")
        except (EOFError, OSError, RuntimeError):
            pass
        try:
            self.process.wait(30)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
