// Painters colour the grid of a layer as a globe or a map onto a 2D canvas.
//
// A layer is {grid, channels, unit}: values divided by `unit`, the channels of a node side by side.
// A look is {least, span, table, colour, gamma}: the range of values, and the colours of one
// channel or the gamma of three.

const VERTICES = `#version 300 es
out vec2 at;
void main() {
  vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.0;
  at = corner;
  gl_Position = vec4(corner * 2.0 - 1.0, 0.0, 1.0);
}`;

const FRAGMENTS = `#version 300 es
precision highp float;
precision highp int;
precision highp sampler2D;
in vec2 at;                     // 0 to 1, from the lower left
out vec4 pixel;
uniform sampler2D grid, table;
uniform vec2 size;              // of the picture, pixels
uniform float radius;           // of the globe, pixels; 0 for a map
uniform vec2 view;              // theta, phi in the globe's middle
uniform vec2 range;             // colour = value * x + y
uniform float gamma;
uniform bool colour, single;    // how the look is, how many channels the grid has
const float PI = 3.14159265358979;

vec3 node(int row, int column, ivec2 nodes) {
  return texelFetch(grid, ivec2(column % nodes.x, min(row, nodes.y - 1)), 0).rgb;
}

vec3 value(float theta, float phi) {
  ivec2 nodes = textureSize(grid, 0);
  vec2 place = vec2(fract(phi / (2.0 * PI)) * float(nodes.x), theta / PI * float(nodes.y - 1));
  vec2 part = fract(place);
  ivec2 low = ivec2(place);
  vec3 upper = mix(node(low.y, low.x, nodes), node(low.y, low.x + 1, nodes), part.x);
  vec3 lower = mix(node(low.y + 1, low.x, nodes), node(low.y + 1, low.x + 1, nodes), part.x);
  return mix(upper, lower, part.y);
}

void main() {
  float theta = (1.0 - at.y) * PI, phi = at.x * 2.0 * PI, cover = 1.0;
  if (radius > 0.0) {
    vec2 p = (at - 0.5) * size / radius;
    float far = length(p);
    cover = clamp((1.0 - far) * radius + 0.5, 0.0, 1.0);
    p /= max(far, 1.0);
    float z = sqrt(max(0.0, 1.0 - dot(p, p)));
    theta = acos(clamp(p.y * sin(view.x) + z * cos(view.x), -1.0, 1.0));
    phi = view.y + atan(p.x, z * sin(view.x) - p.y * cos(view.x));
  }
  vec3 t = clamp(value(theta, phi) * range.x + range.y, 0.0, 1.0);
  if (single) t = t.rrr;
  vec3 shade = colour ? pow(t, vec3(1.0 / gamma))
    : texture(table, vec2((t.r * 255.0 + 0.5) / 256.0, 0.5)).rgb;
  pixel = vec4(shade, 1.0) * cover;
}`;

// What a value, divided by the layer's unit, is multiplied by and then added to for the colour.
function rangeOf(layer, look) {
  return [layer.unit / look.span, -look.least / look.span];
}

// Without a graphics processor WebGL is slower than the other painter.
function isSoftware(gl) {
  const names = gl.getExtension("WEBGL_debug_renderer_info");
  return names !== null && /swiftshader|llvmpipe|softpipe|software|basic render/i.test(
    gl.getParameter(names.UNMASKED_RENDERER_WEBGL));
}

