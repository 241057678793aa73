// The globe's geometry: x to the right, y upwards, z towards the reader, radius 1, seen from far
// away; the view's theta and phi are in its middle.

function onGlobe(theta, phi, view) {
  const x = Math.sin(theta) * Math.sin(phi - view.phi);
  const front = Math.sin(theta) * Math.cos(phi - view.phi);
  const upwards = Math.cos(theta);
  return [x, upwards * Math.sin(view.theta) - front * Math.cos(view.theta),
    front * Math.sin(view.theta) + upwards * Math.cos(view.theta)];
}

// The place under a point of the picture, or null beside the globe.
function underGlobe(x, y, view) {
  const square = 1 - x * x - y * y;
  if (square < 0) return null;
  const z = Math.sqrt(square);
  const upwards = y * Math.sin(view.theta) + z * Math.cos(view.theta);
  return place(Math.acos(Math.max(-1, Math.min(1, upwards))),
    view.phi + Math.atan2(x, z * Math.sin(view.theta) - y * Math.cos(view.theta)));
}

// In pixels of a picture of that size.
function globeRadius(width, height, magnification) {
  return 0.47 * Math.min(width, height) * magnification;
}
