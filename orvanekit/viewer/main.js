// Puts the page together: controls, what they show, and what the pointer and the keys do.

const WORST = 1e-5;             // more than this is a fault, of the page or of the module
const DEGREE = Math.PI / 180;

const data = JSON.parse(document.getElementById("data").textContent);
const sets = data.sets.map(readSet);
const mostBands = Math.max(1, ...sets.map(set => set.bands));
const fields = stateFields(sets.length, mostBands);
const form = document.getElementById("controls");
const said = document.getElementById("said");

let state = readState(fields, location.hash);
let pointer = null;             // the place under it: {theta, phi}
let pointedBand = null;
let look = null;
let painter = plainPainter();

function number(value) {
  const size = Math.abs(value);
  const text = value === 0 ? "0" : size >= 1e5 || size < 1e-3 ? value.toExponential(3)
    : value.toPrecision(4);
  return text.replace(/-/g, "\u2212");
}

function angle(value) {
  return `${value.toFixed(3)} (${(value / DEGREE).toFixed(1)}\u00b0)`;
}

function placeText(at) {
  return [`\u03b8 ${angle(at.theta)}`, `\u03c6 ${angle(at.phi)}`];
}

// Fills a line of readings; a reading is never broken.
function setReadings(line, readings) {
  while (line.childElementCount > readings.length) line.lastElementChild.remove();
  readings.forEach((text, i) => {
    const span = line.children[i] || line.appendChild(document.createElement("span"));
    if (span.textContent !== text) span.textContent = text;
  });
}

function readingsText(line) {
  return Array.from(line.children, each => each.textContent.replace(/ /g, "\u00a0")).join(", ");
}

// ---- What is shown ----

// One function to a panel: its name and bands, whole coefficients of each channel.
function shownFunctions() {
  const [a, b] = [sets[state.a - 1], sets[state.b - 1]];
  const bands = Math.max(a.bands, b.bands);
  const percent = Math.round(100 * state.blend);
  switch (state.show) {
    case "side": return [a, b];
    case "difference":
      return [{ name: `${a.name} \u2212 ${b.name}`, bands, channels: combined(a, 1, b, -1) }];
    case "blend":
      return [{
        name: `${100 - percent} % ${a.name} + ${percent} % ${b.name}`,
        bands,
        channels: combined(a, 1 - state.blend, b, state.blend),
      }];
    default: return [a];
  }
}

function gridOf(channels, bands, buffer) {
  const count = channels.length;
  const size = count * ROWS * COLUMNS;
  const grid = buffer && buffer.length === size ? buffer : new Float32Array(size);
  const unit = Math.max(...channels.map(bound)) || 1;
  channels.forEach((each, i) => fillGrid(each, bands, 1 / unit, grid, i, count));
  return { grid, channels: count, unit };
}

// The least and the greatest value of the whole sets that take part: it stays while sliders move,
// so that their effect is seen.
const automaticRange = (() => {
  const differences = new Map();
  function ofDifference(channels) {
    const key = `${state.a}-${state.b}`;
    if (!differences.has(key)) {
      const { grid, unit } = gridOf(channels, MOST_BANDS);
      let [least, greatest] = [Infinity, -Infinity];
      for (const value of grid) {
        if (value < least) least = value;
        if (value > greatest) greatest = value;
      }
      differences.set(key, [least * unit, greatest * unit]);
    }
    return differences.get(key);
  }
  return functions => {
    if (state.show === "difference") return ofDifference(functions[0].channels);
    const ranges = [state.a, state.show === "one" ? state.a : state.b]
      .map(each => data.sets[each - 1].range);
    return [Math.min(ranges[0][0], ranges[1][0]), Math.max(ranges[0][1], ranges[1][1])];
  };
})();

// The range and the colours; a new object whenever they change.
const lookFor = (() => {
  let last = "";
  let table = null;
  return functions => {
    const colour = functions.some(each => each.channels.length === 3);
    let [least, greatest] = automaticRange(functions);
    const automatic = [colour ? 0 : least, greatest];
    if (colour) least = 0;
    if (state.least !== null) least = state.least;
    if (state.greatest !== null) greatest = state.greatest;
    const diverging = !colour && state.colours === "diverging";
    if (diverging) {
      greatest = state.least === null && state.greatest !== null ? Math.abs(greatest)
        : Math.max(Math.abs(least), Math.abs(greatest));
      least = -greatest;
    }
    let span = (greatest - least) / 2 ** state.exposure;
    if (!(span > 0)) span = 1;
    if (diverging) least = -span / 2;
    const gamma = state.gamma ? 2.2 : 1;
    const key = [least, span, colour, state.colours, gamma].join();
    if (key !== last) {
      last = key;
      table = colourTable(state.colours, gamma);
      look = { least, span, colour, gamma, table, diverging };
    }
    return Object.assign(look, { automatic });
  };
})();