// Draws with WebGL 2; null where there is none, or only a slow one and `anyKind` is false. `onLost`
// is called when it goes away.
function shaderPainter(anyKind, onLost) {
  const canvas = document.createElement("canvas");
  const gl = canvas.getContext("webgl2", { antialias: false, depth: false });
  if (!gl || (isSoftware(gl) && !anyKind)) return null;
  const program = gl.createProgram();
  for (const [kind, source] of [[gl.VERTEX_SHADER, VERTICES], [gl.FRAGMENT_SHADER, FRAGMENTS]]) {
    const shader = gl.createShader(kind);
    gl.shaderSource(shader, source);
    gl.compileShader(shader);
    gl.attachShader(program, shader);
  }
  gl.linkProgram(program);
  if (!gl.getProgramParameter(program, gl.LINK_STATUS)) return null;
  gl.useProgram(program);
  const uniform = {};
  for (const name of ["grid", "table", "size", "radius", "view", "range", "gamma", "colour",
    "single"]) {
    uniform[name] = gl.getUniformLocation(program, name);
  }
  gl.uniform1i(uniform.table, 1);
  gl.pixelStorei(gl.UNPACK_ALIGNMENT, 4);
  canvas.addEventListener("webglcontextlost", onLost);

  function texture(unit, filter) {
    const made = gl.createTexture();
    gl.activeTexture(gl.TEXTURE0 + unit);
    gl.bindTexture(gl.TEXTURE_2D, made);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, filter);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, filter);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_S, gl.CLAMP_TO_EDGE);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_T, gl.CLAMP_TO_EDGE);
    return made;
  }
  const colours = texture(1, gl.LINEAR);
  const grids = new Map();      // from a layer to its texture

  function bindGrid(layer) {
    if (grids.has(layer)) {
      gl.activeTexture(gl.TEXTURE0);
      gl.bindTexture(gl.TEXTURE_2D, grids.get(layer));
      return;
    }
    if (grids.size >= 2) {      // the panels' last ones
      const [oldest, old] = grids.entries().next().value;
      gl.deleteTexture(old);
      grids.delete(oldest);
    }
    grids.set(layer, texture(0, gl.NEAREST));
    const [inside, format] = layer.channels === 1 ? [gl.R32F, gl.RED] : [gl.RGB32F, gl.RGB];
    gl.texImage2D(gl.TEXTURE_2D, 0, inside, COLUMNS, ROWS, 0, format, gl.FLOAT, layer.grid);
  }

  return {
    paint(context, width, height, layer, look, globe) {
      if (canvas.width < width) canvas.width = width;
      if (canvas.height < height) canvas.height = height;
      bindGrid(layer);
      if (look.table) {
        gl.activeTexture(gl.TEXTURE1);
        gl.bindTexture(gl.TEXTURE_2D, colours);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA, 256, 1, 0, gl.RGBA, gl.UNSIGNED_BYTE,
          new Uint8Array(look.table.buffer));
      }
      gl.viewport(0, canvas.height - height, width, height);
      gl.uniform1i(uniform.grid, 0);
      gl.uniform2f(uniform.size, width, height);
      gl.uniform1f(uniform.radius, globe ? globe.radius : 0);
      if (globe) gl.uniform2f(uniform.view, globe.theta, globe.phi);
      gl.uniform2f(uniform.range, ...rangeOf(layer, look));
      gl.uniform1f(uniform.gamma, look.gamma);
      gl.uniform1i(uniform.colour, look.colour ? 1 : 0);
      gl.uniform1i(uniform.single, layer.channels === 1 ? 1 : 0);
      gl.drawArrays(gl.TRIANGLES, 0, 3);
      context.drawImage(canvas, 0, 0, width, height, 0, 0, width, height);
    },
  };
}

// Draws without WebGL: a map is the coloured nodes, stretched; a globe's pixels are interpolated.
function plainPainter() {
  const maps = new Map();       // from a layer to {look, canvas}
  const small = document.createElement("canvas");

  function mapOf(layer, look) {
    const known = maps.get(layer);
    if (known && known.look === look) return known.canvas;
    const canvas = document.createElement("canvas");
    canvas.width = COLUMNS;
    canvas.height = ROWS;
    const context = canvas.getContext("2d");
    const picture = context.createImageData(COLUMNS, ROWS);
    const pixels = new Uint32Array(picture.data.buffer);
    const { channels, grid } = layer;
    const pixelOfValues = colouring(layer, look);
    for (let i = 0, at = 0; i < pixels.length; i++, at += channels) {
      pixels[i] = channels === 1 ? pixelOfValues(grid[at], grid[at], grid[at])
        : pixelOfValues(grid[at], grid[at + 1], grid[at + 2]);
    }
    context.putImageData(picture, 0, 0);
    if (!known && maps.size >= 2) maps.delete(maps.keys().next().value);    // the panels' last ones
    maps.set(layer, { look, canvas });
    return canvas;
  }

  return {
    paint(context, width, height, layer, look, globe) {
      if (!globe) {
        // The first node stands for phi = 0 and for the pole.
        const [across, down] = [width / COLUMNS, height / (ROWS - 1)];
        for (const from of [0, width]) {
          context.drawImage(mapOf(layer, look), from - across / 2, -down / 2, width, ROWS * down);
        }
        return;
      }
      const seen = Math.min(Math.PI * globe.radius ** 2, width * height);
      const reduced = Math.min(1, Math.sqrt(MOST_PIXELS / seen));
      small.width = Math.ceil(width * reduced);
      small.height = Math.ceil(height * reduced);
      const drawn = small.getContext("2d");
      const picture = drawn.createImageData(small.width, small.height);
      drawGlobe(picture, layer, look, globe, globe.radius * small.width / width);
      drawn.putImageData(picture, 0, 0);
      context.save();           // a smooth edge
      context.beginPath();
      context.arc(width / 2, height / 2, globe.radius - 0.5, 0, 2 * Math.PI);
      context.clip();
      context.drawImage(small, 0, 0, width, small.height * width / small.width);
      context.restore();
    },
  };
}

