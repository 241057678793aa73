// Real spherical harmonics in double precision: values, grids, windows, extremes.
//
// Coefficient l * l + l + m goes with cos(m phi) for m > 0, with sin(-m phi) for m < 0; the basis
// is orthonormal and carries the sign (-1)^m. Angles are radians, theta counted from the pole.

const MOST_BANDS = 30;
const MOST_COEFFICIENTS = MOST_BANDS * MOST_BANDS;

// The grid that pictures are drawn from: rows from pole to pole, both included; columns from
// phi = 0 on, a multiple of four.
const ROWS = 385;
const COLUMNS = 768;

// Where order m begins in a polar row, which holds (m, m), (m + 1, m), ...
function orderStart(m) {
  return m * MOST_BANDS - m * (m - 1) / 2;
}

const POLAR_SIZE = orderStart(MOST_BANDS);

// The theta factors of the basis functions of order m >= 0, by the recurrence of Holmes and
// Featherstone 2002, equation 11.
const polarRow = (() => {
  const forward = new Float64Array(POLAR_SIZE);
  const backward = new Float64Array(POLAR_SIZE);
  for (let m = 0; m < MOST_BANDS; m++) {
    for (let l = m + 1; l < MOST_BANDS; l++) {
      const a = Math.sqrt((4 * l * l - 1) / (l * l - m * m));
      const below = (l - 1) * (l - 1);
      forward[orderStart(m) + l - m] = a;
      backward[orderStart(m) + l - m] = l > m + 1
        ? a * Math.sqrt((below - m * m) / (4 * below - 1)) : 0;
    }
  }
  return (theta, row = new Float64Array(POLAR_SIZE)) => {
    const x = Math.cos(theta);
    const sine = Math.sin(theta);
    let start = Math.sqrt(0.25 / Math.PI);
    for (let m = 0; m < MOST_BANDS; m++) {
      if (m) start *= -sine * Math.sqrt((2 * m + 1) / (2 * m)) * (m === 1 ? Math.SQRT2 : 1);
      let last = 0;
      let here = start;
      for (let l = m, at = orderStart(m); l < MOST_BANDS; l++, at++) {
        if (l > m) [last, here] = [here, forward[at] * x * here - backward[at] * last];
        row[at] = here;
      }
    }
    return row;
  };
})();

const scratchRow = new Float64Array(POLAR_SIZE);

// The value of the function at one place.
function valueAt(coefficients, theta, phi) {
  const row = polarRow(theta, scratchRow);
  let sum = 0;
  for (let m = 0; m < MOST_BANDS; m++) {
    let cosines = 0;
    let sines = 0;
    for (let l = m, at = orderStart(m); l < MOST_BANDS; l++, at++) {
      cosines += row[at] * coefficients[l * l + l + m];
      sines += row[at] * coefficients[l * l + l - m];
    }
    sum += m ? cosines * Math.cos(m * phi) + sines * Math.sin(m * phi) : cosines;
  }
  return sum;
}

// Fills every `step`-th element of `grid`, from `first` on, with the function's values times
// `scale`, row by row.
const fillGrid = (() => {
  const quarter = COLUMNS / 4;
  const polar = [];
  const cosines = new Float64Array((quarter + 1) * MOST_BANDS);
  const sines = new Float64Array((quarter + 1) * MOST_BANDS);
  for (let x = 0; x <= quarter; x++) {
    for (let m = 0; m < MOST_BANDS; m++) {
      cosines[x * MOST_BANDS + m] = Math.cos(2 * Math.PI * (m * x % COLUMNS) / COLUMNS);
      sines[x * MOST_BANDS + m] = Math.sin(2 * Math.PI * (m * x % COLUMNS) / COLUMNS);
    }
  }
  const ofCosine = new Float64Array(MOST_BANDS);
  const ofSine = new Float64Array(MOST_BANDS);
  return (coefficients, bands, scale, grid, first, step) => {
    for (let y = 0; y < ROWS; y++) {
      if (!polar[y]) polar[y] = polarRow(Math.PI * y / (ROWS - 1));
      const row = polar[y];
      for (let m = 0; m < bands; m++) {
        let c = 0;
        let s = 0;
        for (let l = m, at = orderStart(m); l < bands; l++, at++) {
          c += row[at] * coefficients[l * l + l + m];
          s += row[at] * coefficients[l * l + l - m];
        }
        ofCosine[m] = c * scale;
        ofSine[m] = s * scale;
      }
      // A column of the first quarter gives those at pi - phi, pi + phi and 2 pi - phi too: even
      // and odd orders, cosines and sines, only change signs.
      const start = first + y * COLUMNS * step;
      for (let x = 0; x <= quarter; x++) {
        let evenCosine = ofCosine[0];
        let evenSine = 0;
        let oddCosine = 0;
        let oddSine = 0;
        const at = x * MOST_BANDS;
        for (let m = 1; m < bands; m += 2) {
          oddCosine += ofCosine[m] * cosines[at + m];
          oddSine += ofSine[m] * sines[at + m];
        }
        for (let m = 2; m < bands; m += 2) {
          evenCosine += ofCosine[m] * cosines[at + m];
          evenSine += ofSine[m] * sines[at + m];
        }
        grid[start + x * step] = evenCosine + oddCosine + evenSine + oddSine;
        grid[start + (2 * quarter - x) * step] = evenCosine - oddCosine - evenSine + oddSine;
        grid[start + (2 * quarter + x) * step] = evenCosine - oddCosine + evenSine - oddSine;
        if (x) {
          grid[start + (4 * quarter - x) * step] = evenCosine + oddCosine - evenSine - oddSine;
        }
      }
    }
  };
})();

