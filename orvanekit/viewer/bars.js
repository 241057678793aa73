// The spectrum as bars, by the logarithm of the power; a line every ten times.

const DECADES = 6;

function drawBars(context, width, height, unit, powers, whole, bands, chosen, style) {
  const most = whole.reduce((a, b) => Math.max(a, b), 0) || 1;
  const top = Math.log10(most) + 0.1;
  const floor = height - 16 * unit;
  const level = power => power > 0
    ? Math.max(0, 1 - (top - Math.log10(power)) / DECADES) * (floor - unit) : 0;
  const step = width / bands;
  context.clearRect(0, 0, width, height);
  context.lineWidth = unit;
  context.strokeStyle = style.line;
  context.globalAlpha = 0.35;
  for (let decade = Math.floor(top); decade > top - DECADES; decade--) {
    const y = floor - level(10 ** decade);
    context.strokeRect(0, y, width, 0);
  }
  context.globalAlpha = 1;
  context.font = `${12 * unit}px system-ui, sans-serif`;
  context.textBaseline = "bottom";
  context.textAlign = "center";
  for (let band = 0; band < bands; band++) {
    const gap = Math.max(unit, step / 8);
    const left = band * step + gap / 2;
    context.fillStyle = band === chosen ? style.text : style.accent;
    context.fillRect(left, floor - level(powers[band]), step - gap, level(powers[band]));
    context.strokeStyle = style.text;
    context.strokeRect(left, floor - level(whole[band]), step - gap, level(whole[band]));
    context.fillStyle = style.quiet;
    if (band % 5 === 0) context.fillText(String(band), left + (step - gap) / 2, height);
  }
  context.strokeStyle = style.text;
  context.strokeRect(0, floor, width, 0);
}