// ---- Panels ----

class Panel {
  constructor(index) {
    const copy = document.getElementById("panel").content.cloneNode(true);
    this.root = copy.querySelector("article");
    for (const part of ["h2", ".globe", ".map", ".spectrum", ".here", ".extremes", ".band"]) {
      this[part.replace(".", "")] = copy.querySelector(part);
    }
    this.root.hidden = index > 0;
    document.getElementById("panels").append(this.root);
    this.listen();
  }

  get shown() {
    return !this.root.hidden;
  }

  // Takes a function over: cuts it, evaluates it, finds its extremes.
  take(shown) {
    this.whole = shown.channels;
    this.bands = Math.min(state.bands, shown.bands);
    this.channels = shown.channels.map(
      each => windowed(each, this.bands, state.window, state.width));
    this.layer = gridOf(this.channels, this.bands, this.layer && this.layer.grid);
    const { grid, channels } = this.layer;
    this.found = this.channels.map((each, i) => extremes(each, grid, i, channels));
    this.powers = sumOfPowers(this.channels);
    this.wholePowers = sumOfPowers(this.whole);
    this.h2.textContent = shown.name;
    this.root.dataset.channels = channels;
    for (const [canvas, what] of [[this.globe, "Globe"], [this.map, "Map"],
      [this.spectrum, "Power of each band"]]) {
      canvas.setAttribute("aria-label", `${what} of ${shown.name}`);
    }
    const names = channels === 3 ? ["red ", "green ", "blue "] : [""];
    const lines = names.reduce((all, name, i) => all.concat(
      [["least", this.found[i].least], ["greatest", this.found[i].greatest]].map(
        ([word, at]) => [`${name}${word} ${number(at.value)}`, ...placeText(at)])), []);
    while (this.extremes.childElementCount > lines.length) this.extremes.lastElementChild.remove();
    lines.forEach((readings, i) => setReadings(this.extremes.children[i]
      || this.extremes.appendChild(document.createElement("p")), readings));
  }

  frame(canvas) {
    const unit = canvas.width / canvas.clientWidth;
    const frame = { width: canvas.width, height: canvas.height, unit, globe: null };
    if (canvas === this.globe) {
      const radius = globeRadius(canvas.width, canvas.height, state.zoom);
      frame.globe = { theta: state.theta, phi: state.phi, radius };
    }
    return frame;
  }

  draw() {
    for (const canvas of [this.globe, this.map]) {
      fitCanvas(canvas);
      const context = canvas.getContext("2d");
      const frame = this.frame(canvas);
      context.clearRect(0, 0, canvas.width, canvas.height);
      painter.paint(context, canvas.width, canvas.height, this.layer, look, frame.globe);
      if (state.net) {
        drawNet(context, frame);
        for (const found of this.found) {
          drawMark(context, frame, found.least, -1);
          drawMark(context, frame, found.greatest, 1);
        }
      }
      if (pointer) drawMark(context, frame, pointer, 0);
    }
    this.read();
    this.drawBars();
  }

  drawBars() {
    const canvas = this.spectrum;
    fitCanvas(canvas);
    const style = getComputedStyle(document.documentElement);
    const colours = {};
    for (const name of ["accent", "text", "quiet", "line"]) {
      colours[name] = style.getPropertyValue(`--${name}`);
    }
    drawBars(canvas.getContext("2d"), canvas.width, canvas.height,
      canvas.width / canvas.clientWidth, this.powers, this.wholePowers, mostBands, pointedBand,
      colours);
    const all = this.powers.reduce((a, b) => a + b, 0);
    const share = band => all ? 100 * this.powers[band] / all : 0;
    setReadings(this.band, pointedBand === null ? [`power of all bands ${number(all)}`]
      : [`band ${pointedBand}`, `power ${number(this.powers[pointedBand])}`,
        `${share(pointedBand).toPrecision(3)} %`]);
  }

  read() {
    const at = pointer || { theta: state.theta, phi: state.phi };
    const values = this.channels.map(each => number(valueAt(each, at.theta, at.phi)));
    setReadings(this.here, [`value ${values.join(", ")}`, ...placeText(at)]);
  }

