// Lines of theta and phi, every 30 degrees, and marks of places, over a globe or a map.
//
// A frame is {width, height, unit, globe}: in pixels, `unit` of them to a pixel of the page; no
// globe for a map.

// The pixel of a place, and whether it is in front.
function pixelOf(frame, theta, phi) {
  const { width, height, globe } = frame;
  if (!globe) {
    return { x: phi / (2 * Math.PI) * width, y: theta / Math.PI * height, z: 1 };
  }
  const [x, y, z] = onGlobe(theta, phi, globe);
  return { x: width / 2 + x * globe.radius, y: height / 2 - y * globe.radius, z };
}

// A line through places, as far as it is in front; it ends on the globe's edge.
function trace(path, frame, places) {
  let last = null;
  for (const [theta, phi] of places) {
    const here = pixelOf(frame, theta, phi);
    if (last && (here.z >= 0) !== (last.z >= 0)) {
      const part = last.z / (last.z - here.z);
      let x = last.x + part * (here.x - last.x) - frame.width / 2;
      let y = last.y + part * (here.y - last.y) - frame.height / 2;
      const outwards = frame.globe.radius / Math.hypot(x, y);
      x = x * outwards + frame.width / 2;
      y = y * outwards + frame.height / 2;
      if (here.z >= 0) path.moveTo(x, y);
      else path.lineTo(x, y);
    }
    if (here.z >= 0) {
      if (last) path.lineTo(here.x, here.y);
      else path.moveTo(here.x, here.y);
    }
    last = here;
  }
}

function netLines(frame) {
  const step = frame.globe ? Math.PI / 90 : Math.PI / 6;
  const fine = new Path2D();
  const bold = new Path2D();    // the equator and phi = 0
  for (let k = 1; k < 6; k++) {
    const places = [];
    for (let phi = 0; phi < 2 * Math.PI + step / 2; phi += step) {
      places.push([k * Math.PI / 6, phi]);
    }
    trace(k === 3 ? bold : fine, frame, places);
  }
  for (let k = 0; k < 12; k++) {
    // Twelve meet at the poles of a globe: only four go all the way.
    const end = frame.globe && k % 3 ? Math.PI / 18 : 0;
    const places = [];
    for (let theta = end; theta < Math.PI - end + step / 2; theta += step) {
      places.push([theta, k * Math.PI / 6]);
    }
    trace(k ? fine : bold, frame, places);
  }
  if (frame.globe) {
    const [x, y] = [frame.width / 2, frame.height / 2];
    fine.moveTo(x + frame.globe.radius, y);
    fine.arc(x, y, frame.globe.radius, 0, 2 * Math.PI);
  }
  return { fine, bold };
}

// Light on dark, so that it is seen on any colour.
function outlined(context, frame, shape) {
  context.strokeStyle = context.fillStyle = "rgba(0, 0, 0, 0.55)";
  shape(2 * frame.unit);
  context.strokeStyle = context.fillStyle = "#ffffff";
  shape(0);
}

function label(context, frame, text, x, y, align, baseline) {
  context.font = `${12 * frame.unit}px system-ui, sans-serif`;
  context.textAlign = align;
  context.textBaseline = baseline;
  context.lineJoin = "round";
  context.lineWidth = 3 * frame.unit;
  context.strokeStyle = "rgba(0, 0, 0, 0.75)";
  context.strokeText(text, x, y);
  context.fillStyle = "#ffffff";
  context.fillText(text, x, y);
}

function drawNet(context, frame) {
  const { unit } = frame;
  const lines = netLines(frame);
  context.save();
  context.lineCap = context.lineJoin = "round";
  context.globalAlpha = 0.6;
  outlined(context, frame, wider => {
    context.lineWidth = 0.75 * unit + wider / 2;
    context.stroke(lines.fine);
    context.lineWidth = 1.5 * unit + wider;
    context.stroke(lines.bold);
  });
  context.globalAlpha = 1;
  if (frame.globe) {
    const edge = frame.width / 2;
    for (const [text, theta, phi] of [["\u03b8 = 0", 0, 0], ["\u03b8 = \u03c0", Math.PI, 0],
      ["\u03c6 = 0", Math.PI / 2, 0], ["\u03c6 = \u03c0/2", Math.PI / 2, Math.PI / 2]]) {
      const at = pixelOf(frame, theta, phi);
      if (at.z < -1e-9) continue;
      drawDot(context, frame, at, 2.5);
      const left = at.x > edge + 1;
      const above = at.y > frame.height / 2 - 1;
      label(context, frame, text, at.x + (left ? -6 : 6) * unit, at.y + (above ? -3 : 4) * unit,
        left ? "right" : "left", above ? "bottom" : "top");
    }
  } else {
    const [right, low] = [frame.width, frame.height];
    label(context, frame, "\u03b8 = 0", 4 * unit, 3 * unit, "left", "top");
    label(context, frame, "\u03c0/2", 4 * unit, low / 2 - 3 * unit, "left", "bottom");
    label(context, frame, "\u03b8 = \u03c0", 4 * unit, low - 19 * unit, "left", "bottom");
    ["\u03c6 = 0", "\u03c0/2", "\u03c0", "3\u03c0/2", "2\u03c0"].forEach((text, k) => label(
      context, frame, text, k * right / 4 + [4, 0, 0, 0, -4][k] * unit, low - 3 * unit,
      ["left", "center", "center", "center", "right"][k], "bottom"));
  }
  context.restore();
}

function drawDot(context, frame, at, size) {
  outlined(context, frame, wider => {
    context.beginPath();
    context.arc(at.x, at.y, size * frame.unit + wider / 2, 0, 2 * Math.PI);
    context.fill();
  });
}

// A ring with a plus or a minus, or, without a sign, with a dot: the pointer's place.
function drawMark(context, frame, { theta, phi }, sign) {
  const at = pixelOf(frame, theta, phi);
  if (at.z < 0) return;
  const size = 5 * frame.unit;
  outlined(context, frame, wider => {
    context.lineWidth = 1.5 * frame.unit + wider;
    context.beginPath();
    context.arc(at.x, at.y, size, 0, 2 * Math.PI);
    if (sign) {
      context.moveTo(at.x - size / 2, at.y);
      context.lineTo(at.x + size / 2, at.y);
    }
    if (sign > 0) {
      context.moveTo(at.x, at.y - size / 2);
      context.lineTo(at.x, at.y + size / 2);
    }
    context.stroke();
  });
}
