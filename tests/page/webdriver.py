"""A browser, driven over the WebDriver protocol of its driver (W3C, WebDriver Level 2)."""

import base64
import json
import re
import subprocess
import urllib2

_ELEMENT = "element-6066-11e4-a52e-4f735466cecf"
KEYS = {"Tab": u"\ue004", "Home": u"\ue011", "Left": u"\ue012", "Up": u"\ue013",
        "Right": u"\ue014"}


class Browser(object):
    """One window without a screen. Close it."""

    def __init__(self, *options):
        self._driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT)
        try:
            self._root = self._address()
            wanted = ("--headless=new", "--no-sandbox", "--hide-scrollbars",
                      "--disable-dev-shm-usage", "--window-size=1280,900")
            made = self._ask("POST", "session", {"capabilities": {"alwaysMatch": {
                "goog:chromeOptions": {"args": wanted + options}}}})
            self._root += "session/%s/" % made["sessionId"]
        except BaseException:
            self._driver.kill()
            raise

    def close(self):
        try:
            self._ask("DELETE", "")
        finally:
            self._driver.terminate()
            self._driver.stdout.close()
            self._driver.wait()

    def open(self, address):
        """Load a page, even where only what is behind the # differs."""
        self._ask("POST", "url", {"url": "about:blank"})
        self._ask("POST", "url", {"url": address})

    def address(self):
        return self._ask("GET", "url")

    def run(self, script, *arguments):
        """The result of a function's body; a promise's is waited for."""
        return self._ask("POST", "execute/sync", {
            "script": script, "args": arguments})

    def find(self, selector):
        """The element that a CSS selector finds first."""
        return self._ask("POST", "element", {"using": "css selector", "value": selector})

    def click(self, selector):
        self._ask("POST", "element/%s/click" % self.find(selector)[_ELEMENT], {})

    def keys(self, *keys):
        """Press keys, by letter or by name, one after the other; "Shift+Left" both."""
        steps = []
        for key in keys:
            held, _, name = key.rpartition("+") if len(key) > 1 else ("", "", key)
            value = KEYS.get(name, name)
            shift = [{"value": u"\ue008"}] if held else []
            steps += [dict(each, type="keyDown") for each in shift + [{"value": value}]]
            steps += [dict(each, type="keyUp") for each in [{"value": value}] + shift]
        self._act("key", steps)

    def point(self, selector, *offsets):
        """Move the pointer to offsets from an element's middle; pressed from the first on."""
        self._show(selector)
        steps = [{"type": "pointerMove", "x": x, "y": y, "duration": 0,
                  "origin": self.find(selector)} for x, y in offsets]
        if len(steps) > 1:
            steps.insert(1, {"type": "pointerDown", "button": 0})
            steps.append({"type": "pointerUp", "button": 0})
        self._act("pointer", steps)

    def wheel(self, selector, x, y):
        self._act("wheel", [{"type": "scroll", "x": 0, "y": 0, "deltaX": x, "deltaY": y,
                             "duration": 0, "origin": self.find(selector)}])

    def screenshot(self, path, selector):
        """Write a PNG file of an element."""
        self._show(selector)
        place = "element/%s/screenshot" % self.find(selector)[_ELEMENT]
        with open(path, "wb") as opened:
            opened.write(base64.b64decode(self._ask("GET", place)))

    def tool(self, command, **parameters):
        """A command of the browser's debugging protocol."""
        return self._ask("POST", "goog/cdp/execute", {"cmd": command, "params": parameters})

    def _show(self, selector):
        self.run("arguments[0].scrollIntoView({block: 'center'})", self.find(selector))

    def _act(self, kind, steps):
        self._ask("POST", "actions", {"actions": [{"type": kind, "id": kind, "actions": steps}]})

    def _address(self):
        for line in iter(self._driver.stdout.readline, ""):
            port = re.search(r"successfully on port (\d+)", line)
            if port:
                return "http://127.0.0.1:%s/" % port.group(1)
        raise EnvironmentError("chromedriver does not start")

    def _ask(self, method, command, contents=None):
        request = urllib2.Request(self._root + command.rstrip("/") if command
                                  else self._root.rstrip("/"),
                                  None if contents is None else json.dumps(contents),
                                  {"Content-Type": "application/json"})
        request.get_method = lambda: method
        # No proxy stands between.
        opener = urllib2.build_opener(urllib2.ProxyHandler({}))
        try:
            answer = opener.open(request, timeout=60)
        except urllib2.HTTPError as refusal:
            raise ValueError("%s: %s" % (command, json.load(refusal)["value"]["message"]))
        return json.load(answer)["value"]