  // The place under a point of a canvas, in pixels of the page, or null.
  under(canvas, x, y) {
    const [width, height] = [canvas.clientWidth, canvas.clientHeight];
    if (canvas === this.map) {
      return place(Math.max(0, Math.min(1, y / height)) * Math.PI,
        Math.max(0, Math.min(1, x / width)) * 2 * Math.PI);
    }
    const radius = globeRadius(width, height, state.zoom);
    return underGlobe((x - width / 2) / radius, (height / 2 - y) / radius, state);
  }

  listen() {
    const { globe, map, spectrum: bars } = this;
    const held = new Map();     // the mouse, or fingers, by their pointers' numbers
    globe.addEventListener("pointerdown", event => {
      if (event.button) return;
      held.set(event.pointerId, event);
      globe.setPointerCapture(event.pointerId);
    });
    for (const kind of ["pointerup", "pointercancel"]) {
      globe.addEventListener(kind, event => held.delete(event.pointerId));
    }
    globe.addEventListener("pointermove", event => {
      const before = held.get(event.pointerId);
      if (!before) return;
      held.set(event.pointerId, event);
      const other = Array.from(held.values()).find(each => each.pointerId !== event.pointerId);
      const apart = one => Math.max(20, Math.hypot(one.clientX - other.clientX,
        one.clientY - other.clientY));
      if (other) zoom(apart(event) / apart(before));
      else {
        const radius = globeRadius(globe.clientWidth, globe.clientHeight, state.zoom);
        turn((before.clientY - event.clientY) / radius, (before.clientX - event.clientX) / radius);
      }
    });
    globe.addEventListener("wheel", event => {
      // At the poles the page scrolls on.
      const tilt = event.deltaY * 0.1 * DEGREE;
      const aside = event.deltaX * 0.1 * DEGREE;
      const stuck = !event.ctrlKey && !aside && tilt
        && state.theta === (tilt > 0 ? Math.PI : 0);
      if (stuck) return;
      event.preventDefault();
      if (event.ctrlKey) zoom(2 ** (-event.deltaY / 400));
      else turn(tilt, aside);
    }, { passive: false });
    for (const canvas of [globe, map]) {
      canvas.addEventListener("pointermove", event => {
        pointer = this.under(canvas, event.offsetX, event.offsetY);
        redraw();
      });
      canvas.addEventListener("pointerleave", () => { pointer = null; redraw(); });
      canvas.addEventListener("blur", () => { pointer = null; redraw(); });
      canvas.addEventListener("keydown", event => {
        if (event.ctrlKey || event.altKey || event.metaKey) return;
        const used = canvas === globe ? this.globeKey(event) : this.mapKey(event);
        if (!used) return;
        event.preventDefault();
        redraw();
        say(() => readingsText(this.here));
      });
    }
    bars.addEventListener("pointermove", event => {
      point(Math.floor(event.offsetX / bars.clientWidth * mostBands));
    });
    for (const kind of ["pointerleave", "blur"]) {
      bars.addEventListener(kind, () => point(null));
    }
    bars.addEventListener("keydown", event => {
      const band = pointedBand === null ? 0 : pointedBand;
      const next = { ArrowLeft: band - 1, ArrowRight: pointedBand === null ? 0 : band + 1,
        Home: 0, End: mostBands - 1 }[event.key];
      if (next === undefined) return;
      event.preventDefault();
      point(next);
      say(() => readingsText(this.band));
    });
  }

  globeKey(event) {
    const step = (event.shiftKey ? 1 : 5) * DEGREE;
    const turns = { ArrowUp: [-step, 0], ArrowDown: [step, 0], ArrowLeft: [0, -step],
      ArrowRight: [0, step] }[event.key];
    pointer = null;
    if (turns) turn(...turns);
    else if (event.key === "+" || event.key === "=") zoom(1.25);
    else if (event.key === "-" || event.key === "_") zoom(0.8);
    else if (event.key === "Home") {
      for (const name of ["theta", "phi", "zoom"]) state[name] = fields[name].standard;
      changed();
    } else return false;
    return true;
  }

  mapKey(event) {
    const step = (event.shiftKey ? 0.25 : 2.5) * DEGREE;
    const at = pointer || { theta: state.theta, phi: state.phi };
    const moves = { ArrowUp: [-step, 0], ArrowDown: [step, 0], ArrowLeft: [0, -step],
      ArrowRight: [0, step], Home: [0, 0] }[event.key];
    if (!moves) return false;
    pointer = event.key === "Home" ? { theta: Math.PI / 2, phi: 0 }
      : place(Math.max(0, Math.min(Math.PI, at.theta + moves[0])), at.phi + moves[1]);
    return true;
  }
}

