"""What pages show and do in a real browser. Screenshots go to the folder in $SCREENSHOTS."""

import BaseHTTPServer
import base64
import math
import os
import re
import shutil
import SocketServer
import sys
import tempfile
import threading
import unittest
import urllib

sys.path.insert(0, "tests/kit")

import _Orvane
import orvanekit as kit
from fixtures import KitTest
from orvanekit.files import parsed
from webdriver import Browser

HOSTILE = (u"</script><img src=x onerror=alert(1)>", u"\"'&amp;<!--<script x",
           u"{{data}} \\u003c $&", u"\u6d77 \u05d9\u05dd \U0001f30a\u2028caf\xe9")
SCREENSHOTS = os.environ.get("SCREENSHOTS")


def weighted(a, x, b, y):
    return kit.make_set([x * one + y * other for one, other in zip(
        kit.coefficients(a), kit.coefficients(b))])


class PageTest(KitTest):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.browser = Browser("--enable-unsafe-swiftshader")
        cls.builder = _Orvane.SHBuilder()
        cls.builder.GenerateLookUpTables(4096)
        width, height, values = kit.read_image("examples/data/earth-512x256.pgm")
        cls.earth = kit.projected(values, width, height, 30)
        cls.blob = kit.projected([math.exp(-(x - 20) ** 2 / 40. - (y - 30) ** 2 / 40.) - 0.2
                                  for y in range(64) for x in range(128)], 128, 64, 30)
        cls.light = (cls.earth, cls.blob, kit.filtered(cls.earth, kit.heat(30, 0.3)))
        sets = [("Earth", cls.earth), ("blob", cls.blob), ("light", cls.light)]
        cls.page("page", sets, "Three sets")
        cls.page("light", sets[2:])
        cls.page("hostile", [(each, cls.blob) for each in HOSTILE], HOSTILE[0])

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        shutil.rmtree(cls.folder)
        del cls.builder, cls.earth, cls.blob, cls.light

    @classmethod
    def page(cls, name, *arguments):
        kit.write_page(os.path.join(cls.folder, name + ".html"), *arguments)

    def open(self, name, browser=None, **state):
        browser = browser or self.browser
        browser.open("file://%s/%s.html#%s" % (self.folder, name, urllib.urlencode(state)))
        self.settle(browser)

    def settle(self, browser=None):
        """Until all is drawn and the address is written."""
        return (browser or self.browser).run(
            "return new Promise(done => setTimeout(() => requestAnimationFrame(() =>"
            " requestAnimationFrame(() => done(0))), 300))")

    def attribute(self, name, browser=None):
        return (browser or self.browser).run(
            "return document.documentElement.dataset[arguments[0]] || ''", name)

    def text(self, selector):
        """What is seen of an element."""
        return self.browser.run("const e = document.querySelector(arguments[0]);"
                                "return e.checkVisibility() ? e.innerText : ''", selector)

    def readings(self, selector):
        """The first number of each reading of a line."""
        return [float(re.search(r"[\d.-]+(e[\d-]+)?", text.replace(u"\u2212", "-")).group())
                for text in self.browser.run("return Array.from(document.querySelectorAll("
                                             "arguments[0] + ' span'), e => e.textContent)",
                                             selector)]

    def state(self):
        """The fields in the address."""
        self.settle()
        return dict(each.split("=") for each in self.browser.address().partition("#")[2].split("&")
                    if each)

    def put(self, name, value):
        """Set a control as a user does."""
        self.browser.run(
            "const c = document.forms[0].elements[arguments[0]]; c.value = arguments[1];"
            "c.dispatchEvent(new Event('input', {bubbles: true}))", name, value)

    def value(self, sh, theta, phi):
        return self.builder.GetValueAt(sh, phi, theta)

    def test_checks_itself(self):
        with open(os.path.join(self.folder, "page.html")) as opened:
            whole = opened.read()
        values = bytearray(base64.b64decode(re.search(r'"channels":\["([^"]+)', whole).group(1)))
        altered = bytearray(values)
        altered[4 * 100 + 2] ^= 0x40    # one coefficient of a thousandth
        for number, damaged in (("small", base64.b64encode(altered)), ("cut", "AAA!")):
            with open(os.path.join(self.folder, number + ".html"), "w") as opened:
                opened.write(whole.replace(base64.b64encode(values), damaged))
        for name, ready, fits in (("page", "1", True), ("light", "1", True),
                                  ("small", "1", False), ("cut", "", None)):
            self.open(name)
            self.assertEqual(self.attribute("ready"), ready, name)
            self.assertEqual(bool(self.text("#warning")), not fits, name)
            if fits is not None:
                worst = float(self.attribute("worst"))
                self.assertEqual(0 < worst < 1e-5, fits, "%s: %r" % (name, worst))
        self.open("small")
        self.assertTrue("Do not trust" in self.text("#warning"))

    def assert_colours(self, browser, name, colour, **state):
        """Compare five regions of globe and map with the module's values, through the colours."""
        view = 1.1, 5.0
        self.open(name, browser, theta=view[0], phi=view[1], net=0, **state)
        for canvas in (".globe", ".map"):
            path = os.path.join(self.folder, "drawn.png")
            browser.screenshot(path, canvas)
            width, height, drawn = kit.read_image(path, True)
            for x, y in ((0, 0), (-90, -60), (100, -80), (-60, 70), (70, 90)):
                found, expected = [0.0] * 3, [0.0] * 3
                for row in range(height // 2 + y - 3, height // 2 + y + 4):
                    for column in range(width // 2 + x - 3, width // 2 + x + 4):
                        if canvas == ".map":
                            place = ((row + 0.5) * math.pi / height,
                                     (column + 0.5) * 2 * math.pi / width)
                        else:
                            place = self.under(width, height, row, column, view)
                        for i, level in enumerate(colour(*place)):
                            expected[i] += level / 49
                            found[i] += 255 * drawn[i][row * width + column] / 49
                self.assert_near(found, expected, 4, (name, state, canvas, x, y))

    @staticmethod
    def under(width, height, row, column, (theta, phi)):
        """The place under a pixel of an orthographic globe, as high as 0.94 of the canvas."""
        radius = 0.47 * min(width, height)
        x, y = (column + 0.5 - width / 2.) / radius, (height / 2. - row - 0.5) / radius
        z = math.sqrt(1 - x * x - y * y)
        up, front = (y * math.sin(theta) + z * math.cos(theta),
                     z * math.sin(theta) - y * math.cos(theta))
        return math.acos(up), phi + math.atan2(x, front)

    def diverging(self, theta, phi):
        """Blue, black, orange; full colour at -1.2 and 1.2."""
        part = self.value(self.blob, theta, phi) / 1.2
        return [abs(part) * full for full in ((255, 176, 64) if part > 0 else (64, 152, 255))]

    def encoded(self, theta, phi):
        """Red, green and blue of 0 to 1.5, encoded for a screen."""
        return [255 * min(1, max(0, self.value(each, theta, phi) / 1.5)) ** (1 / 2.2)
                for each in self.light]

    def test_drawn_values(self):
        for painter in ("webgl2", "plain"):
            self.assert_colours(self.browser, "page", self.diverging, a=2, greatest=1.2,
                                painter=painter)
            self.assertEqual(self.attribute("painter"), painter)
            self.assert_colours(self.browser, "light", self.encoded, greatest=1.5, gamma=1,
                                painter=painter)

    def test_without_webgl(self):
        browser = Browser("--disable-3d-apis")
        self.addCleanup(browser.close)
        self.assert_colours(browser, "page", self.diverging, a=2, greatest=1.2, painter="webgl2")
        self.assertEqual(self.attribute("painter", browser), "plain")
        said = browser.run("return document.getElementById('plain').innerText"
                           " + document.querySelector('.band').innerText")
        self.assertTrue("WebGL 2" in said and "power" in said, said)

    def test_turning(self):
        self.open("page")
        radius = 0.47 * self.browser.run("const g = document.querySelector('.globe');"
                                         "return Math.min(g.clientWidth, g.clientHeight)")
        quarter = math.pi / 2
        for do, theta, phi, zoom in (
                (lambda: self.browser.point(".globe", (0, 0), (-60, 40), (-80, 60)),
                 quarter - 60 / radius, 80 / radius, 1),
                (lambda: self.browser.wheel(".globe", 0, 100), quarter - 60 / radius
                 + math.radians(10), 80 / radius, 1),
                (lambda: self.browser.keys("Home", "Right", "Shift+Right", "Up", "+"),
                 quarter - math.radians(5), math.radians(6), 1.25),
                (lambda: self.browser.keys("Home"), quarter, 0, 1)):
            do()
            state = dict({"theta": quarter, "phi": 0, "zoom": 1}, **self.state())
            self.assert_near([float(state[name]) for name in ("theta", "phi", "zoom")],
                             (theta, phi, zoom), 1e-6)
            self.browser.click(".globe")

    def test_what_is_shown(self):
        """The value in the globe's middle, of everything that can be chosen."""
        theta, phi = 1.9, 5.6
        for state, sh in (
                ({}, self.earth), ({"a": 2}, self.blob),
                ({"bands": 12}, kit.filtered(self.earth, 12 * [1] + 18 * [0])),
                ({"bands": 12, "window": "hann"},
                 kit.filtered(self.earth, kit.hann(12) + 18 * [0])),
                ({"window": "lanczos"}, kit.filtered(self.earth, kit.lanczos(30))),
                ({"window": "heat", "width": 0.2}, kit.filtered(self.earth, kit.heat(30, 0.2))),
                ({"show": "difference"}, weighted(self.earth, 1, self.blob, -1)),
                ({"show": "blend", "blend": 0.25}, weighted(self.earth, 0.75, self.blob, 0.25)),
                ({"show": "side"}, self.earth), ({"a": 3}, self.light)):
            self.open("page")
            for name, value in sorted(state.items()):
                self.put(name, value)
            self.open("page", theta=theta, phi=phi, **self.state())     # the link shows the same
            channels = sh if isinstance(sh, tuple) else (sh,)
            extremes = kit.extremes(channels[0])
            least, least_theta, least_phi, greatest, theta_above, phi_above = self.readings(
                ".extremes")[:6]
            self.assert_near(
                (self.readings(".here")[0], least, greatest, least, greatest),
                (self.value(channels[0], theta, phi), extremes.least, extremes.greatest,
                 self.value(channels[0], least_theta, least_phi),
                 self.value(channels[0], theta_above, phi_above)), 5e-3, state)
            self.assertEqual(self.browser.run("return document.querySelectorAll("
                                              "'article:not([hidden])').length"),
                             2 if state.get("show") == "side" else 1)

    def test_readings(self):
        self.open("page")
        for canvas in ("map", "globe"):
            width, height = self.browser.run(
                "const c = document.querySelector(arguments[0]);"
                "return [c.clientWidth, c.clientHeight]", "." + canvas)
            self.browser.point("." + canvas, (60, -40))
            self.settle()
            if canvas == "map":
                theta, phi = math.pi * (0.5 - 40. / height), 2 * math.pi * (0.5 + 60. / width)
            else:
                theta, phi = self.under(width, height, height / 2. - 40, width / 2. + 60,
                                        (math.pi / 2, 0))
            found = self.readings(".here")
            self.assert_near(found[1:], (theta, phi), 0.01)
            self.assert_near(found[:1], [self.value(self.earth, *found[1:])], 5e-3)
        for x, band in ((-10, 14), (10, 15)):
            self.browser.point(".spectrum", (x, 0))
            self.settle()
            self.assertEqual(self.readings(".band")[0], band)
        powers = kit.spectrum(self.earth)
        self.browser.run("document.querySelector('.spectrum').focus()")
        self.browser.keys("Home", "Right", "Right", "Right", "Left")
        self.settle()
        band, power, share = self.readings(".band")
        self.assertEqual(band, 2)
        self.assertAlmostEqual(power, powers[2], 4)
        self.assertAlmostEqual(share, 100 * powers[2] / sum(powers), 1)

    def test_sliders_and_link(self):
        self.open("page")
        for name, keys in (("bands", ["Left"] * 3), ("exposure", ["Right"] * 2)):
            self.browser.run("document.forms[0].elements[arguments[0]].focus()", name)
            self.browser.keys(*keys)
        for name, value in (("show", "side"), ("b", 2), ("colours", "perceptual"),
                            ("least", "-0,5"), ("greatest", "2")):
            self.put(name, value)
        self.browser.run("document.activeElement.blur()")
        self.assertEqual(self.state(), {
            "bands": "27", "exposure": "0.5", "show": "side", "colours": "perceptual",
            "least": "-0.5", "greatest": "2"})
        shown = self.browser.run(SHOWN)
        self.browser.open(self.browser.address())
        self.settle()
        self.assertTrue(self.browser.run(SHOWN) == shown)
        self.browser.click("#reset")
        self.assertEqual(self.state(), {})

    def test_saving_and_copying(self):
        self.open("page", a=2)
        self.browser.tool("Browser.setDownloadBehavior", behavior="allow",
                          downloadPath=self.folder, eventsEnabled=False)
        self.browser.click("#save")
        path = os.path.join(self.folder, "blob.png")
        for _ in range(50):
            if os.path.exists(path):
                break
            self.settle()
        width, height, pixels = kit.read_image(path, True)
        self.assertTrue(width > 500 and height > 500)
        self.assertTrue(max(pixels[0]) > 0.9 and max(pixels[2]) > 0.9)
        self.browser.tool("Browser.grantPermissions",
                          permissions=["clipboardReadWrite", "clipboardSanitizedWrite"])
        self.browser.click("#copy")
        self.settle()
        copied, notes = parsed(self.browser.run("return navigator.clipboard.readText()")
                               .encode("utf-8"))
        self.assertEqual(str(copied.GetAsBuffer()), str(self.blob.GetAsBuffer()))
        self.assertEqual(notes, {"name": "blob"})

    def test_hostile_texts(self):
        self.open("hostile")
        self.assertEqual(self.attribute("ready"), "1")
        self.assertEqual(self.browser.run(
            "return [document.title, document.querySelector('h1').textContent,"
            " document.querySelector('h2').textContent, document.images.length,"
            " Array.from(document.forms[0].elements.a.options, each => each.label)]"),
            [HOSTILE[0], HOSTILE[0], HOSTILE[0], 0, list(HOSTILE)])

    def test_layout(self):
        for page, state in (("page", {"show": "side", "window": "heat"}), ("hostile", {"a": 4})):
            for width, height in ((360, 740), (1280, 900), (2560, 1440)):
                for scheme in ("light", "dark"):
                    self.browser.tool("Emulation.setDeviceMetricsOverride", width=width,
                                      height=height, deviceScaleFactor=1, mobile=False)
                    self.browser.tool("Emulation.setEmulatedMedia", features=[
                        {"name": "prefers-color-scheme", "value": scheme}])
                    self.open(page, **state)
                    self.keep_screenshot("%s-%d-%s" % (page, width, scheme), width)
                    self.assertEqual(self.browser.run(FAULTS), [], (page, width, scheme))
        self.browser.tool("Emulation.clearDeviceMetricsOverride")

    def keep_screenshot(self, name, width):
        if SCREENSHOTS:
            height = self.browser.run("return document.documentElement.scrollHeight")
            taken = self.browser.tool("Page.captureScreenshot", captureBeyondViewport=True, clip={
                "x": 0, "y": 0, "width": width, "height": height, "scale": 1})
            with open(os.path.join(SCREENSHOTS, name + ".png"), "wb") as opened:
                opened.write(base64.b64decode(taken["data"]))

    def test_keyboard_and_names(self):
        self.open("page", show="side")
        reached = []
        for _ in range(40):
            self.browser.keys("Tab")
            name, outline = self.browser.run(
                "const e = document.activeElement, s = getComputedStyle(e);"
                "return [e.className || e.name || e.id || e.tagName,"
                " s.outlineStyle + parseFloat(s.outlineWidth)]")
            if name == "BODY":
                break
            reached.append(name)
            self.assertEqual(outline, "solid3", name)
        for name in ("globe", "map", "spectrum"):
            self.assertEqual(reached.count(name), 2, reached)
        for name in ("a", "show", "b", "bands", "window", "colours", "least", "greatest",
                     "exposure", "net", "save", "copy", "reset", "SUMMARY"):
            self.assertEqual(reached.count(name), 1, reached)
        self.browser.tool("Accessibility.enable")
        for node in self.browser.tool("Accessibility.getFullAXTree")["nodes"]:
            told = dict((each["name"], each["value"].get("value"))
                        for each in node.get("properties", ()))
            if told.get("focusable") and node["role"]["value"] != "RootWebArea":
                self.assertTrue(node["name"]["value"].strip(), node)

    def test_asks_no_network(self):
        asked = []
        with open(os.path.join(self.folder, "page.html")) as opened:
            page = opened.read()

        class Answer(BaseHTTPServer.BaseHTTPRequestHandler):
            def do_GET(self):
                asked.append(self.path)
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(page)

            def log_message(self, *_):
                pass

        class Server(SocketServer.ThreadingMixIn, BaseHTTPServer.HTTPServer):
            daemon_threads = True

        server = Server(("127.0.0.1", 0), Answer)
        threading.Thread(target=server.serve_forever).start()
        try:
            self.browser.open("http://127.0.0.1:%d/page" % server.server_port)
            self.settle()
            self.assertEqual(self.attribute("ready"), "1")
            refused = self.browser.run(ASK, "http://127.0.0.1:%d/" % server.server_port)
        finally:
            server.shutdown()
            server.server_close()
        self.assertEqual(refused, 6)
        self.assertEqual(asked, ["/page"])


# All that is seen.
SHOWN = """
return Array.from(document.querySelectorAll("canvas"), each => each.toDataURL()).concat(
  document.body.innerText);
"""

# What of the page is wider than it should be, or too faint to read.
FAULTS = """
const faults = [];
const wide = document.documentElement;
if (wide.scrollWidth > innerWidth) faults.push(`page ${wide.scrollWidth}`);
const light = colour => colour.map(c => (c /= 255) <= 0.04045 ? c / 12.92
  : ((c + 0.055) / 1.055) ** 2.4).reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0);
const numbers = text => text.match(/[\\d.]+/g).map(Number);
for (const each of document.body.querySelectorAll("*")) {
  const box = each.getBoundingClientRect();
  if (!box.width || !each.checkVisibility()) continue;
  const name = `${each.tagName}.${each.className}#${each.id}`;
  if (box.right > innerWidth + 0.5 || box.left < -0.5) faults.push(`${name} beyond the edge`);
  if (each.scrollWidth > each.clientWidth + 1 && each.clientWidth) faults.push(`${name} cut`);
  if (!Array.from(each.childNodes).some(node => node.nodeType === 3 && node.data.trim())) continue;
  let behind = each;
  while (behind && numbers(getComputedStyle(behind).backgroundColor)[3] === 0) {
    behind = behind.parentElement;
  }
  const [one, other] = [getComputedStyle(each).color, getComputedStyle(behind).backgroundColor]
    .map(text => light(numbers(text).slice(0, 3))).sort((a, b) => b - a);
  if ((one + 0.05) / (other + 0.05) < 4.5) faults.push(`${name} faint`);
}
return faults;
"""

# Tries all ways to a network that a page has; how many the policy refuses.
ASK = """
const [root] = arguments;
let refused = 0;
document.addEventListener("securitypolicyviolation", () => { refused++; });
fetch(root + "fetch").catch(() => {});
try { new WebSocket(root.replace("http", "ws")); } catch (error) { }
new Image().src = root + "image";
for (const [name, key, place] of [["script", "src", "script"], ["iframe", "src", "frame"],
  ["link", "href", "style"]]) {
  const made = document.createElement(name);
  if (name === "link") made.rel = "stylesheet";
  made[key] = root + place;
  document.body.append(made);
}
return new Promise(done => setTimeout(() => done(refused), 500));
"""


if __name__ == "__main__":
    unittest.main(verbosity=2)
