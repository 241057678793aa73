// The page's sets: out of its data, checked against the module, and as text for a file.

// From the page's data to {name, bands, channels: arrays of 900 coefficients}.
function readSet(given) {
  const channels = given.channels.map(text => {
    const bytes = Uint8Array.from(atob(text), letter => letter.charCodeAt(0));
    const view = new DataView(bytes.buffer);
    const coefficients = new Float64Array(MOST_COEFFICIENTS);
    for (let i = 0; i < bytes.length / 4; i++) coefficients[i] = view.getFloat32(4 * i, true);
    return { coefficients, bands: Math.round(Math.sqrt(bytes.length / 4)) };
  });
  return {
    name: given.name,
    bands: Math.max(...channels.map(each => each.bands)),
    channels: channels.map(each => each.coefficients),
  };
}

// The largest difference between the module's values of a set and this page's, relative to the
// set's largest magnitude.
function worstDifference(set, { values, range }, points) {
  const largest = Math.max(Math.abs(range[0]), Math.abs(range[1]));
  let worst = 0;
  set.channels.forEach((coefficients, channel) => points.forEach(([theta, phi], i) => {
    const difference = Math.abs(valueAt(coefficients, theta, phi) - values[channel][i]);
    worst = Math.max(worst, difference && difference / largest);
  }));
  return worst;
}

// The weighted sum of two sets' channels; a set of one channel counts for each of three.
function combined(first, weight, second, other) {
  const count = Math.max(first.channels.length, second.channels.length);
  return Array.from({ length: count }, (_, channel) => {
    const one = first.channels[channel % first.channels.length];
    const two = second.channels[channel % second.channels.length];
    return one.map((value, i) => weight * value + other * two[i]);
  });
}

// Nine digits tell single precisions apart.
function numberText(value) {
  const single = Math.fround(value);
  const text = String(Number(single.toPrecision(9)));
  if (Object.is(single, -0)) return "-0.0";
  return /[.e]/.test(text) ? text : text + ".0";
}

// What orvanekit's load reads.
function setText(name, bands, channels) {
  const lines = channels.map(coefficients => "[" + Array.from({ length: bands }, (_, l) => "\n  ["
    + Array.from(coefficients.subarray(l * l, (l + 1) * (l + 1)), numberText).join(", ") + "]")
    .join(",") + "\n ]");
  const body = lines.length === 1 ? lines[0] : "{\n" + ["red", "green", "blue"]
    .map((colour, i) => ` "${colour}": ${lines[i]}`).join(",\n") + "\n }";
  return `{\n "format": "orvanekit set",\n "version": 1,\n "bands": ${bands},\n`
    + ` "notes": ${JSON.stringify({ name })},\n "coefficients": ${body}\n}\n`;
}
