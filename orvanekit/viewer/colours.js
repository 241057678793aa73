// Colour maps: 256 colours from the range's lower end to its upper one, four bytes each.

const COLOUR_MAPS = {
  // Blue below 0, black at 0, orange above.
  diverging(t) {
    const strength = Math.abs(2 * t - 1);
    return (t < 0.5 ? [64, 152, 255] : [255, 176, 64]).map(full => full * strength);
  },

  grey(t) {
    return [255 * t, 255 * t, 255 * t];
  },

  // Even steps of lightness and hue, from violet over green to yellow, in Oklab (Ottosson 2020);
  // as much chroma as a screen has of all of them.
  perceptual(t) {
    const lightness = 0.22 + 0.72 * t;
    const hue = (300 - 195 * t) * Math.PI / 180;
    const chroma = 0.085 + 0.09 * t ** 3;
    const a = chroma * Math.cos(hue);
    const b = chroma * Math.sin(hue);
    const l = (lightness + 0.3963377774 * a + 0.2158037573 * b) ** 3;
    const m = (lightness - 0.1055613458 * a - 0.0638541728 * b) ** 3;
    const s = (lightness - 0.0894841775 * a - 1.2914855480 * b) ** 3;
    return [
      4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
      -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
      -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s,
    ].map(light => 255 * (light > 0.0031308 ? 1.055 * light ** (1 / 2.4) - 0.055
      : 12.92 * light));
  },
};

// gamma: of the grey map alone.
function colourTable(name, gamma) {
  const table = new Uint8ClampedArray(4 * 256);
  for (let i = 0; i < 256; i++) {
    const t = name === "grey" ? (i / 255) ** (1 / gamma) : i / 255;
    table.set(COLOUR_MAPS[name](t), 4 * i);
    table[4 * i + 3] = 255;
  }
  return table;
}