// Power of each band: the sum of its coefficients' squares.
function spectrum(coefficients) {
  const powers = new Float64Array(MOST_BANDS);
  for (let l = 0; l < MOST_BANDS; l++) {
    for (let i = l * l; i < (l + 1) * (l + 1); i++) powers[l] += coefficients[i] ** 2;
  }
  return powers;
}

// No value of the function is larger in magnitude: the addition theorem, band by band.
function bound(coefficients) {
  return spectrum(coefficients).reduce(
    (sum, power, l) => sum + Math.sqrt((2 * l + 1) / (4 * Math.PI) * power), 0);
}

// The factor of band l of `bands`, as orvanekit's windows of these names have it.
function windowFactor(name, bands, width, l) {
  const x = Math.PI * l / bands;
  switch (name) {
    case "hann": return (1 + Math.cos(x)) / 2;
    case "lanczos": return l ? Math.sin(x) / x : 1;
    case "heat": return Math.exp(-l * (l + 1) * width * width / 2);
    default: return 1;
  }
}

// The function cut to its first bands, under a window.
function windowed(coefficients, bands, name, width) {
  const result = new Float64Array(MOST_COEFFICIENTS);
  for (let l = 0; l < bands; l++) {
    const factor = windowFactor(name, bands, width, l);
    for (let i = l * l; i < (l + 1) * (l + 1); i++) result[i] = coefficients[i] * factor;
  }
  return result;
}

// Brings a place to 0 <= theta <= pi, 0 <= phi < 2 pi, over the pole where need be.
function place(theta, phi) {
  if (theta < 0 || theta > Math.PI) {
    theta = theta < 0 ? -theta : 2 * Math.PI - theta;
    phi += Math.PI;
  }
  phi -= 2 * Math.PI * Math.floor(phi / (2 * Math.PI));
  return { theta, phi: phi < 2 * Math.PI ? phi : 0 };
}

// The greatest value (sign 1) or the least (sign -1), from the best node of a grid on: steps to
// the best neighbour, halved where there is none better.
function extreme(coefficients, node, sign) {
  let best = place(Math.PI * Math.floor(node / COLUMNS) / (ROWS - 1),
    2 * Math.PI * (node % COLUMNS) / COLUMNS);
  best.value = valueAt(coefficients, best.theta, best.phi);
  for (let step = Math.PI / ROWS; step > 1e-5;) {
    const stretch = step / Math.max(Math.sin(best.theta), step);
    let better = best;
    for (const [down, along] of [[-1, 0], [1, 0], [0, -1], [0, 1]]) {
      const other = place(best.theta + down * step, best.phi + along * stretch);
      other.value = valueAt(coefficients, other.theta, other.phi);
      if (sign * other.value > sign * better.value) better = other;
    }
    if (better === best) step /= 2;
    best = better;
  }
  return best;
}

// {least, greatest}, each {value, theta, phi}; `grid` as fillGrid filled it.
function extremes(coefficients, grid, first, step) {
  let least = 0;
  let greatest = 0;
  for (let node = 1, at = first + step; node < ROWS * COLUMNS; node++, at += step) {
    if (grid[at] < grid[first + least * step]) least = node;
    if (grid[at] > grid[first + greatest * step]) greatest = node;
  }
  return {
    least: extreme(coefficients, least, -1),
    greatest: extreme(coefficients, greatest, 1),
  };
}