// A globe of more of them is drawn smaller and stretched, so that it turns smoothly; the shortest
// waves, 12 degrees long, are 56 pixels then.
const MOST_PIXELS = 2.5e5;

// Bytes of 0 to 1 in 65,535 steps, encoded for a screen of that gamma.
const encoding = (() => {
  const tables = new Map();
  return gamma => {
    if (!tables.has(gamma)) {
      tables.set(gamma, Uint8ClampedArray.from({ length: 65536 },
        (_, i) => 255 * (i / 65535) ** (1 / gamma)));
    }
    return tables.get(gamma);
  };
})();

// A function from the values of three channels, of one thrice, to a pixel's four bytes.
function colouring(layer, look) {
  const [scale, offset] = rangeOf(layer, look);
  const table = look.colour ? encoding(look.gamma) : new Uint32Array(look.table.buffer);
  const most = table.length - 1;
  const pick = value => {
    const t = (value * scale + offset) * most + 0.5;
    return table[t > 0 ? t < most ? Math.floor(t) : most : 0];
  };
  // The lowest byte comes first, as on all machines that have browsers.
  return look.colour ? (red, green, blue) => 255 << 24 | pick(blue) << 16 | pick(green) << 8
    | pick(red) : pick;
}

// Sets the pixels of a globe, and of two around it, from the four nodes around each; as underGlobe, in
// one go.
function drawGlobe(picture, layer, look, globe, radius) {
  const { width, height } = picture;
  const { grid, channels } = layer;
  const below = COLUMNS * channels;
  const pixels = new Uint32Array(picture.data.buffer);
  const pixelOfValues = colouring(layer, look);
  const [sine, cosine] = [Math.sin(globe.theta), Math.cos(globe.theta)];
  const [down, along] = [(ROWS - 1) / Math.PI, COLUMNS / (2 * Math.PI)];
  const start = globe.phi * along + COLUMNS;
  for (let row = 0; row < height; row++) {
    const upwards = (height / 2 - row - 0.5) / radius;
    const half = Math.sqrt(Math.max(0, (radius + 2) ** 2 - (upwards * radius) ** 2));
    const last = Math.min(width - 1, Math.floor(width / 2 + half - 0.5));
    for (let column = Math.max(0, Math.ceil(width / 2 - half - 0.5)); column <= last; column++) {
      const aside = (column + 0.5 - width / 2) / radius;
      const far = Math.sqrt(Math.max(1, aside * aside + upwards * upwards));
      const x = aside / far;
      const y = upwards / far;
      const z = Math.sqrt(Math.max(0, 1 - x * x - y * y));
      const theta = Math.acos(Math.max(-1, Math.min(1, y * sine + z * cosine))) * down;
      const phi = start + Math.atan2(x, z * sine - y * cosine) * along;
      const upper = Math.min(Math.floor(theta), ROWS - 2);
      const left = Math.floor(phi);
      const lower = theta - upper;
      const right = phi - left;
      const first = upper * COLUMNS * channels;
      const here = first + left % COLUMNS * channels;
      const beside = first + (left + 1) % COLUMNS * channels;
      const red = mixed(grid, here, beside, below, right, lower);
      pixels[row * width + column] = channels === 1 ? pixelOfValues(red, red, red)
        : pixelOfValues(red, mixed(grid, here + 1, beside + 1, below, right, lower),
          mixed(grid, here + 2, beside + 2, below, right, lower));
    }
  }
}

// Of four elements: two, and those `below` further on.
function mixed(grid, here, beside, below, right, lower) {
  const top = grid[here] + right * (grid[beside] - grid[here]);
  const bottom = grid[here + below] + right * (grid[beside + below] - grid[here + below]);
  return top + lower * (bottom - top);
}