function sumOfPowers(channels) {
  return channels.map(spectrum).reduce((sum, each) => sum.map((power, l) => power + each[l]));
}

// As many pixels as the screen has under it.
function fitCanvas(canvas) {
  const fine = Math.min(2, window.devicePixelRatio || 1);
  const width = Math.max(1, Math.round(canvas.clientWidth * fine));
  const height = Math.max(1, Math.round(canvas.clientHeight * fine));
  if (canvas.width !== width) canvas.width = width;
  if (canvas.height !== height) canvas.height = height;
}

function point(band) {
  pointedBand = band === null ? null : Math.max(0, Math.min(mostBands - 1, band));
  redraw();
}

function turn(down, along) {
  state.theta = Math.max(0, Math.min(Math.PI, state.theta + down));
  state.phi = place(0, state.phi + along).phi;
  changed();
}

function zoom(factor) {
  state.zoom = Math.max(0.5, Math.min(8, state.zoom * factor));
  changed();
}

// ---- Drawing, once to a frame of the screen ----

const panels = [new Panel(0), new Panel(1)];
let awaited = 0;
let evaluated = "";
let spoken = null;

function redraw() {
  awaited = awaited || requestAnimationFrame(draw);
}

// Says for screen readers what a key has led to, when it is drawn.
function say(text) {
  spoken = text;
  redraw();
}

function draw() {
  awaited = 0;
  performance.mark("begin");
  const functions = shownFunctions();
  lookFor(functions);
  const inputs = ["a", "show", "b", "blend", "bands", "window", "width"];
  const wanted = inputs.map(name => state[name]).join();
  panels.forEach((panel, i) => {
    panel.root.hidden = i >= functions.length;
    if (panel.shown && wanted !== evaluated) panel.take(functions[i]);
  });
  evaluated = wanted;
  panels.filter(panel => panel.shown).forEach(panel => panel.draw());
  showScale(functions);
  if (spoken) said.textContent = spoken();
  spoken = null;
  performance.measure("draw", "begin");
}

function showScale(functions) {
  const scale = document.getElementById("scale");
  const colour = functions.some(each => each.channels.length === 3);
  const context = scale.querySelector("canvas").getContext("2d");
  context.putImageData(new ImageData(look.table, 256, 1), 0, 0);
  [0, 0.5, 1].forEach((part, i) => {
    scale.querySelectorAll("span")[i].textContent = number(look.diverging && i === 1 ? 0
      : look.least + part * look.span);
  });
  const [least, greatest] = look.automatic;
  const most = Math.max(Math.abs(least), Math.abs(greatest));
  form.elements.least.placeholder = number(look.diverging ? -most : least);
  form.elements.greatest.placeholder = number(look.diverging ? most : greatest);
  const kinds = [state.show, state.window, colour ? "colour" : "scalar",
    colour || state.colours === "grey" ? "bright" : ""];
  for (const part of form.querySelectorAll("[data-for]")) {
    part.hidden = !part.dataset.for.split(" ").some(kind => kinds.includes(kind));
  }
}

// ---- Controls and address ----

// What stands beside a slider.
const SLIDERS = {
  blend: value => `${Math.round(100 * value)} %`,
  bands: value => String(value),
  width: value => value.toFixed(3),
  exposure: value => value > 0 ? `+${value}` : number(value).replace(/\.?0+$/, "") || "0",
};

function showControls() {
  for (const [name, field] of Object.entries(fields)) {
    const control = form.elements[name];
    if (!control) continue;
    if (control.type === "checkbox") control.checked = state[name];
    else if (document.activeElement !== control || control.type !== "text") {
      control.value = field.write(state[name]);
    }
  }
  showSliders();
}

function showSliders() {
  for (const [name, text] of Object.entries(SLIDERS)) {
    const control = form.elements[name];
    control.parentElement.querySelector(".amount").textContent = text(state[name]);
    control.setAttribute("aria-valuetext", text(state[name]));
  }
}

let writing = 0;

// The state is another: draws it, and writes it into the address a moment later.
function changed() {
  redraw();
  clearTimeout(writing);
  writing = setTimeout(writeAddress, 200);
}

