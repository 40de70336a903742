// The public figures: medians of each month by connection, and of each cell on a map.
import { scaleLog } from "d3-scale";
import { api, choice, figure, number, svg, texts, typeName, unitOf } from "./core.js";
import { cellMap } from "./map.js";
import { margin, mark, Plot } from "./plot.js";

const section = document.getElementById("months");
const plot = new Plot(section.querySelector("figure"), 320);
let metric = "download";
let rows = [];

const shown = () => rows.filter((row) => row.type !== null && row[metric] !== null);

/** On a logarithmic scale: from 2G to 5G it is a thousandfold. */
function draw() {
  const list = shown();
  if (list.length === 0) {
    return plot.empty(texts.empty);
  }
  const months = [...new Set(list.map((row) => row.key))].sort();
  const values = list.map((row) => row[metric].median);
  const unit = unitOf(metric, Math.max(...values));
  const x = (month) => margin.left + (months.indexOf(month) + 0.5) * plot.innerWidth / months.length;
  const y = scaleLog().domain([Math.min(...values) / unit.divisor, Math.max(...values) / unit.divisor])
    .range([plot.height - margin.bottom, margin.top]).nice();
  const drawing = plot.begin(texts[metric] + ": " + list.map((row) =>
    `${row.key} ${typeName(row.type)} ${figure(metric, row[metric].median)}`).join("; "));
  plot.leftAxis(y, unit.name);
  const every = Math.ceil(months.length * 70 / plot.innerWidth);
  months.forEach((month, i) => plot.below(x(month), i % every === 0 ? month : ""));
  for (const type of new Set(list.map((row) => row.type))) {
    const points = list.filter((row) => row.type === type).map((row) => [x(row.key), y(row[metric].median / unit.divisor)]);
    drawing.append(svg("path", { class: "line c-" + type, d: "M" + points.join("L") }),
      svg("path", { class: "c-" + type, d: points.map(([u, v]) => mark(type, u, v)).join("") }),
      svg("text", { class: "axis", x: points.at(-1)[0] - 8, y: points.at(-1)[1] - 9, "text-anchor": "end" }, typeName(type)));
  }
  plot.end();
}

plot.redraw = draw;
plot.rows = () => [[texts.time, texts.connection, texts.tests, "10 %", texts.median, "90 %"], ...shown().map((row) =>
  [row.key, typeName(row.type), number(row[metric].count), ...["p10", "median", "p90"].map((part) =>
    figure(metric, row[metric][part]))])];
section.querySelector(".tools").append(...choice(["download", "upload", "rtt", "download_rtt", "upload_rtt"].map((each) => [each, texts[each]]), metric,
  (chosen) => {
    metric = chosen;
    section.querySelector("figcaption").textContent = texts[metric];
    draw();
  }));

async function load() {
  const [months, cells] = await Promise.all(["month", "cell"].map((by) => api("statistics", new URLSearchParams({ by }))));
  rows = months.rows;
  draw();
  cellMap(document.getElementById("map"), cells.rows.filter((row) => row.type === null).map((row) => ({
    latitude: row.latitude, longitude: row.longitude, height: row.height_deg, width: row.width_deg,
    count: row.download?.count ?? 0, median: row.download?.median ?? null, rsrp: row.rsrp })),
  document.querySelector(".mapcard .tools"));
}

load().catch((problem) => plot.empty(problem.message));
