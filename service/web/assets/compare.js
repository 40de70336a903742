// Two sets of tests over the hours of the day.
import { scaleLinear } from "d3-scale";
import { api, choice, element, figure, number, svg, texts, unitOf } from "./core.js";
import { margin, Plot } from "./plot.js";

const section = document.getElementById("compared");
const place = section.querySelector("figure");
const plot = new Plot(place, 280);
const sides = [{ name: texts.left, filter: section.dataset.left, kind: "download" },
  { name: texts.right, filter: section.dataset.right, kind: "upload" }];
let metric = "download";
let groups = [[], []];

async function load() {
  try {
    groups = await Promise.all(sides.map(async (side) => {
      const query = new URLSearchParams(side.filter);
      query.set("metric", metric);
      query.set("by", "hour");
      query.set("offset_min", String(-new Date().getTimezoneOffset()));
      return (await api("distribution", query)).groups;
    }));
    draw();
  } catch (problem) {
    plot.empty(problem.message);
  }
}

/** The left side with a line and circles, the right one broken and with squares. */
function draw() {
  const medians = groups.flat().map((group) => group.median);
  if (medians.length === 0) {
    return plot.empty(texts.empty);
  }
  const unit = unitOf(metric, Math.max(...medians));
  const bottom = plot.height - margin.bottom - 14;
  const x = scaleLinear().domain([0, 23]).range([margin.left + 8, plot.width - margin.right - 8]);
  const y = scaleLinear().domain([0, Math.max(...medians) / unit.divisor]).range([bottom, margin.top]).nice(4);
  const label = sides.map((side, i) => side.name + ": " + groups[i].map((group) =>
    `${group.key}: ${figure(metric, group.median)}`).join(", ")).join("; ");
  const drawing = plot.begin(label);
  plot.leftAxis(y, unit.name);
  for (let hour = 0; hour < 24; hour += 3) {
    drawing.append(svg("text", { class: "axis", x: x(hour), y: bottom + 16, "text-anchor": "middle" }, String(hour)));
  }
  drawing.append(svg("text", { class: "axis", x: plot.width / 2, y: bottom + 32, "text-anchor": "middle" },
    texts.localTime));
  groups.forEach((list, i) => {
    const points = list.map((group) => [x(Number(group.key)), y(group.median / unit.divisor), Number(group.key)]);
    const line = points.map(([u, v, hour], k) => (k > 0 && hour - points[k - 1][2] < 3 ? "L" : "M") + u + "," + v);
    drawing.append(svg("path", { class: "curve c-" + sides[i].kind, d: line.join(""),
      "stroke-dasharray": i === 1 ? "6 4" : null }));
    for (const [u, v] of points) {
      drawing.append(i === 0 ? svg("circle", { class: "c-download", cx: u, cy: v, r: 4 })
        : svg("rect", { class: "c-upload", x: u - 4, y: v - 4, width: 8, height: 8 }));
    }
  });
  plot.end();
}

plot.redraw = draw;
plot.rows = () => [[texts.hour, texts.left, texts.right], ...Array.from({ length: 24 }, (_, hour) =>
  [number(hour), ...groups.map((list) => figure(metric, list.find((group) => Number(group.key) === hour)?.median))])];
section.querySelector(".tools").append(...choice(["download", "upload", "rtt"].map((each) => [each, texts[each]]), metric,
  (chosen) => {
    metric = chosen;
    place.querySelector("figcaption").textContent = texts[metric];
    load();
  }), element("span", { class: "legend" }, element("span", {}, "●― " + texts.left), element("span", {}, "■╌ " + texts.right)));
load();
