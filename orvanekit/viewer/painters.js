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

// Draws without WebGL: colours the nodes, stretches them to a map and takes a globe's pixels from
// them.
function plainPainter() {
  const coloured = new Map();   // from a layer to {look, picture, canvas}
  const small = document.createElement("canvas");

  function colourNodes(layer, look) {
    const canvas = document.createElement("canvas");
    canvas.width = COLUMNS;
    canvas.height = ROWS;
    const context = canvas.getContext("2d");
    const picture = context.createImageData(COLUMNS, ROWS);
    const pixels = new Uint32Array(picture.data.buffer);
    const [scale, offset] = rangeOf(layer, look);
    const count = layer.channels;
    if (look.colour) {
      for (let i = 0; i < pixels.length; i++) {
        for (let channel = 0; channel < 3; channel++) {
          const t = layer.grid[count * i + channel % count] * scale + offset;
          picture.data[4 * i + channel] = t > 0 ? 255 * t ** (1 / look.gamma) : 0;
        }
        picture.data[4 * i + 3] = 255;
      }
    } else {
      const table = new Uint32Array(look.table.buffer);
      for (let i = 0; i < pixels.length; i++) {
        const t = (layer.grid[i] * scale + offset) * 255 + 0.5;
        pixels[i] = table[t > 0 ? t < 255 ? Math.floor(t) : 255 : 0];
      }
    }
    context.putImageData(picture, 0, 0);
    return { look, pixels, canvas };
  }

  function nodesOf(layer, look) {
    if (!coloured.has(layer) || coloured.get(layer).look !== look) {
      if (!coloured.has(layer) && coloured.size >= 2) {
        coloured.delete(coloured.keys().next().value);
      }
      coloured.set(layer, colourNodes(layer, look));
    }
    return coloured.get(layer);
  }

  return {
    paint(context, width, height, layer, look, globe) {
      const nodes = nodesOf(layer, look);
      if (!globe) {
        // The first node stands for phi = 0 and for the pole.
        const [across, down] = [width / COLUMNS, height / (ROWS - 1)];
        for (const from of [0, width]) {
          context.drawImage(nodes.canvas, from - across / 2, -down / 2, width, ROWS * down);
        }
        return;
      }
      const reduced = Math.min(1, 400 / globe.radius);
      small.width = Math.ceil(width * reduced);
      small.height = Math.ceil(height * reduced);
      const drawn = small.getContext("2d");
      const picture = drawn.createImageData(small.width, small.height);
      takeGlobe(picture, nodes.pixels, globe, globe.radius * reduced);
      drawn.putImageData(picture, 0, 0);
      context.save();           // a smooth edge
      context.beginPath();
      context.arc(width / 2, height / 2, globe.radius - 0.5, 0, 2 * Math.PI);
      context.clip();
      context.drawImage(small, 0, 0, width, height);
      context.restore();
    },
  };
}

// Sets the pixels of a globe to those of its nodes; as underGlobe, in one go.
function takeGlobe(picture, nodes, globe, radius) {
  const { width, height } = picture;
  const pixels = new Uint32Array(picture.data.buffer);
  const [sine, cosine] = [Math.sin(globe.theta), Math.cos(globe.theta)];
  const [down, along] = [(ROWS - 1) / Math.PI, COLUMNS / (2 * Math.PI)];
  const start = globe.phi * along + COLUMNS + 0.5;
  for (let row = 0; row < height; row++) {
    const y = (height / 2 - row - 0.5) / radius;
    const half = radius * Math.sqrt(Math.max(0, 1 - y * y));
    const last = Math.min(width - 1, Math.floor(width / 2 + half - 0.5));
    for (let column = Math.max(0, Math.ceil(width / 2 - half - 0.5)); column <= last; column++) {
      const x = (column + 0.5 - width / 2) / radius;
      const z = Math.sqrt(Math.max(0, 1 - x * x - y * y));
      const upwards = Math.max(-1, Math.min(1, y * sine + z * cosine));
      const theta = Math.floor(Math.acos(upwards) * down + 0.5);
      const phi = Math.floor(start + Math.atan2(x, z * sine - y * cosine) * along) % COLUMNS;
      pixels[row * width + column] = nodes[theta * COLUMNS + phi];
    }
  }
}