function writeAddress() {
  clearTimeout(writing);
  const hash = writeState(fields, state);
  if (hash !== location.hash.replace(/^#/, "")) {
    history.replaceState(null, "", hash ? `#${hash}` : location.pathname + location.search);
  }
}

form.addEventListener("input", event => {
  const field = fields[event.target.name];
  if (!field) return;
  const text = event.target.value;
  state[event.target.name] = event.target.type === "checkbox" ? event.target.checked
    : field.read(text);
  if (event.target.type === "text") {
    event.target.setCustomValidity(text.trim() && field.read(text) === null ? "Not a number" : "");
  }
  showSliders();
  changed();
});
form.addEventListener("submit", event => event.preventDefault());
window.addEventListener("hashchange", () => {
  state = readState(fields, location.hash);
  showControls();
  redraw();
});

// ---- Buttons ----

function fileName(ending) {
  const name = panels[0].h2.textContent.replace(/[^\w.-]+/g, "-").replace(/^[-.]+|-+$/g, "");
  return (name.slice(0, 60) || "set") + ending;
}

// All pictures, under their names, on one.
function wholePicture() {
  const shown = panels.filter(panel => panel.shown);
  const unit = shown[0].map.width / shown[0].map.clientWidth;
  const [edge, line] = [12 * unit, 26 * unit];
  const parts = panel => [panel.globe, panel.map, panel.spectrum];
  const widths = shown.map(panel => Math.max(...parts(panel).map(each => each.width)));
  const picture = document.createElement("canvas");
  picture.width = widths.reduce((sum, width) => sum + width + edge, edge);
  picture.height = line + Math.max(...shown.map(panel => parts(panel)
    .reduce((sum, each) => sum + each.height + edge, edge)));
  const context = picture.getContext("2d");
  const style = getComputedStyle(document.documentElement);
  context.fillStyle = style.getPropertyValue("--panel");
  context.fillRect(0, 0, picture.width, picture.height);
  context.fillStyle = style.getPropertyValue("--text");
  context.font = `600 ${16 * unit}px system-ui, sans-serif`;
  context.textBaseline = "top";
  let left = edge;
  shown.forEach((panel, i) => {
    context.fillText(panel.h2.textContent, left, edge, widths[i]);
    let top = edge + line;
    for (const canvas of parts(panel)) {
      context.drawImage(canvas, left + (widths[i] - canvas.width) / 2, top);
      top += canvas.height + edge;
    }
    left += widths[i] + edge;
  });
  return picture;
}

document.getElementById("save").addEventListener("click", () => wholePicture().toBlob(blob => {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(blob);
  link.download = fileName(".png");
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
  said.textContent = `Saved as ${link.download}`;
}));

document.getElementById("copy").addEventListener("click", async () => {
  const { channels, bands, h2 } = panels[0];
  const text = setText(h2.textContent, bands, channels);
  try {
    await navigator.clipboard.writeText(text);
    said.textContent = "The set is on the clipboard, as it is shown";
  } catch (error) {
    said.textContent = "This browser lets no page write to the clipboard";
  }
});

document.getElementById("reset").addEventListener("click", () => {
  state = readState(fields, "");
  showControls();
  changed();
});

// ---- Beginning ----

// The first picture does not wait for a graphics processor; painter=webgl2 or painter=plain in the
// address chooses.
function choosePainter() {
  const shader = state.painter !== "plain"
    && shaderPainter(state.painter === "webgl2", () => usePainter(plainPainter(), "plain"));
  if (shader) usePainter(shader, "webgl2");
  else usePainter(painter, "plain");
}

function usePainter(chosen, name) {
  painter = chosen;
  document.getElementById("plain").textContent = name === "plain"
    ? "Drawn on a 2D canvas, as this browser has no fast WebGL 2" : "";
  document.documentElement.dataset.painter = name;
  redraw();
}

function check() {
  const worst = Math.max(...sets.map((set, i) => worstDifference(set, data.sets[i], data.points)));
  const fits = worst < WORST;
  const warning = document.getElementById("warning");
  document.documentElement.dataset.worst = String(worst);
  document.getElementById("checked").textContent = fits
    ? "Agrees with the module" + (worst ? ` to ${worst.toExponential(0)}` : "") : "";
  warning.hidden = fits;
  if (!fits) {
    warning.textContent = "Do not trust this page: its pictures differ from the module's values "
      + `by ${worst.toExponential(1)} of the largest. It may have been damaged on its way.`;
  }
}

function begin() {
  document.getElementById("title").textContent = data.title;
  for (const name of ["a", "b"]) {
    sets.forEach((set, i) => form.elements[name].add(new Option(set.name, i + 1)));
  }
  document.getElementById("comparing").hidden = sets.length < 2;
  form.elements.bands.max = mostBands;
  showControls();
  check();
  draw();
  document.documentElement.dataset.ready = "1";
  performance.mark("ready");
  const again = new ResizeObserver(redraw);
  panels.forEach(panel => again.observe(panel.root));
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", redraw);
  setTimeout(choosePainter);
}

begin();
