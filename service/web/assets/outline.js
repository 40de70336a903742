// Land and borders as a map layer, for services without map tiles. Cells of 15 degrees come as they are needed.

const units = 2 ** 17; // of longitude round the world, as in the packed files
const cell = Math.floor(units / 24);
const coarseZoom = 4; // up to it the whole world in one piece
/** @type {Map<string, Promise<{land: Float64Array[], borders: Float64Array[]}>>} */
const loaded = new Map();

/** From the file's units to the square of web maps, 0 to 1. */
function mercator(y) {
  const latitude = Math.min(Math.max(90 - y * 360 / units, -85.0511), 85.0511) * Math.PI / 180;
  return (1 - Math.log(Math.tan(latitude) + 1 / Math.cos(latitude)) / Math.PI) / 2;
}

function unpacked(differences) {
  const points = new Float64Array(differences.length);
  for (let i = 0, x = 0, y = 0; i < points.length; i += 2) {
    x += differences[i];
    y += differences[i + 1];
    points[i] = x / units;
    points[i + 1] = mercator(y);
  }
  return points;
}

function load(name) {
  if (!loaded.has(name)) {
    loaded.set(name, fetch(new URL(`outline/${name}.json`, import.meta.url))
      .then((answer) => answer.json())
      .then(({ land, borders }) => ({ land: land.map(unpacked), borders: borders.map(unpacked) })));
  }
  return loaded.get(name);
}

/** The names of the pieces under a tile. */
function pieces({ x, y, z }) {
  if (z <= coarseZoom) {
    return ["world"];
  }
  const latitude = (row) => Math.atan(Math.sinh(Math.PI * (1 - 2 * row / 2 ** z))) * 180 / Math.PI;
  const column = (part) => Math.floor(part / 2 ** z * units / cell);
  const row = (part) => Math.floor((90 - latitude(part)) / 360 * units / cell);
  const names = [];
  for (let i = column(x); i <= Math.min(column(x + 1), 23); ++i) {
    for (let j = row(y); j <= Math.min(row(y + 1), 12); ++j) {
      names.push(`${i}-${j}`);
    }
  }
  return names;
}

function trace(context, points, size, left, top) {
  for (let i = 0; i < points.length; i += 2) {
    context.lineTo(points[i] * size - left, points[i + 1] * size - top);
  }
}

function draw(canvas, parts, { x, y, z }) {
  const context = canvas.getContext("2d");
  const colours = getComputedStyle(document.documentElement);
  const size = 256 * 2 ** z;
  context.clearRect(0, 0, 512, 512);
  context.scale(canvas.width / 256, canvas.height / 256);
  context.fillStyle = colours.getPropertyValue("--land");
  context.strokeStyle = colours.getPropertyValue("--border");
  for (const { land } of parts) {
    context.beginPath();
    for (const ring of land) {
      context.moveTo(ring[0] * size - x * 256, ring[1] * size - y * 256);
      trace(context, ring, size, x * 256, y * 256);
      context.closePath();
    }
    context.fill("evenodd");
  }
  for (const { borders } of parts) {
    context.beginPath();
    for (const line of borders) {
      context.moveTo(line[0] * size - x * 256, line[1] * size - y * 256);
      trace(context, line, size, x * 256, y * 256);
    }
    context.stroke();
  }
}

/** The layer; @p attribution is HTML. */
export function outlineLayer(attribution) {
  const Outline = L.GridLayer.extend({
    createTile(coords, done) {
      const canvas = document.createElement("canvas");
      canvas.width = canvas.height = 256 * Math.min(devicePixelRatio, 2);
      const wrapped = { ...coords, x: (coords.x % 2 ** coords.z + 2 ** coords.z) % 2 ** coords.z };
      Promise.all(pieces(wrapped).map(load)).then((parts) => {
        draw(canvas, parts, wrapped);
        done(null, canvas);
      }, (problem) => done(problem, canvas));
      return canvas;
    },
  });
  return new Outline({ attribution, maxZoom: 19 });
}
