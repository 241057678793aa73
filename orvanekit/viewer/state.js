// What is shown, as fields of text in the address: a link shows the same.

function numberField(standard, least, greatest, whole) {
  return {
    standard,
    read(text) {
      const value = Number(text.replace(",", "."));
      const fits = text.trim() !== "" && value >= least && value <= greatest
        && (!whole || Number.isInteger(value));
      return fits ? value : standard;
    },
    write: String,
  };
}

// Null, written as nothing, where no number is given.
function optionalField() {
  return Object.assign(numberField(null, -1e300, 1e300),
    { write: value => value === null ? "" : String(value) });
}

function choiceField(...names) {
  const [standard] = names;
  return { standard, read: text => names.includes(text) ? text : standard, write: String };
}

function flagField(standard) {
  return {
    standard,
    read: text => text === "1" ? true : text === "0" ? false : standard,
    write: value => value ? "1" : "0",
  };
}

// sets: how many there are; bands: the most that one of them has
function stateFields(sets, bands) {
  return {
    a: numberField(1, 1, sets, true),
    show: choiceField(...(sets > 1 ? ["one", "side", "difference", "blend"] : ["one"])),
    b: numberField(Math.min(2, sets), 1, sets, true),
    blend: numberField(0.5, 0, 1),
    bands: numberField(bands, 1, bands, true),
    window: choiceField("none", "hann", "lanczos", "heat"),
    width: numberField(0.1, 0, 0.5),
    colours: choiceField("diverging", "grey", "perceptual"),
    least: optionalField(),
    greatest: optionalField(),
    exposure: numberField(0, -8, 8),
    gamma: flagField(false),
    net: flagField(true),
    theta: numberField(Math.PI / 2, 0, Math.PI),
    phi: numberField(0, 0, 2 * Math.PI),
    zoom: numberField(1, 0.5, 8),
    painter: choiceField("auto", "webgl2", "plain"),
  };
}

function readState(fields, hash) {
  const given = new URLSearchParams(hash.replace(/^#/, ""));
  const state = {};
  for (const [name, field] of Object.entries(fields)) {
    state[name] = given.has(name) ? field.read(given.get(name)) : field.standard;
  }
  return state;
}

// The fields that are not as they were at first.
function writeState(fields, state) {
  const given = new URLSearchParams();
  for (const [name, field] of Object.entries(fields)) {
    if (state[name] !== field.standard) given.set(name, field.write(state[name]));
  }
  return String(given);
}
